#include "good.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <chrono>
#include <dlfcn.h>
#include <utility>

using namespace qel::devices;

static const int tick = 3;
static const int rows = 2;
static const int columns = 3;

QString mutantName()
{
    Dl_info file;
    static const char here = 0;
    if (::dladdr(&here, &file) == 0)
        qFatal("the plugin does not find its own name");
    return QFileInfo(QString::fromLocal8Bit(file.dli_fname)).completeBaseName();
}

bool isDone(const char *what)
{
    static const QString bench = qEnvironmentVariable("GOOD_BENCH");
    static const QString start = bench + QLatin1Char('/') + mutantName() + QLatin1Char('.');
    return !bench.isEmpty() && QFile::exists(start + QLatin1String(what));
}

static QString unitOf(Device::DeviceFeature feature)
{
    return feature == Device::DF_AbsorbanceMeasurement ? QStringLiteral("OD")
                                                       : QStringLiteral("RLU/s");
}

GoodDevice::GoodDevice(const DeviceInfo &info)
    : Device(info, nullptr)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { std::exchange(m_next, nullptr)(); });
    m_look.setInterval(3 * tick);
    connect(&m_look, &QTimer::timeout, this, &GoodDevice::look);
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
    m_hasPlate = isDone("plate");
    m_look.start();
    setOpen(true);
}

void GoodDevice::look()
{
    if (m_hasPlate != isDone("plate")) {
        m_hasPlate = !m_hasPlate;
        slotChanged();
    } else if (serial() == QLatin1String("G-1") && isDone("unplug")) {
        m_look.stop();
        unplugged();
    }
}

void GoodDevice::slotChanged()
{
    emit transientValue(DF_PlateDetection, resultOf(DF_PlateDetection));
}

void GoodDevice::unplugged()
{
    const DeviceFeature feature = stopWork();
    setError(ERROR_DEVICE_DISCONNECTED, {});
    setStatus({});
    if (feature != DF_None)
        emitEnding(feature, false, {});
}

void GoodDevice::fillFeatures()
{
    for (const DeviceFeature feature :
         {DF_AmbientTemperature, DF_AbsorbanceMeasurement, DF_LuminescenceMeasurement,
          DF_PlateDetection, DF_Calibration, DF_ReferenceNumber, DF_Orientation, DF_LedBarEffect}) {
        setDescriptor(feature, descriptorOf(feature));
        addFeature(feature);
    }
}

static QVariantHash setting(const QVariant &preset)
{
    return {{QStringLiteral("type"), QString::fromLatin1(preset.typeName())},
            {QStringLiteral("default"), preset}};
}

static QVariantHash ledSettings()
{
    QVariantHash settings;
    const LedBarEffect_config presets(LedBarEffect_Effect::Solid, {}, {}, 0);
    for (auto it = presets.cbegin(); it != presets.cend(); ++it)
        settings.insert(it.key(), setting(*it));
    const auto choose = [&](const QString &key, const QVariantList &choices) {
        QVariantHash described = settings.value(key).toHash();
        described.insert(QStringLiteral("choices"), choices);
        settings.insert(key, described);
    };
    choose(QStringLiteral("effect"), {0, 1, 3});
    choose(QStringLiteral("mode"), {1, 2});
    return settings;
}

static QVariantHash measuringSettings(Device::DeviceFeature feature)
{
    if (feature == Device::DF_AbsorbanceMeasurement) {
        QVariantHash wavelengths = setting(QVariant::fromValue(QList<int>{450}));
        wavelengths.insert(QStringLiteral("choices"), QVariantList{405, 450, 620});
        return {{QStringLiteral("wavelengths"), wavelengths},
                {QStringLiteral("rapidMode"), setting(false)}};
    }
    QVariantHash time = setting(QVariant::fromValue(std::chrono::milliseconds(100)));
    time.insert(QStringLiteral("minimum"), 10);
    time.insert(QStringLiteral("maximum"), 1000);
    time.insert(QStringLiteral("step"), 10);
    QVariantHash wells = setting(QVariant::fromValue(QVector<bool>()));
    wells.insert(QStringLiteral("length"), rows * columns);
    return {{QStringLiteral("integrationTime"), time}, {QStringLiteral("selectedWells"), wells}};
}

QVariant GoodDevice::descriptorOf(DeviceFeature feature) const
{
    const QString unit = QStringLiteral("unit");
    const QString settings = QStringLiteral("settings");
    const QVariantHash range = {{QStringLiteral("minimum"), 0.0},
                                {QStringLiteral("maximum"), 100.0}};
    QVariantHash descriptor;
    switch (feature) {
    case DF_AmbientTemperature:
        descriptor = range;
        descriptor.insert(unit, QStringLiteral("°C"));
        return descriptor;
    case DF_AbsorbanceMeasurement:
    case DF_LuminescenceMeasurement:
        descriptor = range;
        descriptor.insert(unit, unitOf(feature));
        descriptor.insert(QStringLiteral("rows"), rows);
        descriptor.insert(QStringLiteral("columns"), columns);
        descriptor.insert(settings, measuringSettings(feature));
        return descriptor;
    case DF_Orientation:
        return QVariantHash{{unit, QStringLiteral("m/s²")}};
    case DF_LedBarEffect:
        return QVariantHash{{settings, ledSettings()}};
    default:
        return {};
    }
}

void GoodDevice::close()
{
    const DeviceFeature feature = stopWork();
    m_isOpening = false;
    m_look.stop();
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

// The number behind each value or element that a setting limits.
static QVector<qint64> numbersIn(const QVariant &value)
{
    using Modes = LedBarEffect_config::Modes;
    QVector<qint64> numbers;
    if (value.userType() == qMetaTypeId<std::chrono::milliseconds>())
        numbers += value.value<std::chrono::milliseconds>().count();
    else if (value.userType() == qMetaTypeId<QList<int>>())
        for (const int number : value.value<QList<int>>())
            numbers += number;
    else if (value.userType() == qMetaTypeId<LedBarEffect_Effect>())
        numbers += qint64(value.value<LedBarEffect_Effect>());
    else if (value.userType() == qMetaTypeId<Modes>())
        for (int bit = 1; bit <= int(value.value<Modes>()); bit *= 2)
            if (value.value<Modes>() & LedBarEffect_config::Mode(bit))
                numbers += bit;
    return numbers;
}

bool GoodDevice::allows(const QVariantHash &rules, const QVariant &value) const
{
    if (rules.value(QStringLiteral("type")) != QLatin1String(value.typeName()))
        return false;
    const QVariant wells = rules.value(QStringLiteral("length"));
    const int size = value.value<QVector<bool>>().size();
    if (wells.isValid() && size > 0 && size != wells.toInt())
        return false;
    const QVariantList choices = rules.value(QStringLiteral("choices")).toList();
    const QVariant minimum = rules.value(QStringLiteral("minimum"));
    const QVariant maximum = rules.value(QStringLiteral("maximum"));
    const int step = rules.value(QStringLiteral("step"), 1).toInt();
    const auto numbers = numbersIn(value);
    for (const qint64 number : numbers) {
        if ((minimum.isValid() && number < minimum.toLongLong())
            || (maximum.isValid() && number > maximum.toLongLong())
            || (number - minimum.toLongLong()) % step != 0
            || (!choices.isEmpty() && !choices.contains(int(number))))
            return false;
    }
    return true;
}

bool GoodDevice::accepts(DeviceFeature feature) const
{
    const QVariantHash values = configuration(feature).toHash();
    const QVariantHash settings =
        descriptor(feature).toHash().value(QStringLiteral("settings")).toHash();
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const QVariant value = values.value(it.key());
        if (value.isValid() && !allows(it->toHash(), value))
            return false;
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
    m_configuration = configuration(feature).toHash();
    m_startedAt = QDateTime::currentDateTimeUtc();
    m_step = 0;
    if (feature == DF_ReferenceNumber || feature == DF_LedBarEffect)
        return finish(true);
    setBusy(true);
    if (feature == DF_Calibration)
        askForEmptySlot();
    else if (feature == DF_LuminescenceMeasurement || feature == DF_AbsorbanceMeasurement)
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

QVariant GoodDevice::setTo(DeviceFeature feature, const char *key) const
{
    const QVariantHash settings =
        descriptor(feature).toHash().value(QStringLiteral("settings")).toHash();
    const QVariantHash described = settings.value(QLatin1String(key)).toHash();
    return m_configuration.value(QLatin1String(key), described.value(QStringLiteral("default")));
}

QVector<double> GoodDevice::readPlate(const QVector<bool> &selected) const
{
    QVector<double> values(rows * columns, 50.0);
    for (int i = 0; i < values.size(); ++i) {
        if (!selected.value(i, selected.isEmpty()))
            values[i] = qQNaN();
    }
    return values;
}

QVariantHash GoodDevice::measured(DeviceFeature feature) const
{
    QVariantHash result = {{QStringLiteral("rows"), rows},
                           {QStringLiteral("columns"), columns},
                           {QStringLiteral("unit"), unitOf(feature)},
                           {QStringLiteral("startedAt"), m_startedAt},
                           {QStringLiteral("temperature"), 21.5}};
    QVariantList reads;
    if (feature == DF_LuminescenceMeasurement) {
        const QVariant selected = setTo(feature, "selectedWells");
        reads += QVariant::fromValue(readPlate(selected.value<QVector<bool>>()));
        result.insert(QStringLiteral("integrationTime"), setTo(feature, "integrationTime"));
    } else {
        auto wavelengths = setTo(feature, "wavelengths").value<QList<int>>();
        if (wavelengths.isEmpty())
            wavelengths = {405, 450, 620};
        for (int i = 0; i < wavelengths.size(); ++i)
            reads += QVariant::fromValue(readPlate({}));
        result.insert(QStringLiteral("wavelengths"), QVariant::fromValue(wavelengths));
    }
    result.insert(QStringLiteral("values"), reads);
    return result;
}

QVariant GoodDevice::resultOf(DeviceFeature feature) const
{
    switch (feature) {
    case DF_AmbientTemperature:
        return 21.5;
    case DF_ReferenceNumber:
        return QStringLiteral("G-1");
    case DF_Orientation:
        return QVariantHash(Orientation_result(0.0F, 0.0F, 9.81F, Orientation_result::Side::Top));
    case DF_PlateDetection:
        return QVariant::fromValue(m_hasPlate ? SlotStatus::Occupied : SlotStatus::Empty);
    case DF_Calibration:
        return QVariantHash{{QStringLiteral("calibratedAt"), QDateTime::currentDateTimeUtc()}};
    case DF_AbsorbanceMeasurement:
    case DF_LuminescenceMeasurement:
        return measured(feature);
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
    // Whether checks must not share them.
    const auto interface =
        qEnvironmentVariableIsSet("GOOD_SERIAL") ? DeviceInfo::Serial : DeviceInfo::Simulator;
    const DeviceInfo left(interface, name(), QStringLiteral("left"), QStringLiteral("Good reader"),
                          QStringLiteral("G-1"));
    const DeviceInfo right(interface, name(), QStringLiteral("right"),
                           QStringLiteral("Good reader"), QStringLiteral("G-2"));
    return isThere() ? QList<DeviceInfo>{left, right} : QList<DeviceInfo>{right};
}

bool GoodDriver::isThere()
{
    return !isDone("unplug");
}

Device *GoodDriver::createDevice(const DeviceInfo &info)
{
    const bool isKnown =
        info.location() == QLatin1String("left") || info.location() == QLatin1String("right");
    return isKnown ? makeDevice(info) : nullptr;
}
