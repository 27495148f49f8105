#include "thermometer.h"

#include <qeldevices/devicebroker.h>

using namespace qel::devices;

// Lists the instruments it can reach, here one, and creates the devices for them.
class MinimalDriver : public DeviceDriver
{
public:
    QString name() override
    {
        return QStringLiteral("minimal");
    }

    QList<DeviceInfo> availableDevices() override
    {
        return {DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("shelf"),
                           QStringLiteral("Thermometer"), QStringLiteral("MIN-0001"))};
    }

    Device *createDevice(const DeviceInfo &info) override
    {
        return availableDevices().contains(info) ? new Thermometer(info) : nullptr;
    }
};

class MinimalPlugin : public QObject, public DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
    {
        DeviceBroker::addDriver(std::make_shared<MinimalDriver>());
    }
};

#include "plugin.moc"
