/// @file
/// The library's logging categories.
#ifndef QELDEVICES_LOGGING_H
#define QELDEVICES_LOGGING_H

#include "qeldevices_global.h"

#include <QtCore/QLoggingCategory>

/// The category "qel.devices": the library's own work.
///
/// Progress is logged at info level, failures at warning level, the drivers' requests for user
/// action at debug level. Every level is enabled until Qt's logging rules say otherwise. The same
/// object is returned on every call; any thread may call.
QELDEVICES_EXPORT const QLoggingCategory &LogCDevices();

/// The category "qel.devices.driver": complaints about what a driver or an application asked of a
/// device. Driver plugins write here too. Otherwise as LogCDevices().
QELDEVICES_EXPORT const QLoggingCategory &LogCDriver();

#endif
