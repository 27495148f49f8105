#include "configurations.h"

#include <qelvalues/settings.h>

#include <QtCore/QDate>

#include <algorithm>
#include <chrono>

namespace qel::conformance {

using devices::Device;
using values::Kind;
using values::Setting;
using Feature = Device::DeviceFeature;

// A value made of the number `number` for `setting`; invalid for types of other kinds.
static QVariant numeric(const Setting &setting, double number)
{
    switch (setting.kind) {
    case Kind::Integer:
    case Kind::Number: {
        QVariant value = number;
        return value.convert(setting.type) ? value : QVariant();
    }
    case Kind::Integers:
        return QVariant::fromValue(QList<int>{int(number)});
    case Kind::Milliseconds:
        return QVariant::fromValue(std::chrono::milliseconds(qint64(number)));
    default:
        return {};
    }
}

QVariant shortConfiguration(Feature feature, const QVariant &descriptor)
{
    QVariantHash configuration;
    const auto settings = values::settingsOf(descriptor);
    for (const Setting &setting : settings) {
        const bool isRequired = !setting.fallback.isValid();
        QVariant value;
        if (setting.key == QLatin1String("rapidMode"))
            value = true;
        else if (!setting.choices.isEmpty()
                 && (isRequired || feature == Device::DF_AbsorbanceMeasurement))
            value = numeric(setting, setting.choices.constFirst().toDouble());
        else if (setting.minimum && (isRequired || feature == Device::DF_LuminescenceMeasurement))
            value = numeric(setting, *setting.minimum);
        if (value.isValid())
            configuration.insert(setting.key, value);
    }
    return configuration.isEmpty() ? QVariant() : QVariant(configuration);
}

QVector<WrongConfiguration> wrongConfigurations(Feature feature, const QVariant &descriptor)
{
    QVector<WrongConfiguration> all;
    const QVariantHash valid = shortConfiguration(feature, descriptor).toHash();
    const auto settings = values::settingsOf(descriptor);
    for (const Setting &setting : settings) {
        const auto add = [&](const QString &what, const QVariant &value) {
            // Not every type holds a number beyond its limits.
            if (!value.isValid() || !values::checkSetting(setting, value))
                return;
            QVariantHash configuration = valid;
            configuration.insert(setting.key, value);
            all += {QStringLiteral("'%1' %2").arg(setting.key, what), configuration};
        };
        // No type of setting converts from a date.
        add(QStringLiteral("of type QDate instead of %1").arg(setting.typeName), QDate(2000, 1, 1));
        if (setting.minimum)
            add(QStringLiteral("below its minimum"), numeric(setting, *setting.minimum - 1));
        if (setting.maximum)
            add(QStringLiteral("above its maximum"), numeric(setting, *setting.maximum + 1));
        if (!setting.choices.isEmpty()) {
            double other = 0;
            for (const QVariant &choice : setting.choices)
                other = std::max(other, choice.toDouble() + 1);
            add(QStringLiteral("that is none of the choices"), numeric(setting, other));
        }
        if (!setting.fallback.isValid()) {
            QVariantHash configuration = valid;
            configuration.remove(setting.key);
            all += {QStringLiteral("without '%1'").arg(setting.key),
                    configuration.isEmpty() ? QVariant() : QVariant(configuration)};
        }
    }
    return all;
}

} // namespace qel::conformance
