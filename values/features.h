/// @file
/// What each feature takes and delivers: docs/feature-values.md as data.
///
/// Codec, checker, command line tool and documentation follow this table. Whoever wants to know
/// what a feature's values hold asks here and keeps no list of his own.
#ifndef QELVALUES_FEATURES_H
#define QELVALUES_FEATURES_H

#include <qeldevices/device.h>

#include <QtCore/QVector>

namespace qel::values {

/// An entry of a hash.
struct Key
{
    const char *name; ///< exactly as it is written
    const char *type; ///< the registered name of its exact meta-type
    /// UTF-8. The unit of a number or of a list's elements; of the key "unit", the text that it
    /// holds. Empty where there is none, or where the descriptor tells it.
    const char *unit = "";
};

/// What a value holds. A hash may have more keys than these.
struct Shape
{
    /// The registered name of the exact meta-type; null for nothing, which is an invalid QVariant.
    const char *type = nullptr;
    const char *unit = ""; ///< of a number, in UTF-8
    QVector<Key> keys;     ///< of a hash; none of them may be absent

    /// The key `name`; null when there is none.
    const Key *find(const QString &name) const;
};

/// What a feature takes and delivers.
struct Feature
{
    devices::Device::DeviceFeature feature; ///< which one
    /// Whether devices may offer it.
    bool isOffered;
    /// Whether it moves parts of the instrument or changes its firmware: not to be run unasked.
    bool isMoving;
    /// Whether it measures the wells of a plate. Its result has "values", one read of the whole
    /// plate each.
    bool isMeasurement;

    Shape descriptor;    ///< what Device::descriptor() holds
    Shape configuration; ///< the settings; those with a default may be left out
    Shape transient;     ///< what Device::transientValue() brings
    Shape result;        ///< what Device::executed() brings after a success
};

/// All features, DF_None included, in ascending order.
const QVector<Feature> &features();

/// The entry of `feature`; null for a number that is no feature.
const Feature *findFeature(devices::Device::DeviceFeature feature);

/// Whether `feature` measures the wells of a plate.
bool isMeasurement(devices::Device::DeviceFeature feature);

/// Whether `feature` moves parts of the instrument or changes its firmware.
bool isMoving(devices::Device::DeviceFeature feature);

} // namespace qel::values

#endif
