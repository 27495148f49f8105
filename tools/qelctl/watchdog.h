#ifndef QELCTL_WATCHDOG_H
#define QELCTL_WATCHDOG_H

#include <QtCore/QString>

namespace qelctl {

/// @file
/// What a driver may do to the process it is loaded into, and what is said of it then. Whatever
/// ends the process names the plugin and the call on standard error and ends it with DriverFailed,
/// or with the code of the limit; results that are finished are on the disk by then.

/// From now on a crash, an abort, an uncaught exception and an exit() that is not the tool's own
/// are told. An _exit() cannot be noticed.
void watchDrivers();

/// The tool has done its work: from now on the process may end.
void toolHasEnded();

/// What is said after it when a driver ends the process.
void setLastWords(const QString &message);

/// Ends the process with `code` in `milliseconds`, unless told otherwise before: for what the event
/// loop would do if no driver held it up. 0 takes the limit back.
void limitProcess(int milliseconds, int code);

} // namespace qelctl

#endif
