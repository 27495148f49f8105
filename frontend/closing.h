#ifndef QELFRONTEND_CLOSING_H
#define QELFRONTEND_CLOSING_H

#include "export.h"

#include <qeldevices/device.h>

#include <QtCore/QObject>

#include <chrono>
#include <functional>

namespace qel::frontend {

/// Closes `device`, which must not be null, and calls `done` once from the event loop: with true as
/// soon as it is closed or deleted, with false when it is still open after `limit`, which a driver
/// that fails to close it can bring about. Not at all when `context` is deleted before.
///
/// A driver that does not come back from Device::close() holds up the whole thread, and no limit
/// helps.
QELFRONTEND_EXPORT void closeDevice(devices::Device *device, std::chrono::milliseconds limit,
                                    QObject *context, std::function<void(bool isClosed)> done);

} // namespace qel::frontend

#endif
