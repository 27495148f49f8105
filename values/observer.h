/// @file
/// All signals of a device as one stream of events.
#ifndef QELVALUES_OBSERVER_H
#define QELVALUES_OBSERVER_H

#include <qeldevices/device.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <functional>

namespace qel::values {

/// One emission of a device's signal, with the device's state at that moment.
struct Event
{
    /// The signal.
    enum Kind {
        OpenChanged,
        BusyChanged,
        TransientValue,
        Executed,
        NameChanged,
        SerialChanged,
        DescriptorChanged,
        ConfigurationChanged,
        FeaturesChanged,
        ErrorChanged,
        ActionRequired,
        ActionConfirmed,
    };

    Kind kind = OpenChanged; ///< the signal
    /// The feature that the signal is about; DF_None for signals about none.
    devices::Device::DeviceFeature feature = devices::Device::DF_None;
    /// What openChanged() and busyChanged() say, and whether an execution succeeded.
    bool flag = false;
    /// A result, a transient value, or the new name, serial number, descriptor or configuration.
    QVariant value;
    int actionId = -1; ///< of a request for action
    QString action;    ///< the translation id of what the user is to do

    bool isOpen = false;        ///< the device's flag
    bool isBusy = false;        ///< the device's flag
    int errorCode = 0;          ///< the device's error
    QString errorTrId;          ///< the device's error
    QString additionalInfoTrId; ///< the device's error
    /// Whether it was emitted in the device's thread, as it ought to be.
    bool isOwnThread = true;
};

/// The name of the signal, for instance "openChanged".
QByteArray signalName(Event::Kind kind);

/// Calls `receiver` for each signal of `device`, inside the emission and in its thread, until
/// `context` or the device is destroyed. `receiver` must not destroy either.
void observe(devices::Device *device, QObject *context,
             const std::function<void(const Event &)> &receiver);

} // namespace qel::values

#endif
