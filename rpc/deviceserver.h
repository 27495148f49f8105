#ifndef RPC_DEVICESERVER_H
#define RPC_DEVICESERVER_H

#include "instruments.grpc.pb.h"
#include "serverstream.h"

#include <QtCore/QObject>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace qel::rpc {

class Gate;

/// Why a call was of no use that had no message at first, or none that could be understood.
constexpr char noIntroduction[] = "the call has ended before it said what it is about";
/// Why a peer is not served any more that leaves too much waiting for it.
constexpr char readsTooSlowly[] = "the peer reads too slowly to be served";

/// The far end: lets peers list the instruments of DeviceBroker and drive its devices.
///
/// With a gate, every result is kept until its peer says that the application has it. With a grace,
/// a session outlives its connection for that long, and its peer gets what it missed. Otherwise the
/// device goes with its peer.
///
/// Everything that touches a driver happens in the thread of this object.
class DeviceServer : public QObject
{
    Q_OBJECT

public:
    /// @param gate without one, every peer may do everything; must outlive the server
    explicit DeviceServer(Gate *gate = nullptr, std::chrono::milliseconds grace = {},
                          QObject *parent = nullptr);
    /// Ends every session; their devices are deleted, and their peers told.
    ~DeviceServer() override;

    /// Serves who calls at `address`, as gRPC writes it, "unix:/run/x" for instance.
    /// @return whether the address could be had
    bool listen(const std::string &address,
                const std::shared_ptr<grpc::ServerCredentials> &credentials);
    /// Serves the peer at the other end of a connected socket, which now belongs to the server.
    void serveSocket(int socket);
    /// Tells every peer which instruments there are now.
    void tellInstruments();
    /// Ends what the gate does not let in any more.
    void checkPeers();

    Gate *gate() const;
    std::chrono::milliseconds grace() const;

Q_SIGNALS:
    /// The instruments are to be told to every peer.
    void instrumentsTold();
    /// Every peer is to be looked at again.
    void peersChecked();
    /// A peer does not watch the instruments any more.
    void watcherLeft();

private:
    // One address, or all sockets.
    struct Listener
    {
        std::unique_ptr<wire::Instruments::AsyncService> service;
        std::unique_ptr<grpc::Server> server;
        std::unique_ptr<Completions> completions;
    };

    Listener build(grpc::ServerBuilder *builder);

    Gate *const m_gate;
    const std::chrono::milliseconds m_grace;
    std::vector<Listener> m_listeners;
};

} // namespace qel::rpc

#endif
