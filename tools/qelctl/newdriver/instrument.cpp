#include "instrument.h"

#include <qeldevices/deviceerrors.h>

#include <QtCore/QDateTime>

#include <utility>

using namespace qel::devices;

Instrument::Instrument(const DeviceInfo &info)
    : Device(info, nullptr)
    , m_link(info.location(), this)
{
    connect(&m_link, &Link::answered, this, &Instrument::take);
    m_patience.setSingleShot(true);
    m_patience.setInterval(3000);
    connect(&m_patience, &QTimer::timeout, this, &Instrument::giveUp);
    // An application may answer a request from within its signal, so its id must be known before.
    connect(this, &Device::actionRequired, this, [this](int actionId) { m_request = actionId; });
}

// Everything that waits for the instrument goes through here, so that nothing waits for ever.
void Instrument::ask(const QByteArray &command)
{
    m_patience.start();
    m_link.send(command);
}

bool Instrument::open()
{
    if (isOpen() || m_isOpening)
        return true;
    m_isOpening = true;
    ask("hello");
    setError(NO_DEVICE_ERROR, {});
    return true;
}

void Instrument::close()
{
    const DeviceFeature feature = stopWork();
    m_isOpening = false;
    // Flags first: who executes again from the ending is refused.
    setStatus({});
    if (feature != DF_None)
        emit executed(feature, false);
}

void Instrument::update()
{
    // PROTOCOL: read what the instrument does not report by itself.
}

void Instrument::reset()
{
    if (m_isOpening) {
        setError(NO_DEVICE_ERROR, {});
        return;
    }
    const DeviceFeature feature = stopWork();
    setBusy(false);
    setError(NO_DEVICE_ERROR, {});
    if (feature != DF_None)
        emit executed(feature, false);
}

// PROTOCOL: say here what the instrument can do. Which keys a descriptor has, and of which types,
// is the same for all drivers; applications rely on it.
void Instrument::showFeatures()
{
    setDescriptor(DF_AmbientTemperature,
                  QVariantHash{{QStringLiteral("unit"), QStringLiteral("°C")},
                               {QStringLiteral("minimum"), 0.0},
                               {QStringLiteral("maximum"), 60.0}});
    addFeature({DF_AmbientTemperature, DF_ReferenceNumber, DF_Calibration});
}

void Instrument::executeImpl(DeviceFeature feature)
{
    if (m_running != DF_None) {
        setError(ERROR_DEVICE_NOT_READY, QStringLiteral("@name@-busy"));
        emit executed(feature, false);
        return;
    }
    m_running = feature;
    setError(NO_DEVICE_ERROR, {});
    if (feature == DF_ReferenceNumber) {
        finish(true, QStringLiteral("@name@-1"));
        return;
    }
    setBusy(true);
    if (feature == DF_Calibration)
        emitActionRequired(QStringLiteral("@name@-empty-slot"));
    else
        ask("temperature?");
}

void Instrument::confirmActionImpl(int actionId)
{
    if (m_request < 0 || actionId != m_request)
        return;
    m_request = -1;
    ask("calibrate");
    reportProgress(0);
}

void Instrument::abortActionImpl(int actionId)
{
    if (m_request >= 0 && actionId == m_request)
        finish(false, {});
}

void Instrument::reportProgress(double progress)
{
    emit transientValue(m_running, QVariantHash{{QStringLiteral("progress"), progress}});
}

void Instrument::take(const QByteArray &answer)
{
    m_patience.stop();
    if (m_isOpening) {
        m_isOpening = false;
        showFeatures();
        setOpen(true);
    } else if (m_running == DF_AmbientTemperature) {
        finish(true, answer.toDouble());
    } else if (m_running == DF_Calibration) {
        reportProgress(1);
        finish(true,
               QVariantHash{{QStringLiteral("calibratedAt"), QDateTime::currentDateTimeUtc()}});
    }
}

void Instrument::giveUp()
{
    m_link.cancel();
    if (std::exchange(m_isOpening, false))
        setError(ERROR_DEVICE_TIMEOUT, QStringLiteral("@name@-silent"));
    else if (m_running != DF_None)
        finish(false, {}, ERROR_DEVICE_TIMEOUT, QStringLiteral("@name@-silent"));
}

// Stops whatever is going on without a word; the feature that was at work.
Device::DeviceFeature Instrument::stopWork()
{
    m_link.cancel();
    m_patience.stop();
    m_request = -1;
    return std::exchange(m_running, DF_None);
}

// The only way out of a run. The ending comes last: its receiver may start the next run.
void Instrument::finish(bool ok, const QVariant &result, int code, const QString &details)
{
    const DeviceFeature feature = stopWork();
    setBusy(false);
    setError(code, details);
    emit executed(feature, ok, result);
}
