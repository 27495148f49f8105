#include "deviceserver.h"

#include "session.h"
#include "watcher.h"

#include <grpcpp/server_posix.h>

#include <fcntl.h>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;

// For the last words to peers that are there.
constexpr std::chrono::milliseconds farewell = 500ms;

// Hands each call of a method over to the thread of the server.
template<typename Peer, typename Stream, typename Request>
static void serve(DeviceServer *server, Completions *completions, Request request)
{
    const auto take = [server](std::shared_ptr<Stream> stream, const std::string &name) {
        // Where nobody takes it any more, it is over.
        const std::shared_ptr<Stream> call(stream.get(), [stream](Stream *) {
            stream->detach();
            stream->finish(grpc::Status::OK);
        });
        QMetaObject::invokeMethod(
            server, [=] { new Peer(call, QString::fromStdString(name), server); },
            Qt::QueuedConnection);
    };
    Stream::accept(completions, request, take);
}

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
    builder->SetMaxReceiveMessageSize(maximumMessageSize);
    builder->SetMaxSendMessageSize(maximumMessageSize);
    auto service = std::make_unique<wire::Instruments::AsyncService>();
    builder->RegisterService(service.get());
    auto calls = builder->AddCompletionQueue();
    auto *const queue = calls.get();
    auto completions = std::make_unique<Completions>(std::move(calls));
    auto server = builder->BuildAndStart();
    if (server) {
        auto *const methods = service.get();
        serve<Watcher, WatchServer>(this, completions.get(),
                                    [=](auto *context, auto *call, void *tag) {
                                        methods->RequestWatch(context, call, queue, queue, tag);
                                    });
        serve<Session, DriveServer>(this, completions.get(),
                                    [=](auto *context, auto *call, void *tag) {
                                        methods->RequestDrive(context, call, queue, queue, tag);
                                    });
    }
    return {std::move(service), std::move(server), std::move(completions)};
}

bool DeviceServer::listen(const std::string &address,
                          const std::shared_ptr<grpc::ServerCredentials> &credentials)
{
    grpc::ServerBuilder builder;
    // A peer that has gone without a word is noticed all the same.
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIME_MS, 10000);
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 5000);
    builder.AddChannelArgument(GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS, 5000);
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
    // Nor does one stay that has come without a word.
    builder.AddChannelArgument(GRPC_ARG_SERVER_HANDSHAKE_TIMEOUT_MS, 10000);
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
        // Its end is noticed at once; a peer that is stopped, by a debugger for instance, is there.
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
