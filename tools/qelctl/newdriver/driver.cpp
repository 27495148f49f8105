#include "driver.h"

#include "instrument.h"

using namespace qel::devices;

QString Driver::name()
{
    return QStringLiteral("@name@");
}

// PROTOCOL: look for instruments here, for instance with QSerialPortInfo. Be quick, open nothing
// that a device of this driver holds, and give an instrument the same record every time.
QList<DeviceInfo> Driver::availableDevices()
{
    return {DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("desk"),
                       QStringLiteral("@name@ reader"), QStringLiteral("0001"))};
}

Device *Driver::createDevice(const DeviceInfo &info)
{
    const auto known = availableDevices();
    for (const DeviceInfo &candidate : known) {
        if (candidate.location() == info.location())
            return new Instrument(info);
    }
    return nullptr;
}

void Plugin::registerDrivers()
{
    DeviceBroker::addDriver(std::make_shared<Driver>());
}
