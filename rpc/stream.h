#ifndef RPC_STREAM_H
#define RPC_STREAM_H

#include <QtCore/QObject>

#include <grpcpp/alarm.h>
#include <grpcpp/grpcpp.h>
#include <grpcpp/support/client_callback.h>
#include <grpcpp/support/server_callback.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace qel::rpc {

/// How large a message may be; the peer ends the stream over a larger one.
constexpr int maximumMessageSize = 16 * 1024 * 1024;

/// One stream of messages both ways, between the threads of gRPC and the thread of one QObject, the
/// receiver.
///
/// What arrives waits until the receiver takes it; beyond a bound, reading pauses. What is sent
/// waits until the peer reads it. The stream lives until gRPC is done with it, however early
/// everybody else lets go.
template<typename Reactor, typename Outgoing, typename Incoming>
class Stream : public Reactor
{
public:
    /// From now on `wake` is called in the thread of `receiver` whenever there is something to
    /// take.
    void attach(QObject *receiver, std::function<void()> wake)
    {
        const std::lock_guard lock(m_mutex);
        m_receiver = receiver;
        m_wake = std::move(wake);
        m_isAwake = false;
        if (m_hasEnded || !m_arrived.empty())
            post();
    }

    /// From now on nothing reaches the receiver. It must be called before the receiver dies.
    void detach()
    {
        const std::lock_guard lock(m_mutex);
        m_receiver = nullptr;
        m_wake = {};
        m_isDetached = true;
        m_arrived.clear();
        m_arrivedSize = 0;
        resume();
    }

    /// Sends a message after those sent before. One that is still waiting, the last, and of the
    /// same `kind` is replaced by it; 0 is the kind of messages that are never replaced.
    /// @return false when too much is waiting already
    bool send(Outgoing message, int kind = 0)
    {
        const std::lock_guard lock(m_mutex);
        if (m_isClosed)
            return true;
        const std::size_t size = message.ByteSizeLong();
        if (kind != 0 && !m_queue.empty() && m_queue.back().kind == kind) {
            m_queueSize += size - m_queue.back().size;
            m_queue.back() = {std::move(message), kind, size};
            return true;
        }
        if (m_queue.size() >= maximumQueue || m_queueSize + size > maximumQueueSize)
            return false;
        m_queueSize += size;
        m_queue.push_back({std::move(message), kind, size});
        write();
        return true;
    }

    /// What has arrived since the last call.
    std::deque<Incoming> take()
    {
        const std::lock_guard lock(m_mutex);
        m_isAwake = false;
        std::deque<Incoming> arrived = std::exchange(m_arrived, {});
        m_arrivedSize = 0;
        resume();
        return arrived;
    }

    /// Whether nothing will arrive any more; what has may still be taken.
    bool hasEnded() const
    {
        const std::lock_guard lock(m_mutex);
        return m_hasEnded;
    }

    /// Whether the peer has gone, even where the receiver has not been told yet.
    bool isClosed() const
    {
        const std::lock_guard lock(m_mutex);
        return m_isClosed;
    }

    /// Blocks the thread until there is something to take or the stream has ended.
    /// @return false when the time is over
    bool wait(std::chrono::milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return m_news.wait_for(lock, time, [this] { return m_hasEnded || !m_arrived.empty(); });
    }

    void OnReadDone(bool ok) override
    {
        const std::lock_guard lock(m_mutex);
        if (!ok) {
            m_isClosed = true;
            readEnded();
            return;
        }
        // A stream whose end nobody reads would never end.
        if (!m_isDetached) {
            m_arrivedSize += m_incoming.ByteSizeLong();
            m_arrived.push_back(std::move(m_incoming));
        }
        m_incoming = Incoming();
        post();
        if (m_arrived.size() < maximumArrived && m_arrivedSize < maximumArrivedSize)
            this->StartRead(&m_incoming);
        else
            m_isPaused = true;
    }

    void OnWriteDone(bool ok) override
    {
        const std::lock_guard lock(m_mutex);
        m_queueSize -= m_queue.front().size;
        m_queue.pop_front();
        m_isWriting = false;
        if (!ok) {
            m_queue.clear();
            m_queueSize = 0;
        }
        write();
        writeEnded();
    }

protected:
    Stream() = default;

    // The first half of a stream that nobody can have closed yet.
    void begin(std::shared_ptr<Stream> own)
    {
        m_self = std::move(own);
        this->StartRead(&m_incoming);
    }

    void end()
    {
        std::shared_ptr<Stream> last;
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
        post();
        last = std::exchange(m_self, nullptr);
    }

    std::shared_ptr<Stream> self() const
    {
        return m_self;
    }

    void close()
    {
        m_isClosed = true;
    }

    bool isWriting() const
    {
        return m_isWriting;
    }

    bool isOpenAndWritten() const
    {
        return !m_isClosed && !m_isWriting && m_queue.empty();
    }

    virtual void readEnded() = 0;
    virtual void writeEnded() { }

    // gRPC may call back from within its calls.
    mutable std::recursive_mutex m_mutex;

private:
    static constexpr std::size_t maximumQueue = 4096;
    static constexpr std::size_t maximumArrived = 256;
    // More than an Outbox, which is sent at once.
    static constexpr std::size_t maximumQueueSize = 6 * std::size_t(maximumMessageSize);
    static constexpr std::size_t maximumArrivedSize = 2 * std::size_t(maximumMessageSize);

    struct Entry
    {
        Outgoing message;
        int kind;
        std::size_t size;
    };

    void write()
    {
        if (m_isWriting || m_isClosed || m_queue.empty())
            return;
        m_isWriting = true;
        // What is being written must not be replaced.
        m_queue.front().kind = 0;
        this->StartWrite(&m_queue.front().message);
    }

    void resume()
    {
        if (!m_isPaused || m_isClosed)
            return;
        m_isPaused = false;
        this->StartRead(&m_incoming);
    }

    void post()
    {
        m_news.notify_all();
        if (!m_receiver || m_isAwake)
            return;
        m_isAwake = true;
        QMetaObject::invokeMethod(m_receiver, m_wake, Qt::QueuedConnection);
    }

    std::condition_variable_any m_news;
    QObject *m_receiver = nullptr;
    std::function<void()> m_wake;
    bool m_isAwake = false;
    bool m_isDetached = false;
    std::deque<Incoming> m_arrived;
    std::size_t m_arrivedSize = 0;
    Incoming m_incoming;
    bool m_isPaused = false;
    bool m_hasEnded = false;
    bool m_isClosed = false;
    std::deque<Entry> m_queue;
    std::size_t m_queueSize = 0;
    bool m_isWriting = false;
    std::shared_ptr<Stream> m_self;
};

/// The end that has called.
template<typename Outgoing, typename Incoming>
class ClientStream final :
    public Stream<grpc::ClientBidiReactor<Outgoing, Incoming>, Outgoing, Incoming>
{
public:
    /// Calls; `call` hands the context and this reactor to a method of the stub.
    template<typename Call>
    static std::shared_ptr<ClientStream> start(Call &&call)
    {
        auto stream = std::make_shared<ClientStream>();
        call(&stream->m_context, stream.get());
        // Messages are sent from outside of gRPC's callbacks.
        stream->AddHold();
        stream->begin(stream);
        stream->StartCall();
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

    void OnDone(const grpc::Status &status) override
    {
        {
            const std::lock_guard lock(this->m_mutex);
            m_status = m_isUnreadable
                ? grpc::Status(grpc::StatusCode::DATA_LOSS,
                               "the other side sends what cannot be understood")
                : status;
        }
        m_statusAlarm.Cancel();
        this->end();
    }

private:
    // A status follows at once where the peer has ended the call. It does not where a message was
    // none.
    void readEnded() override
    {
        const auto late = std::chrono::system_clock::now() + std::chrono::seconds(1);
        m_statusAlarm.Set(late, [this, self = this->self()](bool isLate) mutable {
            if (isLate) {
                const std::lock_guard lock(this->m_mutex);
                m_isUnreadable = true;
                m_context.TryCancel();
            }
            self.reset();
        });
        this->RemoveHold();
    }

    void writeEnded() override
    {
        if (!m_isLeaving || m_hasLeft || !this->isOpenAndWritten())
            return;
        m_hasLeft = true;
        this->StartWritesDone();
    }

    grpc::ClientContext m_context;
    grpc::Alarm m_statusAlarm;
    bool m_isUnreadable = false;
    bool m_isLeaving = false;
    bool m_hasLeft = false;
    grpc::Status m_status;
};

/// The end that was called.
template<typename Outgoing, typename Incoming>
class ServerStream final :
    public Stream<grpc::ServerBidiReactor<Incoming, Outgoing>, Outgoing, Incoming>
{
public:
    static std::shared_ptr<ServerStream> start()
    {
        auto stream = std::make_shared<ServerStream>();
        stream->begin(stream);
        return stream;
    }

    /// Ends the call; the peer learns why.
    void finish(const grpc::Status &status)
    {
        const std::lock_guard lock(this->m_mutex);
        if (m_isFinished)
            return;
        m_isFinished = true;
        m_status = status;
        this->close();
        writeEnded();
    }

    void OnDone() override
    {
        this->end();
    }

private:
    void readEnded() override
    {
        finish(grpc::Status::OK);
    }

    void writeEnded() override
    {
        if (!m_isFinished || m_isReported || this->isWriting())
            return;
        m_isReported = true;
        this->Finish(m_status);
    }

    bool m_isFinished = false;
    bool m_isReported = false;
    grpc::Status m_status;
};

} // namespace qel::rpc

#endif
