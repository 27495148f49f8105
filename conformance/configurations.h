#ifndef QEL_CONFORMANCE_CONFIGURATIONS_H
#define QEL_CONFORMANCE_CONFIGURATIONS_H

#include <qeldevices/device.h>

#include <QtCore/QVector>

namespace qel::conformance {

/// The valid configuration that makes for the shortest run; invalid where none is needed.
QVariant shortConfiguration(devices::Device::DeviceFeature feature, const QVariant &descriptor);

/// A valid configuration; invalid only where the feature takes none.
QVariant someConfiguration(devices::Device::DeviceFeature feature, const QVariant &descriptor);

/// Whether two values are equal in type and content. QVariant compares some types, QList<int> for
/// instance, by their place in memory.
bool isSame(const QVariant &left, const QVariant &right);

/// Whether a run needs no configuration, as every setting of the descriptor has a default.
bool hasDefaults(const QVariant &descriptor);

/// A configuration that is allowed.
struct OtherConfiguration
{
    QString what;   ///< what is special about it, for people
    QVariant value; ///< the configuration
};

/// Configurations of a measuring feature whose results must differ from that of the shortest.
QVector<OtherConfiguration> otherConfigurations(devices::Device::DeviceFeature feature,
                                                const QVariant &descriptor);

/// A configuration that the descriptor forbids.
struct WrongConfiguration
{
    QString what;   ///< what is wrong, for people
    QVariant value; ///< the configuration
};

/// Configurations that must be refused: values of another type, outside the limits, or missing.
QVector<WrongConfiguration> wrongConfigurations(devices::Device::DeviceFeature feature,
                                                const QVariant &descriptor);

} // namespace qel::conformance

#endif
