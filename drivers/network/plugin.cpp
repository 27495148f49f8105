// The plugin itself. Whoever has no connection to another machine does not load what would use it.
#include "connections.h"

#include <libexec.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QDir>

namespace qel::network {

class Plugin : public QObject, public devices::DevicePlugin
{
    Q_OBJECT
    Q_INTERFACES(qel::devices::DevicePlugin)
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")

public:
    void registerDrivers() override
    {
        const QDir stored(connectionFolder());
        if (qEnvironmentVariableIsSet(connectionVariable)
            || !stored.entryList({QStringLiteral("*.json")}, QDir::Files).isEmpty())
            rpc::registerDriversOf(QStringLiteral("network-driver.so"));
    }
};

} // namespace qel::network

#include "plugin.moc"
