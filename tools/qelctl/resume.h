#ifndef QELCTL_RESUME_H
#define QELCTL_RESUME_H

#include "resultformat.h"

#include <qeldevices/deviceinfo.h>

#include <optional>

namespace qelctl {

/// How many runs stand in the file `path`, which a series in `format` has written; 0 when there is
/// no such file. A last run that is not whole, after a power cut for instance, is cut off.
/// @return nothing, and a sentence in `problem`, when the file holds something else or the runs of
/// another instrument, or in a format that does not tell
std::optional<int> finishedRuns(const QString &path, Format format, char delimiter,
                                const qel::devices::DeviceInfo &device, QString *problem);

} // namespace qelctl

#endif
