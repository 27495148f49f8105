#include "names.h"

#include <QtCore/QMetaEnum>

namespace qel::values {

using namespace qel::devices;

QString featureName(Device::DeviceFeature feature)
{
    const char *name = QMetaEnum::fromType<Device::DeviceFeature>().valueToKey(feature);
    return name ? QString::fromLatin1(name) : QString::number(feature);
}

QString featureArgument(Device::DeviceFeature feature)
{
    QString argument;
    const QString name = featureName(feature);
    const auto words = name.midRef(name.startsWith(QLatin1String("DF_")) ? 3 : 0);
    for (const QChar character : words) {
        if (character.isUpper() && !argument.isEmpty())
            argument += u'-';
        argument += character.toLower();
    }
    return argument;
}

QString interfaceName(DeviceInfo::Interface interface)
{
    switch (interface) {
    case DeviceInfo::UnknownInterface:
        return QStringLiteral("Unknown");
    case DeviceInfo::Simulator:
        return QStringLiteral("Simulator");
    case DeviceInfo::Serial:
        return QStringLiteral("Serial");
    case DeviceInfo::UsbHid:
        return QStringLiteral("USB HID");
    case DeviceInfo::Network:
        return QStringLiteral("Network");
    }
    return QString();
}

DeviceInfo::Interface interfaceNamed(const QString &name)
{
    for (const auto interface :
         {DeviceInfo::Simulator, DeviceInfo::Serial, DeviceInfo::UsbHid, DeviceInfo::Network}) {
        if (interfaceName(interface) == name)
            return interface;
    }
    return DeviceInfo::UnknownInterface;
}

} // namespace qel::values
