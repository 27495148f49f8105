#include "names.h"

#include <qeldevices/deviceerrors.h>

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

const QVector<std::pair<QString, int>> &errorNames()
{
    static const QVector<std::pair<QString, int>> names{
        {QStringLiteral("ERROR_DEVICE_UNKNOWN"), ERROR_DEVICE_UNKNOWN},
        {QStringLiteral("ERROR_DEVICE_VENDOR_SPECIFIC"), ERROR_DEVICE_VENDOR_SPECIFIC},
        {QStringLiteral("ERROR_DEVICE_CANT_OPEN"), ERROR_DEVICE_CANT_OPEN},
        {QStringLiteral("ERROR_DEVICE_NOT_READY"), ERROR_DEVICE_NOT_READY},
        {QStringLiteral("ERROR_DEVICE_TIMEOUT"), ERROR_DEVICE_TIMEOUT},
        {QStringLiteral("ERROR_DEVICE_CANT_WRITE"), ERROR_DEVICE_CANT_WRITE},
        {QStringLiteral("ERROR_DEVICE_CHECKSUM_MISMATCH"), ERROR_DEVICE_CHECKSUM_MISMATCH},
        {QStringLiteral("ERROR_DEVICE_INVALID_CONFIGURATION"), ERROR_DEVICE_INVALID_CONFIGURATION},
        {QStringLiteral("ERROR_DEVICE_NOT_CALIBRATED"), ERROR_DEVICE_NOT_CALIBRATED},
        {QStringLiteral("ERROR_DEVICE_DISCONNECTED"), ERROR_DEVICE_DISCONNECTED},
        {QStringLiteral("ERROR_DEVICE_BOOT_FAIL"), ERROR_DEVICE_BOOT_FAIL},
        {QStringLiteral("ERROR_DEVICE_API_TOO_NEW"), ERROR_DEVICE_API_TOO_NEW},
    };
    return names;
}

} // namespace qel::values
