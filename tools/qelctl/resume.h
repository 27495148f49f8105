#ifndef QELCTL_RESUME_H
#define QELCTL_RESUME_H

#include "resultformat.h"

#include <qeldevices/deviceinfo.h>

#include <optional>

namespace qelctl {

/// How many runs stand in the file `path`, which a series in `format` has written; 0 when there is
/// no such file. A last run that is not whole, after a power cut for instance, is cut off; nothing
/// else is.
/// @return nothing, and a sentence in `problem`, when the file holds anything but runs of `feature`
/// on `device`, or is in a format that does not tell
std::optional<int> finishedRuns(const QString &path, Format format, char delimiter,
                                const qel::devices::DeviceInfo &device,
                                qel::devices::Device::DeviceFeature feature, QString *problem);

} // namespace qelctl

#endif
