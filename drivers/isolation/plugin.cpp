// The plugin itself. Where no driver is isolated, nothing is loaded that would use a process.
#include "pluginfiles.h"

#include <libexec.h>

#include <qeldevices/devicebroker.h>

namespace qel::isolated {

class Plugin : public QObject, public devices::DevicePlugin
{
    Q_OBJECT
    Q_INTERFACES(qel::devices::DevicePlugin)
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")

public:
    void registerDrivers() override
    {
        if (!pluginFiles().isEmpty())
            rpc::registerDriversOf(QStringLiteral("isolation-driver.so"));
    }
};

} // namespace qel::isolated

#include "plugin.moc"
