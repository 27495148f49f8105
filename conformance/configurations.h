#ifndef QEL_CONFORMANCE_CONFIGURATIONS_H
#define QEL_CONFORMANCE_CONFIGURATIONS_H

#include <qeldevices/device.h>

#include <QtCore/QVector>

namespace qel::conformance {

/// The valid configuration that makes for the shortest run; invalid where none is needed.
QVariant shortConfiguration(devices::Device::DeviceFeature feature, const QVariant &descriptor);

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
