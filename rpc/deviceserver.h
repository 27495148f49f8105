#ifndef RPC_DEVICESERVER_H
#define RPC_DEVICESERVER_H

#include "instruments.grpc.pb.h"
#include "stream.h"

#include <qeldevices/device.h>

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
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

/// A feature that a device executes or has executed.
struct FarRun
{
    devices::Device::DeviceFeature feature;
    QVariant descriptor;    ///< as it was at the start
    QVariant configuration; ///< as it was at the start
    QDateTime startedAt;
    QElapsedTimer clock; ///< since then
};

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
                           const FarRun &run) = 0;
    /// A run of `peer` has ended.
    virtual void noteRun(const QString &peer, const devices::Device &device, const FarRun &run,
                         bool ok) = 0;
    /// Keeps a result, before `peer` is told of it: it is nowhere else until the peer has it.
    /// @return under which name; empty when it could not be kept
    virtual QString keepResult(const QString &peer, const devices::Device &device,
                               const FarRun &run, const QVariant &result) = 0;
    /// The peer has the result.
    virtual void dropResult(const QString &name) = 0;
    /// The peer has gone without a word on the result.
    virtual void noteKept(const QString &peer, const QString &name) = 0;
    /// The names of the results that are kept for `peer`.
    virtual QStringList keptResults(const QString &peer) = 0;
    /// The document of one of them; empty when there is none of that name.
    virtual QByteArray keptResult(const QString &peer, const QString &name) = 0;
};

/// The far end: lets peers list the instruments of DeviceBroker and drive its devices.
///
/// With a gate, every result is kept until its peer says that the application has it, and a run
/// whose peer goes away is finished first; without one, the device goes with its peer.
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
