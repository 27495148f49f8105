#ifndef RPC_COMPLETIONS_H
#define RPC_COMPLETIONS_H

#include <grpcpp/grpcpp.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace qel::rpc {

/// Something that gRPC is asked to do; a pointer to it is the tag.
struct Operation
{
    /// Called when it is over, in the thread of the queue; `ok` as gRPC means it.
    std::function<void(bool ok)> done;
};

/// A queue of operations that are over, and the thread that looks after it.
///
/// The thread of a queue is also the one in which gRPC reads its sockets: a message has come
/// without a change of threads when it is heard of.
class Completions
{
public:
    explicit Completions(std::unique_ptr<grpc::CompletionQueue> queue);
    /// Waits until nobody uses the queue.
    ~Completions();

    grpc::CompletionQueue *queue() const;
    /// Whoever holds on to the result may ask for more operations.
    std::shared_ptr<void> use();

    /// The queue of all streams of this process that call others. It is there until the process
    /// ends.
    static Completions *ofCalls();

private:
    const std::unique_ptr<grpc::CompletionQueue> m_queue;
    std::mutex m_mutex;
    std::condition_variable m_isUnused;
    int m_users = 0;
    std::thread m_thread;
};

/// Keeps the threads that gRPC shares between its connections until the process ends: when they go
/// with the last connection, gRPC now and then aborts the process.
void keepRuntime();

} // namespace qel::rpc

#endif
