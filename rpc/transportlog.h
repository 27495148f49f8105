#ifndef RPC_TRANSPORTLOG_H
#define RPC_TRANSPORTLOG_H

#include <QtCore/QString>

#include <functional>

namespace qel::rpc {

/// From now on, the errors that gRPC itself tells, of handshakes that fail for instance, are told
/// to `receive`, in any thread, instead of standard error: ten in a second, and with the next one,
/// how many there were besides.
void hearTransport(std::function<void(const QString &what)> receive);

/// The same, to the category of drivers at the level of debugging: what becomes of a connection,
/// its owner is told otherwise. Whoever sets GRPC_VERBOSITY hears gRPC as ever.
void hushTransport();

} // namespace qel::rpc

#endif
