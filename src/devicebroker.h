/// @file
/// The registry of drivers, and what a driver and its plugin implement.
#ifndef QELDEVICES_DEVICEBROKER_H
#define QELDEVICES_DEVICEBROKER_H

#include "deviceinfo.h"
#include "qeldevices_global.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPluginLoader>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <memory>

namespace qel::devices {

class Device;

/// Serves one family of instruments: lists those it can reach and creates devices for them.
///
/// Implemented by driver plugins, registered with DeviceBroker::addDriver(). The broker calls it
/// from the application's thread only, and may keep it until the process ends, after the
/// application object has gone.
class QELDEVICES_EXPORT DeviceDriver
{
public:
    virtual ~DeviceDriver() = default;

    /// The name under which the driver is registered. It never changes, and every DeviceInfo of
    /// availableDevices() carries it. Letter case counts.
    virtual QString name() = 0;

    /// Creates the device for the instrument that `info` describes, closed and without a parent.
    /// The caller owns it. Null when there is no such instrument.
    virtual Device *createDevice(const DeviceInfo &info) = 0;

    /// The instruments this driver can reach at this moment, in any order.
    virtual QList<DeviceInfo> availableDevices() = 0;
};

/// What the root object of a driver plugin implements, beside being a `QObject`.
///
/// The root object lists it with `Q_INTERFACES` and carries
/// `Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")`. The metadata file is a JSON
/// object with the string values "manufacturer", "url", "resource-id" and "version".
class QELDEVICES_EXPORT DevicePlugin
{
public:
    virtual ~DevicePlugin() = default;

    /// Creates the plugin's drivers and registers each with DeviceBroker::addDriver(). Called once
    /// for every successful load of the plugin file.
    virtual void registerDrivers() = 0;
};

/// The process-wide registry of drivers: finds plugins, lists instruments, creates devices.
///
/// Everything is static. All calls come from one thread at a time, the thread of init().
class QELDEVICES_EXPORT DeviceBroker : public QObject
{
    Q_OBJECT

public:
    /// What a loaded driver plugin says of itself. Values missing from its metadata are empty.
    struct DevicePluginInfo
    {
        QString fileName;     ///< the path as it was passed to loadPlugin()
        QString manufacturer; ///< metadata value "manufacturer"
        QUrl url;             ///< metadata value "url"
        QString resourceId;   ///< metadata value "resource-id"
        QString version;      ///< metadata value "version"
    };

    DeviceBroker() = delete;

    /// Registers `driver`, which must not be null, under its name. A driver registered under that
    /// name before is replaced; devices it has created live on.
    static void addDriver(std::shared_ptr<DeviceDriver> driver);

    /// The names of all registered drivers, in no particular order.
    static QStringList availableDrivers();

    /// Creates the device for `info` through the driver that `info` names. The caller owns it; it
    /// has no parent and is closed. Null, with a warning in "qel.devices", when the driver is
    /// unknown or has no such instrument.
    static Device *createDevice(const DeviceInfo &info);

    /// The instruments that can be opened now: every driver is asked afresh, one after another, and
    /// the answers are sorted by DeviceInfo::operator<().
    static QList<DeviceInfo> availableDevices();

    /// Loads one plugin file and has it register its drivers. False, with a warning in
    /// "qel.devices" that gives the reason, when the file is no usable plugin. Loading a file again
    /// registers its drivers again.
    static bool loadPlugin(const QString &fileName);

    /// Tries every file below `directory`, at any depth, as a plugin. Hidden files and linked
    /// directories are left out; a file that fails does not stop the others.
    static void loadAllDevicePlugins(const QString &directory);

    /// One record for each successful load, in the order of loading.
    static QList<DevicePluginInfo> loadedPlugins();

    /// @name Tables
    /// The broker's state. It only grows while the process runs; plugins are never unloaded. The
    /// tables go at process exit in the reverse order of their declaration.
    /// @{

    /// The registered drivers by name.
    static QHash<QString, std::shared_ptr<DeviceDriver>> DRIVERS_RELEASE;
    /// Bound to DRIVERS_RELEASE.
    static QHash<QString, std::shared_ptr<DeviceDriver>> &DRIVERS;
    /// One loader for each plugin file attempted, successful or not.
    static QList<std::shared_ptr<QPluginLoader>> LOADERS_RELEASE;
    /// Bound to LOADERS_RELEASE.
    static QList<std::shared_ptr<QPluginLoader>> &LOADERS;
    /// What loadedPlugins() returns.
    static QList<DevicePluginInfo> PLUGINS;
    /// @}
};

} // namespace qel::devices

/// The interface id of driver plugins, as `Q_PLUGIN_METADATA` wants it.
#define QelDevicePlugin_iid "com.xelvra.DevicePlugin/1.0"
Q_DECLARE_INTERFACE(qel::devices::DevicePlugin, QelDevicePlugin_iid)

#endif
