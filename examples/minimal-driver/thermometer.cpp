#include "thermometer.h"

#include <qeldriver/builders.h>

using namespace qel::devices;

Thermometer::Thermometer(const DeviceInfo &info)
    : Instrument(info, QStringLiteral("minimal-busy"))
{
    m_answer.setSingleShot(true);
    m_answer.setInterval(200);
    connect(&m_answer, &QTimer::timeout, this, [this] { finish(21.5); });
}

void Thermometer::startOpening()
{
    setDescriptor(DF_AmbientTemperature, qel::driver::temperatureDescriptor(-20, 60));
    opened();
}

void Thermometer::startRun(DeviceFeature, const QVariantHash &)
{
    m_answer.start();
}

void Thermometer::stopWork()
{
    m_answer.stop();
}
