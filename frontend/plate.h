#ifndef QELFRONTEND_PLATE_H
#define QELFRONTEND_PLATE_H

#include "export.h"

#include <qeldevices/device.h>

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <chrono>
#include <optional>

namespace qel::frontend {

/// One read of a whole plate.
struct PlateRead
{
    QString label;                 ///< tells it from the other reads: "450 nm", or the unit
    std::optional<int> wavelength; ///< in nm
    QVector<double> values;        ///< one a well, row by row from A1; NaN where not measured
};

/// The result of a measuring feature.
struct Plate
{
    int rows = 0;             ///< of wells
    int columns = 0;          ///< of wells
    QString unit;             ///< of the values
    QVector<PlateRead> reads; ///< in the order of measurement; each has rows × columns values
    std::optional<std::chrono::milliseconds> integrationTime; ///< for each well
    QDateTime startedAt;                                      ///< in UTC
    std::optional<double> temperature;                        ///< inside the instrument, in °C
    /// The most that the detector can tell, in `unit`; nothing when it is not known.
    std::optional<double> maximum;

    /// Whether a well with this value holds that or more: nobody knows how much.
    bool isSaturated(double value) const
    {
        return maximum && value >= *maximum;
    }
};

/// Reads the result of a measuring feature.
/// @param descriptor of the feature, which knows the detector; may be left out
/// @return nothing, and a sentence in `problem`, when values::checkResult() finds fault with it
QELFRONTEND_EXPORT std::optional<Plate> plateFromResult(devices::Device::DeviceFeature feature,
                                                        const QVariant &result, QString *problem,
                                                        const QVariant &descriptor = {});

} // namespace qel::frontend

#endif
