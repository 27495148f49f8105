#ifndef SIMULATOR_PLUGIN_H
#define SIMULATOR_PLUGIN_H

#include <qeldevices/devicebroker.h>

#include <QtCore/QObject>

namespace qel::simulator {

/// The root object of the plugin: registers the driver "simulator".
class Plugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override;
};

} // namespace qel::simulator

#endif
