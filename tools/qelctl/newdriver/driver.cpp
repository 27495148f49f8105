#include "driver.h"

#include "connection.h"
#include "reader.h"

using namespace qel::devices;

QString Driver::name()
{
    return QStringLiteral("@name@");
}

QList<DeviceInfo> Driver::availableDevices()
{
    return Connection::instruments(name());
}

Device *Driver::createDevice(const DeviceInfo &info)
{
    const auto known = availableDevices();
    for (const DeviceInfo &candidate : known) {
        if (candidate.location() == info.location())
            return new Reader(info);
    }
    return nullptr;
}

void Plugin::registerDrivers()
{
    DeviceBroker::addDriver(std::make_shared<Driver>());
}
