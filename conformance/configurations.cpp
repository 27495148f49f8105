#include "configurations.h"

#include <qelvalues/valuecodec.h>

#include <QtCore/QDate>
#include <QtCore/QMetaType>

#include <algorithm>
#include <chrono>

namespace qel::conformance {

using devices::Device;
using Feature = Device::DeviceFeature;

bool isSame(const QVariant &left, const QVariant &right)
{
    values::Problem problem;
    const auto a = values::toJson(left, &problem);
    const auto b = values::toJson(right, &problem);
    return left == right || (a && b && *a == *b);
}

static QVariantHash settingsOf(const QVariant &descriptor)
{
    return descriptor.toHash().value(QStringLiteral("settings")).toHash();
}

static bool isFlags(const QString &type)
{
    return type == QLatin1String("qel::devices::LedBarEffect_config::Modes");
}

// A value made of the number `number` in the type of the setting; invalid for other types, and for
// numbers that the type cannot hold.
static QVariant numeric(const QString &type, double number)
{
    using Modes = devices::LedBarEffect_config::Modes;
    const bool isByte = number >= 0 && number <= 255;
    if (type == QLatin1String("int"))
        return int(number);
    if (type == QLatin1String("double"))
        return number;
    if (type == QLatin1String("QList<int>"))
        return QVariant::fromValue(QList<int>{int(number)});
    if (type == QLatin1String("std::chrono::milliseconds"))
        return QVariant::fromValue(std::chrono::milliseconds(qint64(number)));
    if (type == QLatin1String("uchar") && isByte)
        return QVariant::fromValue(uchar(number));
    if (type == QLatin1String("qel::devices::LedBarEffect_Effect") && isByte)
        return QVariant::fromValue(devices::LedBarEffect_Effect(uchar(number)));
    if (isFlags(type))
        return QVariant::fromValue(Modes(QFlag(int(number))));
    return {};
}

static int wellsOf(const QVariant &descriptor)
{
    const QVariantHash hash = descriptor.toHash();
    return hash.value(QStringLiteral("rows")).toInt()
        * hash.value(QStringLiteral("columns")).toInt();
}

// A selection of the wells `chosen`.
static QVariant selection(const QVariant &descriptor, std::initializer_list<int> chosen)
{
    QVector<bool> wells(wellsOf(descriptor), false);
    for (const int well : chosen) {
        if (well < wells.size())
            wells[well] = true;
    }
    return QVariant::fromValue(wells);
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
        // The second well shows whether wells are counted by rows.
        else if (it.key() == QLatin1String("selectedWells") && wellsOf(descriptor) > 1)
            configuration.insert(it.key(), selection(descriptor, {1}));
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

QVariant someConfiguration(Feature feature, const QVariant &descriptor)
{
    QVariantHash configuration = shortConfiguration(feature, descriptor).toHash();
    const QVariantHash settings = settingsOf(descriptor);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const QVariant preset = it->toHash().value(QStringLiteral("default"));
        if (preset.isValid() && !configuration.contains(it.key()))
            configuration.insert(it.key(), preset);
    }
    return configuration.isEmpty() ? QVariant() : QVariant(configuration);
}

bool hasDefaults(const QVariant &descriptor)
{
    const QVariantHash settings = settingsOf(descriptor);
    return std::all_of(settings.cbegin(), settings.cend(), [](const QVariant &setting) {
        return setting.toHash().contains(QStringLiteral("default"));
    });
}

QVector<OtherConfiguration> otherConfigurations(Feature feature, const QVariant &descriptor)
{
    QVector<OtherConfiguration> all;
    const QVariantHash shortest = shortConfiguration(feature, descriptor).toHash();
    const QVariantHash settings = settingsOf(descriptor);
    QVariantHash other = shortest;
    if (feature == Device::DF_LuminescenceMeasurement) {
        const int columns = descriptor.toHash().value(QStringLiteral("columns")).toInt();
        if (settings.contains(QStringLiteral("selectedWells")) && wellsOf(descriptor) > columns)
            other.insert(QStringLiteral("selectedWells"), selection(descriptor, {0, columns}));
        const QString key = QStringLiteral("integrationTime");
        const QVariantHash time = settings.value(key).toHash();
        const double step = std::max(1.0, time.value(QStringLiteral("step")).toDouble());
        const double next = time.value(QStringLiteral("minimum")).toDouble() + step;
        if (time.contains(QStringLiteral("minimum"))
            && (!time.contains(QStringLiteral("maximum"))
                || next <= time.value(QStringLiteral("maximum")).toDouble()))
            other.insert(key, numeric(QStringLiteral("std::chrono::milliseconds"), next));
        if (other != shortest)
            all += {QStringLiteral("other wells and another time"), other};
    } else if (feature == Device::DF_AbsorbanceMeasurement) {
        const QString key = QStringLiteral("wavelengths");
        const QVariantList choices =
            settings.value(key).toHash().value(QStringLiteral("choices")).toList();
        if (choices.isEmpty())
            return all;
        const int first = choices.constFirst().toInt();
        const int last = choices.constLast().toInt();
        other.insert(key, QVariant::fromValue(QList<int>{last, first, last}));
        all += {QStringLiteral("repeated wavelengths, not in order"), other};
        other.insert(key, QVariant::fromValue(QList<int>()));
        all += {QStringLiteral("an empty list of wavelengths"), other};
    }
    return all;
}

namespace {

// Makes the wrong values of one setting.
class Spoiler
{
public:
    Spoiler(const QVariantHash &setting, int wells)
        : m_setting(setting)
        , m_type(setting.value(QStringLiteral("type")).toString())
        , m_choices(setting.value(QStringLiteral("choices")).toList())
        , m_wells(wells)
    { }

    QVector<WrongConfiguration> make()
    {
        // No type of setting converts from a date.
        add(QStringLiteral("of type QDate instead of %1").arg(m_type), QDate(2000, 1, 1));
        addTypes();
        if (numeric(m_type, 0).isValid())
            addNumbers();
        addLengths();
        return m_all;
    }

private:
    void add(const QString &what, const QVariant &value)
    {
        if (value.isValid())
            m_all += {what, value};
    }

    double number(const char *key) const
    {
        return m_setting.value(QLatin1String(key)).toDouble();
    }

    double valid() const
    {
        return m_choices.isEmpty() ? number("minimum") : m_choices.constFirst().toDouble();
    }

    // What QVariant would convert.
    void addTypes()
    {
        if (m_type == QLatin1String("int") || m_type == QLatin1String("double")
            || m_type == QLatin1String("uchar")
            || m_type == QLatin1String("std::chrono::milliseconds"))
            add(QStringLiteral("as text"), QString::number(valid()));
        if (m_type == QLatin1String("QList<int>"))
            add(QStringLiteral("as QVariantList"), QVariantList{int(valid())});
        if (m_type == QLatin1String("QVector<bool>"))
            add(QStringLiteral("as QVariantList"), [this] {
                QVariantList wells;
                for (int i = 0; i < m_wells; ++i)
                    wells += true;
                return wells;
            }());
    }

    void addNumbers()
    {
        if (m_setting.contains(QStringLiteral("minimum")))
            add(QStringLiteral("below its minimum"), numeric(m_type, number("minimum") - 1));
        if (m_setting.contains(QStringLiteral("maximum")))
            add(QStringLiteral("above its maximum"), numeric(m_type, number("maximum") + 1));
        const bool isWhole = m_type != QLatin1String("double");
        const double step = number("step");
        if (m_setting.contains(QStringLiteral("minimum")) && step > (isWhole ? 1 : 0)) {
            add(QStringLiteral("between its steps"),
                numeric(m_type, number("minimum") + (isWhole ? 1 : step / 2)));
        }
        if (m_choices.isEmpty())
            return;
        double other = 0;
        int bits = 0;
        for (const QVariant &choice : qAsConst(m_choices)) {
            other = std::max(other, choice.toDouble() + 1);
            bits |= choice.toInt();
        }
        if (isFlags(m_type))
            other = ~bits & (bits + 1);
        add(QStringLiteral("that is none of the choices"), numeric(m_type, other));
        if (m_type == QLatin1String("QList<int>")) {
            add(QStringLiteral("whose second element is none of the choices"),
                QVariant::fromValue(QList<int>{int(valid()), int(other)}));
        }
    }

    void addLengths()
    {
        const int length = m_setting.contains(QStringLiteral("length"))
            ? m_setting.value(QStringLiteral("length")).toInt()
            : m_wells;
        if (m_type == QLatin1String("QVector<bool>") && length > 0) {
            add(QStringLiteral("with one element too many"),
                QVariant::fromValue(QVector<bool>(length + 1, true)));
        }
        if (m_type == QLatin1String("QVector<bool>") && length > 1) {
            add(QStringLiteral("with one element too few"),
                QVariant::fromValue(QVector<bool>(length - 1, true)));
        }
    }

    const QVariantHash m_setting;
    const QString m_type;
    const QVariantList m_choices;
    const int m_wells;
    QVector<WrongConfiguration> m_all;
};

} // namespace

QVector<WrongConfiguration> wrongConfigurations(Feature feature, const QVariant &descriptor)
{
    QVector<WrongConfiguration> all;
    const QVariantHash valid = shortConfiguration(feature, descriptor).toHash();
    const QVariantHash settings = settingsOf(descriptor);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        const auto wrong = Spoiler(it->toHash(), wellsOf(descriptor)).make();
        for (const WrongConfiguration &one : wrong) {
            QVariantHash configuration = valid;
            configuration.insert(it.key(), one.value);
            all += {QStringLiteral("'%1' %2").arg(it.key(), one.what), configuration};
        }
        if (!it->toHash().contains(QStringLiteral("default"))) {
            QVariantHash configuration = valid;
            configuration.remove(it.key());
            all += {QStringLiteral("no '%1'").arg(it.key()),
                    configuration.isEmpty() ? QVariant() : QVariant(configuration)};
        }
    }
    return all;
}

} // namespace qel::conformance
