#ifndef RPC_LIBEXEC_H
#define RPC_LIBEXEC_H

#include <QtCore/QString>

namespace qel::rpc {

/// Where the program or module `name` of this project is: in a folder at its usual distance from
/// that of this code or of the program that runs, so that a whole prefix can be moved, or where it
/// was to be installed. Empty when it is nowhere.
QString libexecFile(const QString &name);

/// Loads the module `name` and has it register its drivers. What it brings along, gRPC above all,
/// is not paid for by applications that do not need it. Complains to the log when that fails.
void registerDriversOf(const QString &name);

} // namespace qel::rpc

#endif
