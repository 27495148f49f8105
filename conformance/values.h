#ifndef QEL_CONFORMANCE_VALUES_H
#define QEL_CONFORMANCE_VALUES_H

#include <qeldevices/device.h>

#include <QtCore/QVector>

namespace qel::conformance {

/// Whether running `feature` moves parts of the instrument or changes its firmware.
bool isMoving(devices::Device::DeviceFeature feature);

/// What is wrong with the descriptor of `feature`, its settings apart; empty when nothing is.
QString descriptorFault(devices::Device::DeviceFeature feature, const QVariant &descriptor);

/// What is wrong with the settings in the descriptor of `feature`; empty when nothing is.
QString settingsFault(devices::Device::DeviceFeature feature, const QVariant &descriptor);

/// What is wrong with the result of a run of `feature` that succeeded; empty when nothing is.
QString resultFault(devices::Device::DeviceFeature feature, const QVariant &result);

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
