/// @file
/// The identity of one attached instrument.
#ifndef QELDEVICES_DEVICEINFO_H
#define QELDEVICES_DEVICEINFO_H

#include "qeldevices_global.h"

#include <QtCore/QDebug>
#include <QtCore/QString>

namespace qel::devices {

class Device;

/// Identifies one attached instrument: how it is connected, who drives it, where it is, what it is
/// called.
///
/// Drivers list their instruments as records of this type, and an application hands one of them to
/// DeviceBroker::createDevice(). A plain value: cheap to copy, any strings are accepted.
class QELDEVICES_EXPORT DeviceInfo
{
public:
    /// The kind of connection.
    enum Interface : int {
        UnknownInterface = 0, ///< not known, or none of the others
        Simulator = 1,        ///< no hardware at all
        Serial = 2,           ///< a serial port
        UsbHid = 3,           ///< a USB human interface device
        Network = 4,          ///< a network address
    };

    /// Builds a whole record; it has no setters.
    /// @param interface how the instrument is connected
    /// @param driver the name under which its driver is registered with the broker
    /// @param location where it is attached, in the driver's own words
    /// @param name what the instrument is called
    /// @param serial its serial number
    DeviceInfo(Interface interface, QString driver, QString location, QString name, QString serial);

    /// How the instrument is connected.
    Interface interface() const;
    /// The name of the driver that serves the instrument.
    QString driver() const;
    /// Where the instrument is attached, in the driver's own words.
    QString location() const;
    /// What the instrument is called.
    QString name() const;
    /// The instrument's serial number.
    QString serial() const;

    /// Whether all five fields are equal, letter case included.
    bool operator==(const DeviceInfo &other) const;
    /// A total order by interface value, then driver, location, name and serial, each by code unit.
    bool operator<(const DeviceInfo &other) const;

private:
    // A device may rename the record it holds: Device writes m_name and m_serial, nothing else.
    friend class Device;

    Interface m_interface;
    QString m_driver;
    QString m_location;
    QString m_name;
    QString m_serial;
};

/// Writes name, location and interface of `info`, for instance `"Reader 1" @ "COM3" [ Serial ]`.
/// The settings of the stream (spacing, quoting) apply. Returns a copy of the stream.
QELDEVICES_EXPORT QDebug operator<<(QDebug &debug, const DeviceInfo &info);

} // namespace qel::devices

#endif
