#ifndef RPC_CLIENTSTREAM_H
#define RPC_CLIENTSTREAM_H

#include "stream.h"

#include <grpcpp/alarm.h>

namespace qel::rpc {

/// The end that has called.
template<typename Outgoing, typename Incoming>
class ClientStream final :
    public Stream<grpc::ClientAsyncReaderWriter<Outgoing, Incoming>, Outgoing, Incoming>
{
public:
    /// Calls; `prepare` hands the context and the queue to a method of the stub.
    template<typename Prepare>
    static std::shared_ptr<ClientStream> start(Prepare &&prepare)
    {
        auto stream = std::make_shared<ClientStream>();
        const std::lock_guard lock(stream->m_mutex);
        stream->keep(stream, Completions::ofCalls());
        stream->m_call = prepare(&stream->m_context, Completions::ofCalls()->queue());
        stream->m_call->StartCall(stream->asked(&stream->m_starting));
        return stream;
    }

    /// Ends the call once everything that was sent is on its way. Nothing is sent afterwards.
    void hangUp()
    {
        const std::lock_guard lock(this->m_mutex);
        m_isLeaving = true;
        writeEnded();
    }

    /// Ends the call, with what is on its way.
    void cancel()
    {
        m_context.TryCancel();
    }

    /// Why the stream has ended.
    grpc::Status status() const
    {
        const std::lock_guard lock(this->m_mutex);
        return m_status;
    }

private:
    void onStarted(bool ok)
    {
        if (ok)
            this->begin(m_call.get());
        else
            readEnded();
    }

    // A status follows at once where the peer has ended the call. It does not where a message was
    // none.
    void readEnded() override
    {
        this->close();
        m_call->Finish(&m_status, this->asked(&m_finishing));
        m_lateness.Set(Completions::ofCalls()->queue(),
                       std::chrono::system_clock::now() + std::chrono::seconds(1),
                       this->asked(&m_beingLate));
    }

    void onLate()
    {
        m_isUnreadable = true;
        m_context.TryCancel();
    }

    void onFinished()
    {
        m_lateness.Cancel();
        if (m_isUnreadable)
            m_status = {grpc::StatusCode::DATA_LOSS,
                        "the other side sends what cannot be understood"};
        this->conclude();
    }

    void writeEnded() override
    {
        if (!m_isLeaving || m_hasLeft || !this->isOpenAndWritten())
            return;
        m_hasLeft = true;
        this->endWriting();
        m_call->WritesDone(this->asked(&m_leaving));
    }

    grpc::ClientContext m_context;
    std::unique_ptr<grpc::ClientAsyncReaderWriter<Outgoing, Incoming>> m_call;
    Operation m_starting = this->after([this](bool ok) { onStarted(ok); });
    Operation m_leaving = this->after([](bool) {});
    Operation m_finishing = this->after([this](bool) { onFinished(); });
    grpc::Alarm m_lateness;
    Operation m_beingLate = this->after([this](bool isLate) {
        if (isLate)
            onLate();
    });
    bool m_isUnreadable = false;
    bool m_isLeaving = false;
    bool m_hasLeft = false;
    grpc::Status m_status;
};

} // namespace qel::rpc

#endif
