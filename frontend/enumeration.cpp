#include "enumeration.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>

#include <algorithm>

#if defined(Q_OS_UNIX)
#    include <dlfcn.h>
#endif

namespace qel::frontend {

using namespace qel::devices;

namespace {

// The file that holds the code of `driver`, found by the address of its table of virtual functions.
QString fileOf(const DeviceDriver *driver)
{
#if defined(Q_OS_UNIX)
    const void *const table = *reinterpret_cast<const void *const *>(driver);
    Dl_info info{};
    if (dladdr(table, &info) && info.dli_fname)
        return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
#else
    Q_UNUSED(driver)
#endif
    return QString();
}

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

std::optional<DeviceBroker::DevicePluginInfo> pluginOfDriver(const QString &driver)
{
    const auto registered = DeviceBroker::DRIVERS.value(driver);
    const QString file = registered ? fileOf(registered.get()) : QString();
    if (file.isEmpty())
        return {};
    const auto plugins = DeviceBroker::loadedPlugins();
    for (const auto &plugin : plugins) {
        if (QFileInfo(plugin.fileName).canonicalFilePath() == file)
            return plugin;
    }
    return {};
}

} // namespace qel::frontend
