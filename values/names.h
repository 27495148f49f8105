/// @file
/// Names of features and interfaces, one spelling for every program.
#ifndef QELVALUES_NAMES_H
#define QELVALUES_NAMES_H

#include <qeldevices/device.h>
#include <qeldevices/deviceinfo.h>

#include <QtCore/QString>
#include <QtCore/QVector>

#include <utility>

namespace qel::values {

/// The enumerator's name, for instance "DF_Orientation"; the number for a value without one.
QString featureName(devices::Device::DeviceFeature feature);

/// The name as a user types it, for instance "absorbance-measurement".
QString featureArgument(devices::Device::DeviceFeature feature);

/// An interface as a user reads it, for instance "USB HID"; empty for an unlisted value.
QString interfaceName(devices::DeviceInfo::Interface interface);

/// The names of all error codes of deviceerrors.h, in ascending order of the codes, as
/// "ERROR_DEVICE_TIMEOUT". NO_DEVICE_ERROR is none.
const QVector<std::pair<QString, int>> &errorNames();

/// The interface that interfaceName() calls `name`; UnknownInterface for any other name.
devices::DeviceInfo::Interface interfaceNamed(const QString &name);

} // namespace qel::values

#endif
