#include "deviceinfo.h"

#include <utility>

namespace qel::devices {

DeviceInfo::DeviceInfo(Interface interface, QString driver, QString location, QString name,
                       QString serial)
    : m_interface(interface)
    , m_driver(std::move(driver))
    , m_location(std::move(location))
    , m_name(std::move(name))
    , m_serial(std::move(serial))
{ }

DeviceInfo::Interface DeviceInfo::interface() const
{
    return m_interface;
}

QString DeviceInfo::driver() const
{
    return m_driver;
}

QString DeviceInfo::location() const
{
    return m_location;
}

QString DeviceInfo::name() const
{
    return m_name;
}

QString DeviceInfo::serial() const
{
    return m_serial;
}

bool DeviceInfo::operator==(const DeviceInfo &other) const
{
    return m_interface == other.m_interface && m_driver == other.m_driver
        && m_location == other.m_location && m_name == other.m_name && m_serial == other.m_serial;
}

bool DeviceInfo::operator<(const DeviceInfo &other) const
{
    if (m_interface != other.m_interface)
        return m_interface < other.m_interface;
    if (const int order = m_driver.compare(other.m_driver))
        return order < 0;
    if (const int order = m_location.compare(other.m_location))
        return order < 0;
    if (const int order = m_name.compare(other.m_name))
        return order < 0;
    return m_serial.compare(other.m_serial) < 0;
}

static QString interfaceText(DeviceInfo::Interface interface)
{
    switch (interface) {
    case DeviceInfo::UnknownInterface:
        return QStringLiteral("Unknown Interface");
    case DeviceInfo::Simulator:
        return QStringLiteral("Simulator");
    case DeviceInfo::Serial:
        return QStringLiteral("Serial");
    case DeviceInfo::UsbHid:
        return QStringLiteral("USB HID");
    case DeviceInfo::Network:
        return QStringLiteral("Network");
    }
    return {};
}

QDebug operator<<(QDebug &debug, const DeviceInfo &info)
{
    return debug << info.name() << "@" << info.location() << "["
                 << interfaceText(info.interface()).toLocal8Bit().constData() << "]";
}

} // namespace qel::devices
