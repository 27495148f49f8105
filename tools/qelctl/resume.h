#ifndef QELCTL_RESUME_H
#define QELCTL_RESUME_H

#include "resultformat.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QJsonObject>

#include <optional>

namespace qelctl {

/// What an earlier command has left in the file of a series.
struct Earlier
{
    int runs = 0;
    /// The settings that they were made with as writeConfiguration() writes them, as far as the
    /// file tells: JSON tells all, CSV the wavelengths, the integration time and the wells.
    QJsonObject settings;
};

/// What stands in the file `path`, which a series in `format` has written; nothing has when there
/// is no such file. A last run that is not whole, after a power cut for instance, is cut off;
/// nothing else is.
/// @return nothing, and a sentence in `problem`, when the file holds anything but runs of `feature`
/// on `device`, or is in a format that does not tell
std::optional<Earlier> finishedRuns(const QString &path, Format format, char delimiter,
                                    const qel::devices::DeviceInfo &device,
                                    qel::devices::Device::DeviceFeature feature, QString *problem);

/// The key of the first setting in which a run with `configuration` would differ from the runs
/// before it; empty when there is none.
QString differingSetting(const Earlier &earlier, const QJsonObject &configuration,
                         const QVariant &descriptor);

} // namespace qelctl

#endif
