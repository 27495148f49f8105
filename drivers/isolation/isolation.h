#ifndef ISOLATION_ISOLATION_H
#define ISOLATION_ISOLATION_H

#include <qeldevices/devicebroker.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace qel::rpc {
class DriverHost;
}

namespace qel::isolated {

/// The processes of all plugin files in the folders for isolated drivers: folders named
/// "devicedrivers-isolated" beside each one that the library looks into, and those that
/// QELDEVICES_ISOLATED names, separated by colons.
class Isolation : public QObject
{
public:
    /// The one of this process. It belongs to the application object.
    static Isolation *instance();

    /// Registers the drivers of all plugin files that have answered within a second, and those of
    /// the others when they answer.
    void registerDrivers();

private:
    using QObject::QObject;

    QList<rpc::DriverHost *> m_hosts;
};

/// The root object of the plugin.
class Plugin : public QObject, public devices::DevicePlugin
{
    Q_OBJECT
    Q_INTERFACES(qel::devices::DevicePlugin)
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")

public:
    void registerDrivers() override;
};

} // namespace qel::isolated

#endif
