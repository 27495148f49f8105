#include "maker.h"

// Registers one driver of its own and one that every plugin of this maker registers.
class OriginPlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid)
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
    {
        for (const char *name : {NAME, "shared"})
            qel::devices::DeviceBroker::addDriver(makersDriver(QString::fromLatin1(name)));
    }
};

#include "plugin.moc"
