#include "settings.h"

#include <qeldevices/device.h>

#include <QtCore/QList>
#include <QtCore/QVector>

#include <chrono>
#include <cmath>

namespace qel::simulator {

// The numbers in a value: its elements, its count, or the value itself. Types whose every value is
// allowed have none.
static QList<double> numbersIn(const QVariant &value)
{
    QList<double> numbers;
    if (value.userType() == qMetaTypeId<QList<int>>()) {
        const auto elements = value.value<QList<int>>();
        for (const int element : elements)
            numbers.append(element);
    } else if (value.userType() == qMetaTypeId<std::chrono::milliseconds>()) {
        numbers.append(double(value.value<std::chrono::milliseconds>().count()));
    } else if (value.userType() == qMetaTypeId<qel::devices::LedBarEffect_Effect>()) {
        numbers.append(int(value.value<qel::devices::LedBarEffect_Effect>()));
    } else if (value.userType() == qMetaTypeId<qel::devices::LedBarEffect_config::Modes>()) {
        const auto modes = quint32(value.value<qel::devices::LedBarEffect_config::Modes>());
        for (quint32 bit = 1; bit != 0; bit <<= 1) {
            if (modes & bit)
                numbers.append(bit);
        }
    } else if (value.userType() == QMetaType::UChar || value.userType() == QMetaType::UInt) {
        numbers.append(value.toUInt());
    }
    return numbers;
}

static bool isAllowed(double number, const QVariantHash &setting)
{
    const QVariant choices = setting.value(QStringLiteral("choices"));
    if (choices.isValid() && !choices.toList().contains(QVariant(qint64(number))))
        return false;
    const QVariant minimum = setting.value(QStringLiteral("minimum"));
    const QVariant maximum = setting.value(QStringLiteral("maximum"));
    const QVariant step = setting.value(QStringLiteral("step"));
    return (!minimum.isValid() || number >= minimum.toDouble())
        && (!maximum.isValid() || number <= maximum.toDouble())
        && (!step.isValid() || std::fmod(number - minimum.toDouble(), step.toDouble()) == 0);
}

static bool hasType(const QVariant &value, const QString &type)
{
    // The default constructor of LedBarEffect_config stores its state as unsigned int.
    if (type == QLatin1String("uchar") && value.userType() == QMetaType::UInt)
        return value.toUInt() <= 255;
    return type == QLatin1String(value.typeName());
}

static QString checkSetting(const QString &key, const QVariant &value, const QVariantHash &setting)
{
    const QString type = setting.value(QStringLiteral("type")).toString();
    if (!value.isValid()) {
        return setting.contains(QStringLiteral("default"))
            ? QString()
            : QStringLiteral("'%1' is missing").arg(key);
    }
    if (!hasType(value, type)) {
        return QStringLiteral("'%1' is of type %2 instead of %3")
            .arg(key, QString::fromLatin1(value.typeName()), type);
    }
    const QVariant length = setting.value(QStringLiteral("length"));
    if (length.isValid()) {
        const int size = value.value<QVector<bool>>().size();
        if (size != 0 && size != length.toInt()) {
            return QStringLiteral("'%1' has %2 elements instead of %3")
                .arg(key)
                .arg(size)
                .arg(length.toInt());
        }
    }
    const auto numbers = numbersIn(value);
    for (const double number : numbers) {
        if (!isAllowed(number, setting))
            return QStringLiteral("'%1' must not be %2").arg(key).arg(number);
    }
    return {};
}

QString checkConfiguration(const QVariant &configuration, const QVariantHash &settings)
{
    if (configuration.isValid() && configuration.userType() != QMetaType::QVariantHash) {
        return QStringLiteral("the configuration is of type %1 instead of QVariantHash")
            .arg(QString::fromLatin1(configuration.typeName()));
    }
    const QVariantHash values = configuration.toHash();
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        const QString mistake =
            checkSetting(setting.key(), values.value(setting.key()), setting->toHash());
        if (!mistake.isEmpty())
            return mistake;
    }
    return {};
}

} // namespace qel::simulator
