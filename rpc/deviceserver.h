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

/// The far end: lets peers list the instruments of DeviceBroker and drive its devices.
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
    explicit DeviceServer(const std::vector<Address> &addresses = {}, QObject *parent = nullptr);
    /// Ends every session; their devices are deleted.
    ~DeviceServer() override;

    bool isListening() const;
    /// Serves the peer at the other end of a connected socket, which now belongs to the server.
    void serveSocket(int socket);

private:
    class Service;
    class Watcher;
    class Session;

    std::unique_ptr<Service> m_service;
    std::unique_ptr<grpc::Server> m_server;
};

} // namespace qel::rpc

#endif
