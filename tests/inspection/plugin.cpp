#include <qeldevices/devicebroker.h>

#include <QtCore/QFileInfo>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <dlfcn.h>
#include <unistd.h>

using namespace qel::devices;

#if defined(NEEDED_FUNCTION)
Q_DECL_IMPORT int NEEDED_FUNCTION();
#else
static int noNeed()
{
    return 1;
}
#    define NEEDED_FUNCTION noNeed
#endif

class NamedDriver : public DeviceDriver
{
public:
    explicit NamedDriver(const QString &name)
        : m_name(name)
    { }

    QString name() override
    {
        return m_name;
    }

    Device *createDevice(const DeviceInfo &) override
    {
        return nullptr;
    }

    QList<DeviceInfo> availableDevices() override
    {
        if (m_name == QLatin1String("crashlater"))
            std::abort();
        else if (m_name == QLatin1String("hanglater"))
            ::pause();
        return {};
    }

private:
    QString m_name;
};

// The name of its file, up to a hyphen, says what it does: misbehave in the manner named, or
// register a driver of that name.
#if defined(OTHER_INTERFACE)
class Plugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.Printer/1.0" FILE "plugin.json")

public:
    void registerDrivers()
#else
class Plugin : public QObject, public DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
#endif
    {
        static const char here = 0;
        Dl_info self = {};
        ::dladdr(&here, &self);
        const QString file = QFileInfo(QString::fromLocal8Bit(self.dli_fname)).completeBaseName();
        const QString name = file.section(QLatin1Char('-'), 0, 0);
        std::puts("A plugin may print what it likes.");
        if (name == QLatin1String("crash"))
            std::abort();
        else if (name == QLatin1String("hang"))
            ::pause();
        else if (name == QLatin1String("exit"))
            std::_Exit(3);
        else if (name != QLatin1String("none"))
            DeviceBroker::addDriver(std::make_shared<NamedDriver>(name));
        std::fflush(stdout);
        if (NEEDED_FUNCTION() != 1)
            std::abort();
    }
};

#include "plugin.moc"
