#include "values.h"

#include <QtCore/QDateTime>
#include <QtCore/QMetaType>

#include <algorithm>
#include <chrono>

namespace qel::conformance {

using devices::Device;
using Feature = Device::DeviceFeature;

bool isMoving(Feature feature)
{
    return feature == Device::DF_AbsorbanceMeasurement
        || feature == Device::DF_LuminescenceMeasurement || feature == Device::DF_Calibration
        || feature == Device::DF_FirmwareUpdate;
}

static bool isMeasuring(Feature feature)
{
    return feature == Device::DF_AbsorbanceMeasurement
        || feature == Device::DF_LuminescenceMeasurement;
}

static QString typeOf(const QVariant &value)
{
    return value.isValid() ? QString::fromLatin1(value.typeName()) : QStringLiteral("missing");
}

static bool holds(const QVariant &value, const char *type)
{
    return value.isValid() && qstrcmp(value.typeName(), type) == 0;
}

// "'rows' is QString, not int", or nothing.
static QString entryFault(const QVariantHash &hash, const char *key, const char *type)
{
    const QVariant value = hash.value(QLatin1String(key));
    if (holds(value, type))
        return {};
    return QStringLiteral("'%1' is %2, not %3")
        .arg(QLatin1String(key), typeOf(value), QLatin1String(type));
}

static QString notAHash(const char *what, const QVariant &value)
{
    return QStringLiteral("the %1 is %2, not QVariantHash").arg(QLatin1String(what), typeOf(value));
}

static QString firstOf(std::initializer_list<QString> faults)
{
    const auto fault = std::find_if(faults.begin(), faults.end(),
                                    [](const QString &text) { return !text.isEmpty(); });
    return fault == faults.end() ? QString() : *fault;
}

static bool takesConfiguration(Feature feature)
{
    return isMeasuring(feature) || feature == Device::DF_FirmwareUpdate
        || feature == Device::DF_LedBarEffect;
}

QString descriptorFault(Feature feature, const QVariant &descriptor)
{
    if (descriptor.isValid() && descriptor.userType() != QMetaType::QVariantHash)
        return notAHash("descriptor", descriptor);
    const QVariantHash hash = descriptor.toHash();
    QString fault;
    if (feature == Device::DF_AmbientTemperature || isMeasuring(feature)) {
        fault = firstOf({entryFault(hash, "unit", "QString"), entryFault(hash, "minimum", "double"),
                         entryFault(hash, "maximum", "double")});
    } else if (feature == Device::DF_Orientation) {
        fault = entryFault(hash, "unit", "QString");
    }
    if (fault.isEmpty() && isMeasuring(feature)) {
        fault = firstOf({entryFault(hash, "rows", "int"), entryFault(hash, "columns", "int")});
        const QString unit = hash.value(QStringLiteral("unit")).toString();
        const QString expected = feature == Device::DF_AbsorbanceMeasurement
            ? QStringLiteral("OD")
            : QStringLiteral("RLU/s");
        if (fault.isEmpty() && unit != expected)
            fault = QStringLiteral("'unit' is '%1', not '%2'").arg(unit, expected);
    }
    return fault;
}

namespace {

struct FixedSetting
{
    Feature feature;
    const char *key;
    const char *type;
};

} // namespace

static const FixedSetting fixedSettings[] = {
    {Device::DF_AbsorbanceMeasurement, "wavelengths", "QList<int>"},
    {Device::DF_AbsorbanceMeasurement, "rapidMode", "bool"},
    {Device::DF_LuminescenceMeasurement, "integrationTime", "std::chrono::milliseconds"},
    {Device::DF_LuminescenceMeasurement, "selectedWells", "QVector<bool>"},
    {Device::DF_FirmwareUpdate, "image", "QByteArray"},
    {Device::DF_LedBarEffect, "effect", "qel::devices::LedBarEffect_Effect"},
    {Device::DF_LedBarEffect, "color", "qel::devices::LedBarEffect_config::Color"},
    {Device::DF_LedBarEffect, "mode", "qel::devices::LedBarEffect_config::Modes"},
    {Device::DF_LedBarEffect, "state", "uchar"},
};

static bool isNumber(const QVariant &value)
{
    return !value.isValid() || value.userType() == QMetaType::Int
        || value.userType() == QMetaType::Double;
}

static QString limitsFault(const QVariantHash &setting)
{
    const QVariant minimum = setting.value(QStringLiteral("minimum"));
    const QVariant maximum = setting.value(QStringLiteral("maximum"));
    if (!isNumber(minimum) || !isNumber(maximum)
        || !isNumber(setting.value(QStringLiteral("step"))))
        return QStringLiteral("a limit is neither int nor double");
    if (minimum.isValid() && maximum.isValid() && minimum.toDouble() > maximum.toDouble())
        return QStringLiteral("'minimum' is above 'maximum'");
    const QVariant choices = setting.value(QStringLiteral("choices"));
    if (choices.isValid() && (!holds(choices, "QVariantList") || choices.toList().isEmpty()))
        return QStringLiteral("'choices' is no QVariantList or empty");
    const QVariant names = setting.value(QStringLiteral("names"));
    if (names.isValid()
        && (!holds(names, "QStringList") || names.toList().size() != choices.toList().size()))
        return QStringLiteral("'names' is no QStringList as long as 'choices'");
    return {};
}

static QString settingFault(Feature feature, const QString &key, const QVariant &value)
{
    const QVariantHash setting = value.toHash();
    const QString type = setting.value(QStringLiteral("type")).toString();
    for (const FixedSetting &fixed : fixedSettings) {
        if (fixed.feature == feature && key == QLatin1String(fixed.key)
            && type != QLatin1String(fixed.type)) {
            return QStringLiteral("'type' is '%1', not '%2'").arg(type, QLatin1String(fixed.type));
        }
    }
    const int id = QMetaType::type(type.toLatin1());
    if (id == QMetaType::UnknownType)
        return QStringLiteral("'type' is '%1', which is no registered type").arg(type);
    const QVariant preset = setting.value(QStringLiteral("default"));
    if (preset.isValid() && preset.userType() != id)
        return QStringLiteral("'default' is %1, not %2").arg(typeOf(preset), type);
    return limitsFault(setting);
}

QString settingsFault(Feature feature, const QVariant &descriptor)
{
    // So that the names of the settings' types are known.
    qRegisterMetaType<std::chrono::milliseconds>();
    qRegisterMetaType<QList<int>>();
    qRegisterMetaType<QVector<bool>>();
    devices::LedBarEffect_config registersItsTypes;

    const QVariant settings = descriptor.toHash().value(QStringLiteral("settings"));
    if (!settings.isValid() && !takesConfiguration(feature))
        return {};
    if (settings.userType() != QMetaType::QVariantHash)
        return QStringLiteral("'settings' is %1, not QVariantHash").arg(typeOf(settings));
    const QVariantHash all = settings.toHash();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QString fault = settingFault(feature, it.key(), it.value());
        if (!fault.isEmpty())
            return QStringLiteral("setting '%1': %2").arg(it.key(), fault);
    }
    return {};
}

static QString utcFault(const QVariantHash &hash, const char *key)
{
    const QString fault = entryFault(hash, key, "QDateTime");
    if (!fault.isEmpty())
        return fault;
    const QDateTime time = hash.value(QLatin1String(key)).toDateTime();
    return time.isValid() && time.timeSpec() == Qt::UTC
        ? QString()
        : QStringLiteral("'%1' is not a valid time in UTC").arg(QLatin1String(key));
}

static QString readsFault(const QVariantHash &hash, int expected)
{
    const int wells =
        hash.value(QStringLiteral("rows")).toInt() * hash.value(QStringLiteral("columns")).toInt();
    const QVariantList reads = hash.value(QStringLiteral("values")).toList();
    if (reads.size() != expected)
        return QStringLiteral("'values' has %1 reads, not %2").arg(reads.size()).arg(expected);
    for (const QVariant &read : reads) {
        if (!holds(read, "QVector<double>"))
            return QStringLiteral("a read is %1, not QVector<double>").arg(typeOf(read));
        const int size = read.value<QVector<double>>().size();
        if (size != wells)
            return QStringLiteral("a read has %1 wells, not %2").arg(size).arg(wells);
    }
    return {};
}

static QString measurementFault(Feature feature, const QVariantHash &hash)
{
    const QString fault =
        firstOf({entryFault(hash, "rows", "int"), entryFault(hash, "columns", "int"),
                 entryFault(hash, "unit", "QString"), entryFault(hash, "values", "QVariantList"),
                 utcFault(hash, "startedAt"), entryFault(hash, "temperature", "double")});
    if (!fault.isEmpty())
        return fault;
    if (feature == Device::DF_LuminescenceMeasurement) {
        return firstOf({entryFault(hash, "integrationTime", "std::chrono::milliseconds"),
                        readsFault(hash, 1)});
    }
    const auto wavelengths = hash.value(QStringLiteral("wavelengths")).value<QList<int>>();
    return firstOf(
        {entryFault(hash, "wavelengths", "QList<int>"), readsFault(hash, wavelengths.size())});
}

static QString hashResultFault(Feature feature, const QVariantHash &hash)
{
    switch (feature) {
    case Device::DF_AbsorbanceMeasurement:
    case Device::DF_LuminescenceMeasurement:
        return measurementFault(feature, hash);
    case Device::DF_Calibration:
        return utcFault(hash, "calibratedAt");
    case Device::DF_FirmwareInfo:
    case Device::DF_FirmwareUpdate:
        return firstOf({entryFault(hash, "version", "QString"),
                        entryFault(hash, "bootloader", "QString"),
                        entryFault(hash, "date", "QDate")});
    case Device::DF_Orientation:
        return firstOf({entryFault(hash, "accelerationX", "float"),
                        entryFault(hash, "accelerationY", "float"),
                        entryFault(hash, "accelerationZ", "float"),
                        entryFault(hash, "topSide", "qel::devices::Orientation_result::Side")});
    default:
        return {};
    }
}

QString resultFault(Feature feature, const QVariant &result)
{
    const char *type = nullptr;
    switch (feature) {
    case Device::DF_AmbientTemperature:
        type = "double";
        break;
    case Device::DF_PlateDetection:
        type = "qel::devices::SlotStatus";
        break;
    case Device::DF_ReferenceNumber:
        type = "QString";
        break;
    case Device::DF_PartsAligned:
        type = "bool";
        break;
    case Device::DF_LedBarEffect:
        return result.isValid()
            ? QStringLiteral("the result is %1, not invalid").arg(typeOf(result))
            : QString();
    default:
        return result.userType() == QMetaType::QVariantHash
            ? hashResultFault(feature, result.toHash())
            : notAHash("result", result);
    }
    return holds(result, type)
        ? QString()
        : QStringLiteral("the result is %1, not %2").arg(typeOf(result), QLatin1String(type));
}

static QVariantHash settingsOf(const QVariant &descriptor)
{
    return descriptor.toHash().value(QStringLiteral("settings")).toHash();
}

// A value made of the number `number` in the type of the setting; invalid for other types.
static QVariant numeric(const QString &type, double number)
{
    if (type == QLatin1String("int"))
        return int(number);
    if (type == QLatin1String("double"))
        return number;
    if (type == QLatin1String("QList<int>"))
        return QVariant::fromValue(QList<int>{int(number)});
    if (type == QLatin1String("std::chrono::milliseconds"))
        return QVariant::fromValue(std::chrono::milliseconds(qint64(number)));
    return {};
}

QVariant shortConfiguration(Feature feature, const QVariant &descriptor)
{
    QVariantHash configuration;
    const QVariantHash settings = settingsOf(descriptor);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const QVariantHash setting = it->toHash();
        const QString type = setting.value(QStringLiteral("type")).toString();
        const QVariantList choices = setting.value(QStringLiteral("choices")).toList();
        const bool isRequired = !setting.contains(QStringLiteral("default"));
        if (it.key() == QLatin1String("rapidMode"))
            configuration.insert(it.key(), true);
        else if (!choices.isEmpty() && (isRequired || feature == Device::DF_AbsorbanceMeasurement))
            configuration.insert(it.key(), numeric(type, choices.constFirst().toDouble()));
        else if (setting.contains(QStringLiteral("minimum"))
                 && (isRequired || feature == Device::DF_LuminescenceMeasurement))
            configuration.insert(
                it.key(), numeric(type, setting.value(QStringLiteral("minimum")).toDouble()));
        if (!configuration.value(it.key()).isValid())
            configuration.remove(it.key());
    }
    return configuration.isEmpty() ? QVariant() : QVariant(configuration);
}

QVector<WrongConfiguration> wrongConfigurations(Feature feature, const QVariant &descriptor)
{
    QVector<WrongConfiguration> all;
    const QVariantHash valid = shortConfiguration(feature, descriptor).toHash();
    const QVariantHash settings = settingsOf(descriptor);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const QVariantHash setting = it->toHash();
        const QString type = setting.value(QStringLiteral("type")).toString();
        const auto add = [&](const QString &what, const QVariant &value) {
            QVariantHash configuration = valid;
            configuration.insert(it.key(), value);
            all += {QStringLiteral("'%1' %2").arg(it.key(), what), configuration};
        };
        // No type of setting converts from a date.
        add(QStringLiteral("of type QDate instead of %1").arg(type), QDate(2000, 1, 1));
        const QVariant below = setting.value(QStringLiteral("minimum"));
        if (below.isValid() && numeric(type, 0).isValid())
            add(QStringLiteral("below its minimum"), numeric(type, below.toDouble() - 1));
        const QVariant above = setting.value(QStringLiteral("maximum"));
        if (above.isValid() && numeric(type, 0).isValid())
            add(QStringLiteral("above its maximum"), numeric(type, above.toDouble() + 1));
        const QVariantList choices = setting.value(QStringLiteral("choices")).toList();
        if (!choices.isEmpty() && numeric(type, 0).isValid()) {
            double other = 0;
            for (const QVariant &choice : choices)
                other = std::max(other, choice.toDouble() + 1);
            add(QStringLiteral("that is none of the choices"), numeric(type, other));
        }
        if (!setting.contains(QStringLiteral("default"))) {
            QVariantHash configuration = valid;
            configuration.remove(it.key());
            all += {QStringLiteral("without '%1'").arg(it.key()),
                    configuration.isEmpty() ? QVariant() : QVariant(configuration)};
        }
    }
    return all;
}

} // namespace qel::conformance
