#include "testdriver.h"

/// A plugin without usable metadata, not even the right interface id in it. It takes over the name
/// of laboratory's driver.
class BarePlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.Unrelated/1.0" FILE "bare.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
    {
        for (const char *name : {"laboratory", "bare"}) {
            qel::devices::DeviceBroker::addDriver(std::make_shared<TestDriver>(name, "from bare"));
        }
    }
};

#include "bare.moc"
