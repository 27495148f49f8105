#ifndef QELFRONTEND_SELECTION_H
#define QELFRONTEND_SELECTION_H

#include "export.h"

#include <qeldevices/device.h>
#include <qeldevices/deviceinfo.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace qel::frontend {

/// Whether the beginning of a name stands for the name.
enum class Abbreviation { Allowed, Refused };

/// The device among `devices` that `text` means: its serial, `driver/location`, or an unambiguous
/// beginning of either or of its name. A whole text goes before a beginning, exact letter case
/// before any case.
/// @param abbreviation Refused: only a whole serial, path or name means an instrument, in any
/// letter case. A script that names a reader which is not there must not measure on another.
/// @return nothing, and a sentence in `problem` that lists the candidates, when `text` means none
/// or several
QELFRONTEND_EXPORT std::optional<devices::DeviceInfo>
selectDevice(const QString &text, const QList<devices::DeviceInfo> &devices, QString *problem,
             Abbreviation abbreviation = Abbreviation::Allowed);

/// The feature that `text` means: the enumerator with or without "DF_", in any letter case and with
/// dashes or underscores between words ("absorbance-measurement"), or an unambiguous beginning.
/// Device::DF_None is none.
/// @return nothing, and a sentence in `problem` that lists the candidates, when `text` means none
/// or several
QELFRONTEND_EXPORT std::optional<devices::Device::DeviceFeature> selectFeature(const QString &text,
                                                                               QString *problem);

/// The features that `device` offers, in ascending order.
QELFRONTEND_EXPORT QList<devices::Device::DeviceFeature>
offeredFeatures(const devices::Device &device);

/// `driver/location`, the name of a device that is always there.
QELFRONTEND_EXPORT QString devicePath(const devices::DeviceInfo &info);

} // namespace qel::frontend

#endif
