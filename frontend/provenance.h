#ifndef QELFRONTEND_PROVENANCE_H
#define QELFRONTEND_PROVENANCE_H

#include "export.h"

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QString>

#include <optional>

namespace qel::frontend {

/// The plugin that has registered the driver `driver`. Nothing when there is no such driver, when
/// it comes from no plugin, or when that cannot be told.
///
/// startLibrary() watches which plugin registers what. Drivers that came another way are known by
/// the file that holds their code, which fails where a plugin takes its driver from a library.
QELFRONTEND_EXPORT std::optional<devices::DeviceBroker::DevicePluginInfo>
pluginOfDriver(const QString &driver);

/// The plugin of the driver of `device`. For a device that stands for one in another process or on
/// another machine, it is the plugin there, whose file begins with the name of the machine and a
/// colon if that is another one; for a device on another machine it is known once the device has
/// been opened.
QELFRONTEND_EXPORT std::optional<devices::DeviceBroker::DevicePluginInfo>
pluginOfDevice(const devices::Device &device);

} // namespace qel::frontend

#endif
