#ifndef RPC_STREAM_H
#define RPC_STREAM_H

#include "completions.h"
#include "instruments.pb.h"
#include "wire.h"

#include <QtCore/QObject>

#include <grpcpp/grpcpp.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

namespace qel::rpc {

/// How large a message may be; the peer ends the stream over a larger one.
constexpr int maximumMessageSize = 16 * 1024 * 1024;

/// One stream of messages both ways, between the thread of gRPC and the thread of one QObject, the
/// receiver.
///
/// What arrives waits until the receiver takes it; beyond a bound, reading pauses. What is sent
/// waits until the peer reads it. The stream lives until gRPC is done with it, however early
/// everybody else lets go.
template<typename Call, typename Outgoing, typename Incoming>
class Stream
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
        const std::size_t size = memoryOf(message);
        if (kind != 0 && !m_queue.empty() && m_queue.back().kind == kind) {
            m_queueSize += size - m_queue.back().size;
            m_queue.back() = {std::move(message), kind, size};
            return true;
        }
        if (m_queueSize + size > maximumQueueSize)
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

    /// Blocks the thread until there is something to take or the stream has ended.
    /// @return false when the time is over
    bool wait(std::chrono::milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return m_news.wait_for(lock, time, [this] { return m_hasEnded || !m_arrived.empty(); });
    }

protected:
    Stream() = default;
    ~Stream() = default;

    // What follows is called with the mutex locked, except after().

    // Something to ask of gRPC; when it is over, `step` is called, with the mutex locked.
    Operation after(std::function<void(bool)> step)
    {
        return {[this, step = std::move(step)](bool ok) {
            // They may be all that keeps this object and the queue; they go after the lock.
            std::shared_ptr<void> use;
            std::shared_ptr<void> self;
            const std::lock_guard lock(m_mutex);
            --m_asked;
            step(ok);
            if (!m_isOver || m_asked > 0)
                return;
            m_hasEnded = true;
            post();
            use = std::move(m_use);
            self = std::move(m_self);
        }};
    }

    // Counts what is asked of gRPC: the stream outlives it.
    void *asked(Operation *operation)
    {
        ++m_asked;
        return operation;
    }

    // The stream keeps itself and the queue until it is over.
    void keep(std::shared_ptr<void> self, Completions *completions)
    {
        m_self = std::move(self);
        m_use = completions->use();
    }

    // The call is established.
    void begin(Call *call)
    {
        m_call = call;
        m_isWriting = false;
        read();
        write();
        writeEnded();
    }

    // Nothing is sent any more.
    void close()
    {
        m_isClosed = true;
    }

    // Nothing more will be asked of gRPC.
    void conclude()
    {
        m_isOver = true;
    }

    // Nothing is written any more.
    void endWriting()
    {
        m_isWriting = true;
    }

    bool isWriting() const
    {
        return m_isWriting;
    }

    bool isOpenAndWritten() const
    {
        return !m_isClosed && !m_isWriting && m_queue.empty();
    }

    // The peer sends nothing more.
    virtual void readEnded() = 0;
    virtual void writeEnded() = 0;

    mutable std::mutex m_mutex;

private:
    static constexpr std::size_t maximumArrived = 256;
    // More than an Outbox, which is sent at once.
    static constexpr std::size_t maximumQueueSize = 6 * std::size_t(maximumMessageSize);
    static constexpr std::size_t maximumArrivedSize = 2 * std::size_t(maximumMessageSize);
    static constexpr std::size_t maximumTogether = 1024 * 1024; // bytes

    struct Entry
    {
        Outgoing message;
        int kind;
        std::size_t size;
    };

    void read()
    {
        m_call->Read(&m_incoming, asked(&m_reading));
    }

    void onRead(bool ok)
    {
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
        m_isPaused = m_arrived.size() >= maximumArrived || m_arrivedSize >= maximumArrivedSize;
        if (m_isPaused)
            return;
        // The receiver, which is awake now, does not wait for what gRPC does here.
        void *const tag = asked(&m_reading);
        m_mutex.unlock();
        m_call->Read(&m_incoming, tag);
        m_mutex.lock();
    }

    void resume()
    {
        if (!m_isPaused || m_isClosed)
            return;
        m_isPaused = false;
        read();
    }

    void write()
    {
        if (m_isWriting || m_isClosed || m_queue.empty())
            return;
        m_isWriting = true;
        const Outgoing message = next();
        m_call->Write(message, asked(&m_writing));
    }

    Outgoing next()
    {
        Outgoing message = pop();
        if constexpr (std::is_same_v<Outgoing, wire::Events>) {
            std::size_t size = memoryOf(message);
            while (!m_queue.empty()) {
                size += m_queue.front().size;
                if (size > maximumTogether)
                    break;
                Outgoing other = pop();
                for (wire::Event &event : *other.mutable_events())
                    *message.add_events() = std::move(event);
            }
        }
        return message;
    }

    Outgoing pop()
    {
        Outgoing message = std::move(m_queue.front().message);
        m_queueSize -= m_queue.front().size;
        m_queue.pop_front();
        return message;
    }

    void onWritten(bool ok)
    {
        m_isWriting = false;
        if (!ok) {
            m_queue.clear();
            m_queueSize = 0;
        }
        write();
        writeEnded();
    }

    void post()
    {
        m_news.notify_all();
        if (!m_receiver || m_isAwake)
            return;
        m_isAwake = true;
        QMetaObject::invokeMethod(m_receiver, m_wake, Qt::QueuedConnection);
    }

    Call *m_call = nullptr;
    std::shared_ptr<void> m_self;
    std::shared_ptr<void> m_use;
    int m_asked = 0; // operations that are not over
    bool m_isOver = false;
    Operation m_reading = after([this](bool ok) { onRead(ok); });
    Operation m_writing = after([this](bool ok) { onWritten(ok); });

    std::condition_variable m_news;
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
    bool m_isWriting = true; // as long as there is nothing to write to
};

} // namespace qel::rpc

#endif
