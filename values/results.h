/// @file
/// Whether what a device hands out is what the feature delivers, judged by features().
#ifndef QELVALUES_RESULTS_H
#define QELVALUES_RESULTS_H

#include "problem.h"

#include <qeldevices/device.h>

#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <limits>

namespace qel::values {

/// Everything that is wrong with `result`, which a run of `feature` delivered as its success: keys
/// missing or of another type, a plate of another size than `descriptor` says, other wavelengths or
/// another integration time than `configuration` asked for, values for wells that were not
/// selected. Empty when the result may be used as it is.
///
/// Paths begin with "result".
/// @param descriptor what Device::descriptor() said of the feature; what it leaves out is not
/// compared
/// @param configuration what Device::configuration() held when the run began; settings that it
/// lacks have the descriptor's defaults
QVector<Problem> checkResult(devices::Device::DeviceFeature feature, const QVariant &descriptor,
                             const QVariant &configuration, const QVariant &result);

/// Everything that is wrong with a transient value of `feature`. Paths begin with "transient".
QVector<Problem> checkTransient(devices::Device::DeviceFeature feature, const QVariant &value);

/// Everything that is wrong with the descriptor of `feature`, the entries of its "settings" apart.
/// Paths begin with "descriptor".
QVector<Problem> checkDescriptor(devices::Device::DeviceFeature feature,
                                 const QVariant &descriptor);

/// The wells that a plate may have at most.
constexpr int maximumWellCount = 100000;

/// What the detector of a measuring feature can tell apart.
struct DetectorRange
{
    double minimum = -std::numeric_limits<double>::infinity(); ///< in the feature's unit
    double maximum = std::numeric_limits<double>::infinity();  ///< in the feature's unit
};

/// The range that the descriptor of a measuring feature tells; all numbers where it tells none.
DetectorRange detectorRange(const QVariant &descriptor);

/// What a value of a plate says of its well.
enum class WellState {
    Measured,    ///< the well holds the value
    NotMeasured, ///< nothing: the value is NaN
    Saturated,   ///< the well holds the value or more: it is the detector's maximum
};

/// What `value`, one of a plate's, says of its well.
WellState wellState(double value, const DetectorRange &range);

} // namespace qel::values

#endif
