#ifndef DRIVER_H
#define DRIVER_H

#include <qeldevices/devicebroker.h>

#include <QtCore/QObject>

// Lists the instruments that can be reached, and creates the devices for them.
class Driver : public qel::devices::DeviceDriver
{
public:
    QString name() override;
    QList<qel::devices::DeviceInfo> availableDevices() override;
    qel::devices::Device *createDevice(const qel::devices::DeviceInfo &info) override;
};

// The root object of the plugin.
class Plugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override;
};

#endif
