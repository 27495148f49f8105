#include "devicebroker.h"

#include "device.h"
#include "logging.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <utility>

namespace qel::devices {

// The order of these definitions decides the order of destruction: plugin records first, then the
// loaders, then the drivers, while the plugins' code is still loaded. A driver that goes may still
// log and report errors on its devices: the categories made here outlive it, as do the error codes
// and the catalogues, which are linked before this file.
[[maybe_unused]] static const auto &categories = (LogCDevices(), LogCDriver());
QHash<QString, std::shared_ptr<DeviceDriver>> DeviceBroker::DRIVERS_RELEASE;
QHash<QString, std::shared_ptr<DeviceDriver>> &DeviceBroker::DRIVERS = DRIVERS_RELEASE;
QList<std::shared_ptr<QPluginLoader>> DeviceBroker::LOADERS_RELEASE;
QList<std::shared_ptr<QPluginLoader>> &DeviceBroker::LOADERS = LOADERS_RELEASE;
QList<DeviceBroker::DevicePluginInfo> DeviceBroker::PLUGINS;

void DeviceBroker::addDriver(std::shared_ptr<DeviceDriver> driver)
{
    const QString name = driver->name();
    DRIVERS.insert(name, std::move(driver));
}

QStringList DeviceBroker::availableDrivers()
{
    return DRIVERS.keys();
}

Device *DeviceBroker::createDevice(const DeviceInfo &info)
{
    qCInfo(LogCDevices) << "Creating device:" << info;

    Device *device = nullptr;
    // A reference of our own: the driver may be replaced in the registry while it works.
    if (const std::shared_ptr<DeviceDriver> driver = DRIVERS.value(info.driver()))
        device = driver->createDevice(info);
    else
        qCWarning(LogCDevices) << "Unknown driver:" << info.driver();

    if (!device)
        qCWarning(LogCDevices) << "Driver" << info.driver() << "failed to create a device.";
    return device;
}

QList<DeviceInfo> DeviceBroker::availableDevices()
{
    QList<DeviceInfo> devices;
    // A copy: a driver that registers another one must not disturb the walk.
    const auto drivers = DRIVERS;
    for (const auto &driver : drivers)
        devices += driver->availableDevices();
    if (!std::is_sorted(devices.cbegin(), devices.cend()))
        std::sort(devices.begin(), devices.end());
    return devices;
}

static DeviceBroker::DevicePluginInfo describe(const QString &fileName, const QJsonObject &metaData)
{
    DeviceBroker::DevicePluginInfo plugin;
    plugin.fileName = fileName;
    plugin.manufacturer = metaData.value(QLatin1String("manufacturer")).toString();
    plugin.resourceId = metaData.value(QLatin1String("resource-id")).toString();
    plugin.url = metaData.value(QLatin1String("url")).toString();
    plugin.version = metaData.value(QLatin1String("version")).toString();
    return plugin;
}

// The loader knows the file itself, also where it was named without its suffix.
static void logLoaded(const DeviceBroker::DevicePluginInfo &plugin, const QString &file)
{
    qCInfo(LogCDevices) << "Loaded device plugin" << QFileInfo(file).canonicalFilePath();
    qCInfo(LogCDevices) << "\tManufacturer:" << plugin.manufacturer.toLocal8Bit().constData();
    qCInfo(LogCDevices) << "\tURL:" << plugin.url.toString().toLocal8Bit().constData();
    qCInfo(LogCDevices) << "\tResource ID:" << plugin.resourceId.toLocal8Bit().constData();
    qCInfo(LogCDevices) << "\tVersion:" << plugin.version.toLocal8Bit().constData();
}

bool DeviceBroker::loadPlugin(const QString &fileName)
{
    const auto loader = std::make_shared<QPluginLoader>(fileName);
    LOADERS.append(loader);

    QObject *root = loader->instance();
    auto *plugin = qobject_cast<DevicePlugin *>(root);
    if (!plugin) {
        delete root;
        qCWarning(LogCDevices) << "Failed to load device plugin" << fileName
                               << "\n\tReason:" << loader->errorString();
        return false;
    }

    plugin->registerDrivers();
    const QJsonObject metaData = loader->metaData().value(QLatin1String("MetaData")).toObject();
    PLUGINS.append(describe(fileName, metaData));
    logLoaded(PLUGINS.constLast(), loader->fileName());
    return true;
}

void DeviceBroker::loadAllDevicePlugins(const QString &directory)
{
    qCInfo(LogCDevices) << "Loading device plugins from" << directory;

    QDirIterator files(directory, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        loadPlugin(files.next());
}

QList<DeviceBroker::DevicePluginInfo> DeviceBroker::loadedPlugins()
{
    return PLUGINS;
}

} // namespace qel::devices
