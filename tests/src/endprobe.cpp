#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QPluginLoader>

#include <cstdio>

using namespace qel::devices;

// Ends a process whose driver still has something to say: prints in which order the broker's tables
// go, and what the driver finds of the library when it goes itself.

// Told by the texts that the record and the loader share with these, which are never destroyed.
static const QString &recordText = *new QString(QString::number(1));
static const std::weak_ptr<QPluginLoader> &loader = *new std::weak_ptr<QPluginLoader>;

class LastDevice : public Device
{
public:
    LastDevice()
        : Device({DeviceInfo::Simulator, QStringLiteral("last"), {}, {}, {}}, nullptr)
    { }
    bool open() override
    {
        return false;
    }
    void close() override { }
    void update() override { }
    void reset() override { }

protected:
    void executeImpl(DeviceFeature) override { }
};

class LastDriver : public DeviceDriver
{
public:
    ~LastDriver() override
    {
        m_device.setError(ERROR_DEVICE_DISCONNECTED, {});
        qCInfo(LogCDriver) << "driver goes";
        QLoggingCategory::setFilterRules(QStringLiteral("qel.*=false")); // reaches what is there
        const bool categories = !LogCDevices().isInfoEnabled() && !LogCDriver().isInfoEnabled();
        std::fprintf(stderr, "%s; categories %s; catalogue %s; loaders %s\n",
                     qPrintable(m_device.errorTrId()), categories ? "there" : "gone",
                     QFile::exists(QStringLiteral(":/qel/devices/qeldevices_de.qm")) ? "there"
                                                                                     : "gone",
                     loader.expired() ? "gone" : "there");
    }
    QString name() override
    {
        return QStringLiteral("last");
    }
    Device *createDevice(const DeviceInfo &) override
    {
        return nullptr;
    }
    QList<DeviceInfo> availableDevices() override
    {
        return {};
    }

private:
    LastDevice m_device;
};

static void loaderGoes(QPluginLoader *gone)
{
    std::fprintf(stderr, "loader goes; records %s\n", recordText.isDetached() ? "gone" : "there");
    delete gone;
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    LogCDevices(); // as init() does
    LogCDriver();
    DeviceBroker::addDriver(std::make_shared<LastDriver>());
    const std::shared_ptr<QPluginLoader> shared(new QPluginLoader, loaderGoes);
    const_cast<std::weak_ptr<QPluginLoader> &>(loader) = shared;
    DeviceBroker::LOADERS.append(shared);
    DeviceBroker::DevicePluginInfo record;
    record.version = recordText;
    DeviceBroker::PLUGINS.append(record);
    return 0;
}
