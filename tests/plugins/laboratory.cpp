#include "testdriver.h"

#include <qeldevices/logging.h>

/// A plugin as it should be: full metadata, a driver, catalogues.
class LaboratoryPlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "laboratory.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
    {
        qCDebug(LogCDriver) << "laboratory registers as number"
                            << qel::devices::DeviceBroker::loadedPlugins().size();
        qel::devices::DeviceBroker::addDriver(
            std::make_shared<TestDriver>("laboratory", "from laboratory"));
    }
};

#include "laboratory.moc"
