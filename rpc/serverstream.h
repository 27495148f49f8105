#ifndef RPC_SERVERSTREAM_H
#define RPC_SERVERSTREAM_H

#include "stream.h"

#include <string>

namespace qel::rpc {

/// The end that was called.
template<typename Outgoing, typename Incoming>
class ServerStream final :
    public Stream<grpc::ServerAsyncReaderWriter<Outgoing, Incoming>, Outgoing, Incoming>,
    public std::enable_shared_from_this<ServerStream<Outgoing, Incoming>>
{
public:
    using Arrival = std::function<void(std::shared_ptr<ServerStream>, const std::string &peer)>;

    /// Waits for calls, one after the other.
    /// @param request hands what it is given to a method of the service
    /// @param arrive hears of each, in the thread of gRPC, with the common name in the certificate
    /// of a peer that had to show one
    template<typename Request>
    static void accept(Completions *completions, Request request, Arrival arrive)
    {
        auto stream = std::make_shared<ServerStream>();
        ServerStream *const self = stream.get();
        const std::lock_guard lock(self->m_mutex);
        self->m_arriving = self->after([=](bool ok) {
            // The server may end otherwise.
            if (!ok) {
                self->conclude();
                return;
            }
            accept(completions, request, arrive);
            self->begin(&self->m_call);
            // Whoever hears of it may use it at once.
            self->m_mutex.unlock();
            arrive(self->shared_from_this(), self->peer());
            self->m_mutex.lock();
        });
        self->keep(std::move(stream), completions);
        request(&self->m_context, &self->m_call, self->asked(&self->m_arriving));
    }

    /// Ends the call; the peer learns why.
    void finish(const grpc::Status &status)
    {
        const std::lock_guard lock(this->m_mutex);
        finishOnce(status);
    }

private:
    std::string peer() const
    {
        const auto names = m_context.auth_context()->FindPropertyValues(GRPC_X509_CN_PROPERTY_NAME);
        return names.size() == 1 ? std::string(names[0].data(), names[0].size()) : std::string();
    }

    void finishOnce(const grpc::Status &status)
    {
        if (m_isFinished)
            return;
        m_isFinished = true;
        m_status = status;
        this->close();
        writeEnded();
    }

    void readEnded() override
    {
        finishOnce(grpc::Status::OK);
    }

    void writeEnded() override
    {
        if (!m_isFinished || m_isReported || this->isWriting())
            return;
        m_isReported = true;
        m_call.Finish(m_status, this->asked(&m_finishing));
    }

    grpc::ServerContext m_context;
    grpc::ServerAsyncReaderWriter<Outgoing, Incoming> m_call{&m_context};
    Operation m_arriving;
    Operation m_finishing = this->after([this](bool) { this->conclude(); });
    bool m_isFinished = false;
    bool m_isReported = false;
    grpc::Status m_status;
};

} // namespace qel::rpc

#endif
