#include "deviceerrors.h"
#include "deviceerrors_p.h"

#include <QtCore/QMap>

namespace qel::devices {

// Filled before main() and never changed, so that any thread may look codes up without a lock.
// clazy:excludeall=non-pod-global-static
static const QMap<int, QString> errorMap{
    {NO_DEVICE_ERROR, QStringLiteral("libqeldevices-NO_DEVICE_ERROR")},
    {ERROR_DEVICE_UNKNOWN, QStringLiteral("libqeldevices-ERROR_DEVICE_UNKNOWN")},
    {ERROR_DEVICE_VENDOR_SPECIFIC, QStringLiteral("libqeldevices-ERROR_DEVICE_VENDOR_SPECIFIC")},
    {ERROR_DEVICE_CANT_OPEN, QStringLiteral("libqeldevices-ERROR_DEVICE_CANT_OPEN")},
    {ERROR_DEVICE_NOT_READY, QStringLiteral("libqeldevices-ERROR_DEVICE_NOT_READY")},
    {ERROR_DEVICE_TIMEOUT, QStringLiteral("libqeldevices-ERROR_DEVICE_TIMEOUT")},
    {ERROR_DEVICE_CANT_WRITE, QStringLiteral("libqeldevices-ERROR_DEVICE_CANT_WRITE")},
    {ERROR_DEVICE_CHECKSUM_MISMATCH,
     QStringLiteral("libqeldevices-ERROR_DEVICE_CHECKSUM_MISMATCH")},
    {ERROR_DEVICE_INVALID_CONFIGURATION,
     QStringLiteral("libqeldevices-ERROR_DEVICE_INVALID_CONFIGURATION")},
    {ERROR_DEVICE_NOT_CALIBRATED, QStringLiteral("libqeldevices-ERROR_DEVICE_NOT_CALIBRATED")},
    {ERROR_DEVICE_DISCONNECTED, QStringLiteral("libqeldevices-ERROR_DEVICE_DISCONNECTED")},
    {ERROR_DEVICE_BOOT_FAIL, QStringLiteral("libqeldevices-ERROR_DEVICE_BOOT_FAIL")},
    {ERROR_DEVICE_API_TOO_NEW, QStringLiteral("libqeldevices-ERROR_DEVICE_API_TOO_NEW")},
};

QString mapErrorToTrId(int code)
{
    const auto known = errorMap.constFind(code);
    return known != errorMap.constEnd() ? *known : errorMap.value(ERROR_DEVICE_UNKNOWN);
}

} // namespace qel::devices
