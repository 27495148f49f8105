#include "plate.h"

#include "messages_p.h"
#include "problems.h"

#include <qelvalues/features.h>
#include <qelvalues/results.h>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

namespace {

// A wavelength may be measured twice, but its values must not end up under one name.
void tellApart(QVector<PlateRead> *reads)
{
    for (int i = 0; i < reads->size(); ++i) {
        int same = 1;
        for (int k = 0; k < i; ++k)
            same += (*reads)[k].wavelength == (*reads)[i].wavelength;
        if (same > 1)
            (*reads)[i].label += QStringLiteral(" #%1").arg(same);
    }
}

} // namespace

std::optional<Plate> plateFromResult(Device::DeviceFeature feature, const QVariant &result,
                                     QString *problem, const QVariant &descriptor)
{
    const auto problems = checkResult(feature, {}, {}, result);
    if (!isMeasurement(feature) || !problems.isEmpty()) {
        *problem =
            problems.isEmpty() ? message("qelfrontend-plate-none") : explain(problems.first());
        return {};
    }
    const QVariantHash hash = result.toHash();
    Plate plate;
    plate.rows = hash.value(QStringLiteral("rows")).toInt();
    plate.columns = hash.value(QStringLiteral("columns")).toInt();
    plate.unit = hash.value(QStringLiteral("unit")).toString();
    plate.startedAt = hash.value(QStringLiteral("startedAt")).toDateTime();
    plate.temperature = hash.value(QStringLiteral("temperature")).toDouble();
    const QVariant time = hash.value(QStringLiteral("integrationTime"));
    if (feature == Device::DF_LuminescenceMeasurement)
        plate.integrationTime = time.value<std::chrono::milliseconds>();
    const auto wavelengths = hash.value(QStringLiteral("wavelengths")).value<QList<int>>();
    const auto reads = hash.value(QStringLiteral("values")).toList();
    for (int i = 0; i < reads.size(); ++i) {
        PlateRead read{plate.unit, {}, reads[i].value<QVector<double>>()};
        if (feature == Device::DF_AbsorbanceMeasurement) {
            read.wavelength = wavelengths[i];
            read.label = QStringLiteral("%1 nm").arg(wavelengths[i]);
        }
        plate.reads.append(read);
    }
    tellApart(&plate.reads);
    const QVariant maximum = descriptor.toHash().value(QStringLiteral("maximum"));
    if (maximum.userType() == QMetaType::Double)
        plate.maximum = maximum.toDouble();
    return plate;
}

} // namespace qel::frontend
