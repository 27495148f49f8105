#include "deviceserver.h"

#include "runtime.h"
#include "session.h"
#include "watcher.h"

#include <grpcpp/server_posix.h>

#include <fcntl.h>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;

// For the last words to peers that are there.
constexpr std::chrono::milliseconds farewell = 500ms;

// Runs in the threads of gRPC: hands each call over to the server's thread.
class DeviceServer::Service final : public wire::Instruments::CallbackService
{
public:
    explicit Service(DeviceServer *server)
        : m_server(server)
    { }

    grpc::ServerBidiReactor<wire::Ask, wire::Told> *
    Watch(grpc::CallbackServerContext *context) override
    {
        return receive<WatchServer, Watcher>(context);
    }

    grpc::ServerBidiReactor<wire::Command, wire::Event> *
    Drive(grpc::CallbackServerContext *context) override
    {
        return receive<DriveServer, Session>(context);
    }

private:
    template<typename Stream, typename Peer>
    Stream *receive(grpc::CallbackServerContext *context)
    {
        const auto stream = Stream::start();
        QMetaObject::invokeMethod(
            m_server,
            [server = m_server, stream, name = nameIn(context)] { new Peer(stream, name, server); },
            Qt::QueuedConnection);
        return stream.get();
    }

    // The common name in the certificate of a peer that had to show one.
    static QString nameIn(grpc::CallbackServerContext *context)
    {
        const auto names = context->auth_context()->FindPropertyValues(GRPC_X509_CN_PROPERTY_NAME);
        return names.size() == 1 ? QString::fromUtf8(names[0].data(), int(names[0].size()))
                                 : QString();
    }

    DeviceServer *m_server;
};

DeviceServer::DeviceServer(Gate *gate, std::chrono::milliseconds grace, QObject *parent)
    : QObject(parent)
    , m_gate(gate)
    , m_grace(grace)
{
    keepRuntime();
}

DeviceServer::~DeviceServer()
{
    // The devices go before the last messages: a device that is deleted says nothing more.
    const auto peers = findChildren<QObject *>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(peers);
    for (const Listener &listener : m_listeners)
        listener.server->Shutdown(std::chrono::system_clock::now() + farewell);
    for (const Listener &listener : m_listeners)
        listener.server->Wait();
}

DeviceServer::Listener DeviceServer::build(grpc::ServerBuilder *builder)
{
    // A peer that has gone without a word is noticed all the same.
    builder->AddChannelArgument(GRPC_ARG_KEEPALIVE_TIME_MS, 10000);
    builder->AddChannelArgument(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 5000);
    builder->AddChannelArgument(GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS, 5000);
    builder->AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
    // Nor does one stay that has come without a word.
    builder->AddChannelArgument(GRPC_ARG_SERVER_HANDSHAKE_TIMEOUT_MS, 10000);
    builder->SetMaxReceiveMessageSize(maximumMessageSize);
    builder->SetMaxSendMessageSize(maximumMessageSize);
    auto service = std::make_unique<Service>(this);
    builder->RegisterService(service.get());
    return {std::move(service), builder->BuildAndStart()};
}

bool DeviceServer::listen(const std::string &address,
                          const std::shared_ptr<grpc::ServerCredentials> &credentials)
{
    grpc::ServerBuilder builder;
    builder.AddListeningPort(address, credentials);
    Listener listener = build(&builder);
    if (!listener.server)
        return false;
    m_listeners.push_back(std::move(listener));
    return true;
}

void DeviceServer::serveSocket(int socket)
{
    if (m_listeners.empty()) {
        grpc::ServerBuilder builder;
        m_listeners.push_back(build(&builder));
    }
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
    grpc::AddInsecureChannelFromFd(m_listeners.front().server.get(), socket);
}

void DeviceServer::tellInstruments()
{
    emit instrumentsTold();
}

void DeviceServer::checkPeers()
{
    emit peersChecked();
}

Gate *DeviceServer::gate() const
{
    return m_gate;
}

std::chrono::milliseconds DeviceServer::grace() const
{
    return m_grace;
}

} // namespace qel::rpc
