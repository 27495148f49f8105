#ifndef QELFRONTEND_ENUMERATION_H
#define QELFRONTEND_ENUMERATION_H

#include "export.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>

namespace qel::frontend {

/// What one driver answered to the question for its instruments.
struct DriverAnswer
{
    QString driver;                       ///< the name it is registered under
    QList<devices::DeviceInfo> devices;   ///< in its own order
    std::chrono::microseconds elapsed{0}; ///< how long the answer took
};

/// The instruments that can be opened at one moment, driver by driver.
struct QELFRONTEND_EXPORT Enumeration
{
    QList<DriverAnswer> answers; ///< sorted by driver

    /// All instruments, in the order of DeviceBroker::availableDevices().
    QList<devices::DeviceInfo> devices() const;
};

/// Asks the drivers for their instruments, one after another.
/// @param drivers the names of those to ask; empty means all. A name that is not registered is left
/// out of the answers.
QELFRONTEND_EXPORT Enumeration enumerate(const QStringList &drivers = QStringList());

/// How two enumerations differ.
struct QELFRONTEND_EXPORT EnumerationChange
{
    QList<devices::DeviceInfo> arrived; ///< there now and not before
    QList<devices::DeviceInfo> left;    ///< there before and not now
    /// The same instrument before and now, with another name, location, interface or serial.
    QList<QPair<devices::DeviceInfo, devices::DeviceInfo>> changed;

    /// Whether nothing has happened.
    bool isEmpty() const;
};

/// What happened between two enumerations.
///
/// Two records of one driver mean the same instrument when their serials are equal and not empty,
/// or when their locations are equal and one of them has no serial or both have the same: another
/// serial in the same place is another instrument.
QELFRONTEND_EXPORT EnumerationChange difference(const QList<devices::DeviceInfo> &before,
                                                const QList<devices::DeviceInfo> &now);

} // namespace qel::frontend

#endif
