#include "good.h"

#include <QtCore/QDateTime>

#include <chrono>
#include <utility>

using namespace qel::devices;

static const int tick = 3;

GoodDevice::GoodDevice(const DeviceInfo &info)
    : Device(info, nullptr)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { std::exchange(m_next, nullptr)(); });
    // First in line, so that the id is known to whoever answers from a slot of their own.
    connect(this, &Device::actionRequired, this, [this](int actionId) { m_request = actionId; });
}

void GoodDevice::after(int milliseconds, std::function<void()> next)
{
    m_next = std::move(next);
    m_timer.start(milliseconds);
}

bool GoodDevice::open()
{
    if (isOpen() || m_isOpening)
        return true;
    m_isOpening = true;
    after(tick, [this] { connected(); });
    setError(NO_DEVICE_ERROR, {});
    return true;
}

void GoodDevice::connected()
{
    m_isOpening = false;
    fillFeatures();
    setOpen(true);
}

void GoodDevice::fillFeatures()
{
    for (const DeviceFeature feature : {DF_AmbientTemperature, DF_LuminescenceMeasurement,
                                        DF_Calibration, DF_ReferenceNumber, DF_LedBarEffect}) {
        setDescriptor(feature, descriptorOf(feature));
        addFeature(feature);
    }
}

static QVariantHash setting(const QVariant &preset)
{
    return {{QStringLiteral("type"), QString::fromLatin1(preset.typeName())},
            {QStringLiteral("default"), preset}};
}

QVariant GoodDevice::descriptorOf(DeviceFeature feature) const
{
    QVariantHash settings;
    if (feature == DF_LedBarEffect) {
        const LedBarEffect_config presets(LedBarEffect_Effect::Solid, {}, {}, 0);
        for (auto it = presets.cbegin(); it != presets.cend(); ++it)
            settings.insert(it.key(), setting(*it));
        return QVariantHash{{QStringLiteral("settings"), settings}};
    }
    if (feature != DF_AmbientTemperature && feature != DF_LuminescenceMeasurement)
        return {};
    QVariantHash descriptor = {{QStringLiteral("unit"), QStringLiteral("°C")},
                               {QStringLiteral("minimum"), 0.0},
                               {QStringLiteral("maximum"), 100.0}};
    if (feature == DF_LuminescenceMeasurement) {
        QVariantHash time = setting(QVariant::fromValue(std::chrono::milliseconds(100)));
        time.insert(QStringLiteral("minimum"), 10);
        time.insert(QStringLiteral("maximum"), 1000);
        settings.insert(QStringLiteral("integrationTime"), time);
        descriptor.insert(QStringLiteral("settings"), settings);
        descriptor.insert(QStringLiteral("unit"), QStringLiteral("RLU/s"));
        descriptor.insert(QStringLiteral("rows"), 2);
        descriptor.insert(QStringLiteral("columns"), 3);
    }
    return descriptor;
}

void GoodDevice::close()
{
    const DeviceFeature feature = stopWork();
    m_isOpening = false;
    setStatus({});
    if (feature != DF_None)
        emitEnding(feature, false, {});
}

void GoodDevice::reset()
{
    if (m_isOpening) {
        setError(NO_DEVICE_ERROR, {});
        return;
    }
    const DeviceFeature feature = stopWork();
    setBusy(false);
    setError(NO_DEVICE_ERROR, {});
    if (feature != DF_None)
        emitEnding(feature, false, {});
}

Device::DeviceFeature GoodDevice::stopWork()
{
    m_timer.stop();
    m_request = -1;
    return std::exchange(m_running, DF_None);
}

void GoodDevice::executeImpl(DeviceFeature feature)
{
    if (m_running != DF_None)
        return refuse(feature, ERROR_DEVICE_NOT_READY, {});
    setError(NO_DEVICE_ERROR, {});
    if (!accepts(feature)) {
        return refuse(feature, ERROR_DEVICE_INVALID_CONFIGURATION,
                      QStringLiteral("good-bad-setting"));
    }
    start(feature);
}

bool GoodDevice::accepts(DeviceFeature feature) const
{
    const QVariantHash values = configuration(feature).toHash();
    const QVariantHash settings =
        descriptor(feature).toHash().value(QStringLiteral("settings")).toHash();
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const QVariant value = values.value(it.key());
        const QVariantHash rules = it->toHash();
        if (!value.isValid())
            continue;
        if (rules.value(QStringLiteral("type")) != QLatin1String(value.typeName()))
            return false;
        if (value.canConvert<std::chrono::milliseconds>()) {
            const auto count = value.value<std::chrono::milliseconds>().count();
            if (count < rules.value(QStringLiteral("minimum")).toInt()
                || count > rules.value(QStringLiteral("maximum")).toInt())
                return false;
        }
    }
    return true;
}

void GoodDevice::refuse(DeviceFeature feature, int code, const QString &details)
{
    setError(code, details);
    emitEnding(feature, false, {});
}

void GoodDevice::start(DeviceFeature feature)
{
    m_running = feature;
    m_step = 0;
    if (feature == DF_ReferenceNumber || feature == DF_LedBarEffect)
        return finish(true);
    setBusy(true);
    if (feature == DF_Calibration)
        askForEmptySlot();
    else if (feature == DF_LuminescenceMeasurement)
        step();
    else
        after(tick, [this] { finish(true); });
}

void GoodDevice::askForEmptySlot()
{
    emitActionRequired(QStringLiteral("good-empty-slot"));
}

void GoodDevice::confirmActionImpl(int actionId)
{
    if (m_request < 0 || actionId != m_request)
        return;
    m_request = -1;
    step();
}

void GoodDevice::abortActionImpl(int actionId)
{
    if (m_request >= 0 && actionId == m_request)
        finish(false);
}

void GoodDevice::step()
{
    const int steps = 4;
    const int number = m_step++;
    after(tick, [this, number] {
        if (number < steps)
            step();
        else
            finish(true);
    });
    reportProgress(double(number) / steps);
}

void GoodDevice::reportProgress(double progress)
{
    emit transientValue(m_running, QVariantHash{{QStringLiteral("progress"), progress}});
}

QVariant GoodDevice::resultOf(DeviceFeature feature) const
{
    switch (feature) {
    case DF_AmbientTemperature:
        return 21.5;
    case DF_ReferenceNumber:
        return QStringLiteral("G-1");
    case DF_Calibration:
        return QVariantHash{{QStringLiteral("calibratedAt"), QDateTime::currentDateTimeUtc()}};
    case DF_LuminescenceMeasurement:
        return QVariantHash{{QStringLiteral("rows"), 2},
                            {QStringLiteral("columns"), 3},
                            {QStringLiteral("unit"), QStringLiteral("RLU/s")},
                            {QStringLiteral("values"),
                             QVariantList{QVariant::fromValue(QVector<double>(6, 1000.0))}},
                            {QStringLiteral("startedAt"), QDateTime::currentDateTimeUtc()},
                            {QStringLiteral("temperature"), 21.5},
                            {QStringLiteral("integrationTime"),
                             QVariant::fromValue(std::chrono::milliseconds(10))}};
    default:
        return {};
    }
}

void GoodDevice::finish(bool ok)
{
    const DeviceFeature feature = stopWork();
    setBusy(false);
    setError(NO_DEVICE_ERROR, {});
    emitEnding(feature, ok, ok ? resultOf(feature) : QVariant());
}

void GoodDevice::emitEnding(DeviceFeature feature, bool ok, const QVariant &result)
{
    emit executed(feature, ok, result);
}

QList<DeviceInfo> GoodDriver::availableDevices()
{
    return {DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("left"),
                       QStringLiteral("Good reader"), QStringLiteral("G-1")),
            DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("right"),
                       QStringLiteral("Good reader"), QStringLiteral("G-2"))};
}

Device *GoodDriver::createDevice(const DeviceInfo &info)
{
    const bool isKnown =
        info.location() == QLatin1String("left") || info.location() == QLatin1String("right");
    return isKnown ? makeDevice(info) : nullptr;
}
