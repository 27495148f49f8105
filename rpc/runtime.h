#ifndef RPC_RUNTIME_H
#define RPC_RUNTIME_H

namespace qel::rpc {

/// Keeps what gRPC shares between connections until the process ends.
///
/// Together with its last connection, gRPC ends the threads that all of them share, and now and
/// then aborts the process over it. So there is always one more, which leads nowhere.
void keepRuntime();

} // namespace qel::rpc

#endif
