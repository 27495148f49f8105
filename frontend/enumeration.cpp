#include "enumeration.h"

#include "trail.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QElapsedTimer>

#include <algorithm>

namespace qel::frontend {

using namespace qel::devices;

namespace {

bool isSameInstrument(const DeviceInfo &before, const DeviceInfo &now)
{
    if (before.driver() != now.driver())
        return false;
    if (!before.serial().isEmpty() && !now.serial().isEmpty())
        return before.serial() == now.serial();
    return before.location() == now.location();
}

} // namespace

QList<DeviceInfo> Enumeration::devices() const
{
    QList<DeviceInfo> all;
    for (const DriverAnswer &answer : answers)
        all += answer.devices;
    std::sort(all.begin(), all.end());
    return all;
}

Enumeration enumerate(const QStringList &drivers)
{
    Enumeration enumeration;
    // A copy, since a driver may register others while it searches.
    const auto registered = DeviceBroker::DRIVERS;
    QStringList names = registered.keys();
    names.sort();
    for (const QString &name : std::as_const(names)) {
        if (!drivers.isEmpty() && !drivers.contains(name))
            continue;
        QElapsedTimer timer;
        timer.start();
        const TrailMark mark(name, "availableDevices()");
        DriverAnswer answer{name, registered.value(name)->availableDevices(), {}};
        answer.elapsed = std::chrono::microseconds(timer.nsecsElapsed() / 1000);
        enumeration.answers += answer;
    }
    return enumeration;
}

bool EnumerationChange::isEmpty() const
{
    return arrived.isEmpty() && left.isEmpty() && changed.isEmpty();
}

EnumerationChange difference(const QList<DeviceInfo> &before, const QList<DeviceInfo> &now)
{
    EnumerationChange change;
    change.arrived = now;
    // Equal records first, so that one of two with the same serial does not pass for the other.
    QList<DeviceInfo> rest;
    for (const DeviceInfo &info : before) {
        if (!change.arrived.removeOne(info))
            rest += info;
    }
    for (const DeviceInfo &info : std::as_const(rest)) {
        const auto same = std::find_if(
            change.arrived.begin(), change.arrived.end(),
            [&info](const DeviceInfo &other) { return isSameInstrument(info, other); });
        if (same == change.arrived.end()) {
            change.left += info;
            continue;
        }
        change.changed += qMakePair(info, *same);
        change.arrived.erase(same);
    }
    return change;
}

} // namespace qel::frontend
