#include "thermometer.h"

#include <qeldevices/deviceerrors.h>

using namespace qel::devices;

Thermometer::Thermometer(const DeviceInfo &info)
    : Device(info, nullptr)
{
    m_answer.setSingleShot(true);
    m_answer.setInterval(200);
    connect(&m_answer, &QTimer::timeout, this, [this] { finish(true, 21.5); });
}

bool Thermometer::open()
{
    // The features stand before openChanged(): its receivers look at them.
    setDescriptor(DF_AmbientTemperature,
                  QVariantHash{{QStringLiteral("unit"), QStringLiteral("°C")},
                               {QStringLiteral("minimum"), -20.0},
                               {QStringLiteral("maximum"), 60.0}});
    setOpen(true);
    return true;
}

void Thermometer::close()
{
    setOpen(false);
    abort();
}

void Thermometer::reset()
{
    abort();
    setError(NO_DEVICE_ERROR, QString());
}

void Thermometer::executeImpl(DeviceFeature feature)
{
    if (m_answer.isActive()) { // this run ends here, the other one goes on
        setError(ERROR_DEVICE_NOT_READY, QStringLiteral("minimal-busy"));
        emit executed(feature, false);
        return;
    }
    m_answer.start();
    setError(NO_DEVICE_ERROR, QString());
    setBusy(true);
}

void Thermometer::abort()
{
    if (m_answer.isActive())
        finish(false, QVariant());
}

void Thermometer::finish(bool ok, const QVariant &result)
{
    m_answer.stop();
    setBusy(false);
    // Last, as the receiver may start the next run or delete the device.
    emit executed(DF_AmbientTemperature, ok, result);
}
