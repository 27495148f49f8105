#ifndef RPC_DEVICESERVER_H
#define RPC_DEVICESERVER_H

#include "instruments.grpc.pb.h"
#include "stream.h"

#include <qeldevices/device.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <memory>
#include <string>
#include <vector>

namespace qel::rpc {

using DriveServer = ServerStream<wire::Event, wire::Command>;
using WatchServer = ServerStream<wire::Told, wire::Ask>;

/// Decides what the peers of a DeviceServer may do, and hears what they do. Used in the server's
/// thread.
class Gate
{
public:
    virtual ~Gate() = default;

    /// Why `peer` is not let in, as a sentence; empty when it is. Asked with every command.
    virtual QString refusal(const QString &peer) = 0;
    /// Why `peer` may not execute `feature`, as a sentence; empty when it may.
    virtual QString executeRefusal(const QString &peer, devices::Device::DeviceFeature feature) = 0;
    /// Why `peer` may not open `info` with `session` now; with an empty text, it has it until
    /// release().
    virtual wire::Text acquire(const QString &peer, const void *session,
                               const devices::DeviceInfo &info) = 0;
    /// `session` does not use its instrument any more, if it did.
    virtual void release(const void *session) = 0;
    /// A run of `peer` begins.
    virtual void noteStart(const QString &peer, const devices::Device &device,
                           devices::Device::DeviceFeature feature) = 0;
    /// A run of `peer` has ended.
    virtual void noteRun(const QString &peer, const devices::Device &device,
                         devices::Device::DeviceFeature feature, bool ok) = 0;
    /// The result of a run whose peer had gone meanwhile: it is nowhere else.
    virtual void keepResult(const QString &peer, const devices::Device &device,
                            devices::Device::DeviceFeature feature, const QVariant &result) = 0;
};

/// The far end: lets peers list the instruments of DeviceBroker and drive its devices.
///
/// With a gate, a run whose peer goes away is finished first, and the gate gets its result; without
/// one, the device goes with its peer.
///
/// Everything that touches a driver happens in the thread of this object.
class DeviceServer : public QObject
{
    Q_OBJECT

public:
    /// Where a server listens.
    struct Address
    {
        std::string text; ///< as gRPC writes it, "unix:/run/x" for instance
        std::shared_ptr<grpc::ServerCredentials> credentials;
    };

    /// Starts to serve. isListening() tells whether every address could be had.
    /// @param gate without one, every peer may do everything; must outlive the server
    explicit DeviceServer(const std::vector<Address> &addresses = {}, Gate *gate = nullptr,
                          QObject *parent = nullptr);
    /// Ends every session; their devices are deleted.
    ~DeviceServer() override;

    bool isListening() const;
    /// Serves the peer at the other end of a connected socket, which now belongs to the server.
    void serveSocket(int socket);
    /// Tells every peer which instruments there are now.
    void tellInstruments();
    /// Ends what the gate does not let in any more.
    void checkPeers();

Q_SIGNALS:
    /// The instruments are to be told to every peer.
    void instrumentsTold();
    /// Every peer is to be looked at again.
    void peersChecked();
    /// A peer does not watch the instruments any more.
    void watcherLeft();

private:
    class Service;
    class Watcher;
    class Session;

    Gate *const m_gate;
    std::unique_ptr<Service> m_service;
    std::unique_ptr<grpc::Server> m_server;
};

} // namespace qel::rpc

#endif
