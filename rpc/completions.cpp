#include "completions.h"

#include <utility>

#include <signal.h>

namespace qel::rpc {

static void lookAfter(grpc::CompletionQueue *queue)
{
    void *tag = nullptr;
    bool ok = false;
    while (queue->Next(&tag, &ok))
        static_cast<Operation *>(tag)->done(ok);
}

Completions::Completions(std::unique_ptr<grpc::CompletionQueue> queue)
    : m_queue(std::move(queue))
{
    // Signals are for the threads of the application.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread(lookAfter, m_queue.get());
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Completions::~Completions()
{
    {
        std::unique_lock lock(m_mutex);
        m_isUnused.wait(lock, [this] { return m_users == 0; });
    }
    m_queue->Shutdown();
    m_thread.join();
}

grpc::CompletionQueue *Completions::queue() const
{
    return m_queue.get();
}

std::shared_ptr<void> Completions::use()
{
    const std::lock_guard lock(m_mutex);
    ++m_users;
    return {this, [](Completions *completions) {
                // Notified under the lock: the destructor may be waiting.
                const std::lock_guard last(completions->m_mutex);
                --completions->m_users;
                completions->m_isUnused.notify_all();
            }};
}

Completions *Completions::ofCalls()
{
    // Never deleted, on purpose.
    static auto *const ofCalls = new Completions(std::make_unique<grpc::CompletionQueue>());
    return ofCalls;
}

void keepRuntime()
{
    // Never deleted, on purpose. A thread of its own would read the sockets of other queues, too,
    // and each message would have to change threads.
    [[maybe_unused]] static const auto *const kept = new grpc::CompletionQueue;
}

} // namespace qel::rpc
