#include "provenance.h"

#include "provenance_p.h"

#include <qeldevices/logging.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>

#include <algorithm>
#include <memory>

#include <dlfcn.h>

namespace qel::frontend {

using namespace qel::devices;
using PluginInfo = DeviceBroker::DevicePluginInfo;

using Drivers = QHash<QString, std::shared_ptr<DeviceDriver>>;

struct RegistrationWatch::State
{
    QThread *thread = QThread::currentThread();
    bool wasLogged = LogCDevices().isInfoEnabled();
    QtMessageHandler handler = nullptr;
    Drivers drivers = DeviceBroker::DRIVERS;
    int pluginCount = DeviceBroker::PLUGINS.size();
};

namespace {

struct Registration
{
    std::weak_ptr<DeviceDriver> driver;
    PluginInfo plugin;
};

// What the present watch works with; null without one.
RegistrationWatch::State *watch = nullptr;

QHash<QString, Registration> &registrations()
{
    static QHash<QString, Registration> all;
    return all;
}

void noteRegistrations()
{
    if (DeviceBroker::PLUGINS.size() == watch->pluginCount)
        return;
    const Drivers &now = DeviceBroker::DRIVERS;
    for (auto it = now.cbegin(); it != now.cend(); ++it) {
        if (watch->drivers.value(it.key()) != it.value())
            registrations().insert(it.key(), {it.value(), DeviceBroker::PLUGINS.constLast()});
    }
    watch->drivers = now;
    watch->pluginCount = DeviceBroker::PLUGINS.size();
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool isBroker = qstrcmp(context.category, LogCDevices().categoryName()) == 0;
    if (isBroker && QThread::currentThread() == watch->thread)
        noteRegistrations();
    if (isBroker && type == QtInfoMsg && !watch->wasLogged)
        return;
    watch->handler(type, context, message);
}

// The category is handed out for reading; what it logs is everybody's to switch.
void logBroker(bool enabled)
{
    const_cast<QLoggingCategory &>(LogCDevices()).setEnabled(QtInfoMsg, enabled);
}

// The file that holds the code of `driver`, found by the address of its table of virtual functions.
QString fileOf(const DeviceDriver *driver)
{
    const void *const table = *reinterpret_cast<const void *const *>(driver);
    Dl_info info{};
    if (!dladdr(table, &info) || !info.dli_fname)
        return QString();
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
}

} // namespace

RegistrationWatch::RegistrationWatch()
    : m_state(std::make_unique<State>())
{
    watch = m_state.get();
    watch->handler = qInstallMessageHandler(&handleMessage);
    logBroker(true);
}

RegistrationWatch::~RegistrationWatch()
{
    logBroker(watch->wasLogged);
    qInstallMessageHandler(watch->handler);
    watch = nullptr;
}

std::optional<PluginInfo> pluginOfDriver(const QString &driver)
{
    const auto registered = DeviceBroker::DRIVERS.value(driver);
    if (!registered)
        return {};
    const auto watched = registrations().constFind(driver);
    if (watched != registrations().cend() && watched->driver.lock() == registered)
        return watched->plugin;

    const QString file = fileOf(registered.get());
    const auto plugins = DeviceBroker::loadedPlugins();
    const auto plugin = std::find_if(plugins.cbegin(), plugins.cend(), [&](const PluginInfo &info) {
        return QFileInfo(info.fileName).canonicalFilePath() == file;
    });
    return file.isEmpty() || plugin == plugins.cend() ? std::nullopt : std::optional(*plugin);
}

std::optional<PluginInfo> pluginOfDevice(const Device &device)
{
    const QVariantMap far = device.property("driverPlugin").toMap();
    if (far.isEmpty())
        return pluginOfDriver(device.driver());
    PluginInfo plugin;
    plugin.fileName = far.value(QStringLiteral("file")).toString();
    plugin.manufacturer = far.value(QStringLiteral("manufacturer")).toString();
    plugin.version = far.value(QStringLiteral("version")).toString();
    return plugin;
}

} // namespace qel::frontend
