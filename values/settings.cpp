#include "settings.h"

#include "features.h"
#include "valuecodec.h"

#include <QtCore/QMetaType>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace qel::values {

using namespace qel::devices;

namespace {

using Problems = QVector<Problem>;

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

std::optional<double> limitIn(const QVariantHash &hash, const char *key)
{
    bool isNumber = false;
    const double number = hash.value(QLatin1String(key)).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::make_optional(number) : std::nullopt;
}

QVariantHash hashOfSettings(const QVariant &descriptor)
{
    return descriptor.toHash().value(QStringLiteral("settings")).toHash();
}

Setting makeSetting(const QString &key, const QVariant &description)
{
    const QVariantHash hash = description.toHash();
    Setting setting;
    setting.key = key;
    setting.typeName = hash.value(QStringLiteral("type")).toString();
    setting.type = typeNamed(setting.typeName);
    setting.kind = kindOf(setting.type);
    setting.fallback = hash.value(QStringLiteral("default"));
    setting.minimum = limitIn(hash, "minimum");
    setting.maximum = limitIn(hash, "maximum");
    setting.step = limitIn(hash, "step");
    if (setting.step && *setting.step <= 0)
        setting.step.reset();
    setting.unit = hash.value(QStringLiteral("unit")).toString();
    setting.choices = hash.value(QStringLiteral("choices")).toList();
    setting.names = hash.value(QStringLiteral("names")).toStringList();
    setting.length = std::max(0, hash.value(QStringLiteral("length")).toInt());
    return setting;
}

// What the limits hold for: a value, an element of a list, or a bit of a flag set.
struct Element
{
    std::optional<double> number;
    QString text; ///< a text, or the name of an enumerator
};

QVector<Element> elementsOf(const Setting &setting, const QVariant &value)
{
    QVector<Element> elements;
    switch (setting.kind) {
    case Kind::Integer:
    case Kind::Number:
        return {{value.toDouble(), {}}};
    case Kind::Milliseconds:
        return {{double(value.value<std::chrono::milliseconds>().count()), {}}};
    case Kind::Name:
        // A driver may offer an enumeration's values by number or by name.
        return {{double(value.toInt()), contentToJson(value)->toString()}};
    case Kind::Text:
        return {{{}, value.toString()}};
    case Kind::Texts:
    case Kind::Integers:
    case Kind::Numbers: {
        const bool isText = setting.kind == Kind::Texts;
        const auto list = value.value<QSequentialIterable>();
        for (const QVariant &entry : list)
            elements.append(isText ? Element{{}, entry.toString()} : Element{entry.toDouble(), {}});
        break;
    }
    case Kind::Flags: {
        const uint bits = uint(int(value.value<LedBarEffect_config::Modes>()));
        for (uint bit = 1; bit != 0 && bit <= bits; bit <<= 1) {
            if (bits & bit)
                elements.append(Element{double(bit), {}});
        }
        break;
    }
    case Kind::Bool:
    case Kind::Bytes:
    case Kind::Wells:
    case Kind::Color:
    case Kind::Other:
        break;
    }
    return elements;
}

bool isChoice(const Element &element, const QVariant &choice)
{
    if (choice.userType() == QMetaType::QString)
        return !element.text.isEmpty() && element.text == choice.toString();
    bool isNumber = false;
    const double number = choice.toDouble(&isNumber);
    return isNumber && element.number && *element.number == number;
}

bool isAllowed(const Element &element, const Setting &setting)
{
    if (!setting.choices.isEmpty()
        && std::none_of(setting.choices.begin(), setting.choices.end(),
                        [&element](const QVariant &choice) { return isChoice(element, choice); }))
        return false;
    if (!element.number)
        return true;
    const double number = *element.number;
    if (!std::isfinite(number) || (setting.minimum && number < *setting.minimum)
        || (setting.maximum && number > *setting.maximum))
        return false;
    if (!setting.step)
        return true;
    // Steps such as 0.1 are not exact.
    const double steps = (number - setting.minimum.value_or(0)) / *setting.step;
    return std::abs(steps - std::round(steps)) < 1e-6;
}

bool hasType(const QVariant &value, const Setting &setting)
{
    // The default constructor of LedBarEffect_config stores its state as unsigned int.
    if (setting.type == QMetaType::UChar && value.userType() == QMetaType::UInt)
        return value.toUInt() <= 255;
    return setting.typeName == QLatin1String(value.typeName());
}

std::optional<int> lengthOf(const QVariant &value, Kind kind)
{
    const bool isList = kind == Kind::Wells || kind == Kind::Integers || kind == Kind::Numbers
        || kind == Kind::Texts;
    return isList ? std::make_optional(value.value<QSequentialIterable>().size()) : std::nullopt;
}

bool isLimit(const QVariant &value)
{
    return value.userType() == QMetaType::Int || value.userType() == QMetaType::Double;
}

// Judges one entry of a descriptor's settings.
class DescriptionCheck
{
public:
    DescriptionCheck(const QString &key, const QVariant &description, Problems *problems)
        : m_path(QStringLiteral("descriptor.settings.") + key)
        , m_hash(description.toHash())
        , m_setting(makeSetting(key, description))
        , m_problems(problems)
    { }

    void run(const QVariant &description, const Key *fixed)
    {
        if (description.userType() != QMetaType::QVariantHash) {
            complain(Problem::WrongType, {},
                     {QString::fromLatin1(description.typeName()), QStringLiteral("QVariantHash")});
            return;
        }
        checkType(fixed);
        for (const char *limit : {"minimum", "maximum", "step"}) {
            const QVariant value = m_hash.value(QLatin1String(limit));
            if (value.isValid() && !isLimit(value))
                complain(Problem::WrongType, limit,
                         {QString::fromLatin1(value.typeName()), QStringLiteral("int or double")});
        }
        if (m_setting.minimum && m_setting.maximum && *m_setting.minimum > *m_setting.maximum)
            complain(Problem::OutOfRange, "minimum", {numberText(*m_setting.minimum)});
        checkChoices();
        const auto wrong = checkSetting(m_setting, m_setting.fallback);
        if (m_setting.fallback.isValid() && wrong && wrong->code == Problem::SettingType)
            complain(Problem::WrongType, "default", wrong->details);
        else if (m_setting.fallback.isValid() && wrong)
            complain(Problem::OutOfRange, "default", {wrong->details.value(0)});
    }

private:
    void complain(Problem::Code code, const char *key, const QStringList &details)
    {
        const QString path = key ? m_path + u'.' + QLatin1String(key) : m_path;
        m_problems->append({code, path, details});
    }

    void checkType(const Key *fixed)
    {
        if (fixed && m_setting.typeName != QLatin1String(fixed->type))
            complain(Problem::WrongContent, "type",
                     {m_setting.typeName, QString::fromLatin1(fixed->type)});
        else if (!m_setting.type
                 && QMetaType::type(m_setting.typeName.toLatin1()) == QMetaType::UnknownType)
            complain(Problem::UnknownType, "type", {m_setting.typeName});
    }

    void checkChoices()
    {
        const QVariant choices = m_hash.value(QStringLiteral("choices"));
        const QVariant names = m_hash.value(QStringLiteral("names"));
        if (choices.isValid() && choices.userType() != QMetaType::QVariantList)
            complain(Problem::WrongType, "choices",
                     {QString::fromLatin1(choices.typeName()), QStringLiteral("QVariantList")});
        else if (choices.isValid() && m_setting.choices.isEmpty())
            complain(Problem::OutOfRange, "choices", {QStringLiteral("[]")});
        if (names.isValid() && names.userType() != QMetaType::QStringList)
            complain(Problem::WrongType, "names",
                     {QString::fromLatin1(names.typeName()), QStringLiteral("QStringList")});
        else if (names.isValid() && m_setting.names.size() != m_setting.choices.size())
            complain(Problem::NamesCount, "names",
                     {QString::number(m_setting.names.size()),
                      QString::number(m_setting.choices.size())});
    }

    const QString m_path;
    const QVariantHash m_hash;
    const Setting m_setting;
    Problems *m_problems;
};

} // namespace

QString Setting::toString() const
{
    QString text = typeName;
    if (minimum)
        text += QStringLiteral(" from ") + numberText(*minimum);
    if (maximum)
        text += QStringLiteral(" to ") + numberText(*maximum);
    if (step)
        text += QStringLiteral(" in steps of ") + numberText(*step);
    if (!choices.isEmpty()) {
        QStringList offered;
        for (const QVariant &choice : choices)
            offered += choice.toString();
        text += QStringLiteral(" of ") + offered.join(QStringLiteral(", "));
    }
    return unit.isEmpty() ? text : text + u' ' + unit;
}

QVector<Setting> settingsOf(const QVariant &descriptor)
{
    const QVariantHash hash = hashOfSettings(descriptor);
    QStringList keys = hash.keys();
    keys.sort();
    QVector<Setting> settings;
    for (const QString &key : std::as_const(keys))
        settings.append(makeSetting(key, hash.value(key)));
    return settings;
}

std::optional<Setting> findSetting(const QString &key, const QVariant &descriptor)
{
    const QVariantHash hash = hashOfSettings(descriptor);
    return hash.contains(key) ? std::make_optional(makeSetting(key, hash.value(key)))
                              : std::nullopt;
}

std::optional<Problem> checkSetting(const Setting &setting, const QVariant &value)
{
    if (!value.isValid()) {
        if (setting.fallback.isValid())
            return {};
        return Problem{Problem::SettingMissing, setting.key, {setting.toString()}};
    }
    if (!hasType(value, setting))
        return Problem{Problem::SettingType,
                       setting.key,
                       {QString::fromLatin1(value.typeName()), setting.typeName}};
    const auto length = lengthOf(value, setting.kind);
    if (length.value_or(0) != 0 && setting.length != 0 && *length != setting.length)
        return Problem{Problem::SettingLength,
                       setting.key,
                       {QString::number(*length), QString::number(setting.length)}};
    const auto elements = elementsOf(setting, value);
    for (int i = 0; i < elements.size(); ++i) {
        const Element &element = elements[i];
        if (isAllowed(element, setting))
            continue;
        return Problem{
            Problem::SettingNotAllowed,
            length ? QStringLiteral("%1[%2]").arg(setting.key).arg(i) : setting.key,
            {element.text.isEmpty() && element.number ? numberText(*element.number) : element.text,
             setting.toString()}};
    }
    return {};
}

Problems checkConfiguration(const QVariant &configuration, const QVariant &descriptor)
{
    if (configuration.isValid() && configuration.userType() != QMetaType::QVariantHash)
        return {{Problem::ConfigurationType,
                 QString(),
                 {QString::fromLatin1(configuration.typeName())}}};
    const QVariantHash values = configuration.toHash();
    Problems problems;
    const auto settings = settingsOf(descriptor);
    for (const Setting &setting : settings) {
        if (const auto problem = checkSetting(setting, values.value(setting.key)))
            problems.append(*problem);
    }
    return problems;
}

Problems checkSettings(Device::DeviceFeature feature, const QVariant &descriptor)
{
    Problems problems;
    const Feature *entry = findFeature(feature);
    const QVariant settings = descriptor.toHash().value(QStringLiteral("settings"));
    const QString path = QStringLiteral("descriptor.settings");
    if (!settings.isValid()) {
        if (entry && entry->configuration.type)
            problems.append({Problem::Missing, path, {QStringLiteral("QVariantHash")}});
        return problems;
    }
    if (settings.userType() != QMetaType::QVariantHash)
        return {{Problem::WrongType,
                 path,
                 {QString::fromLatin1(settings.typeName()), QStringLiteral("QVariantHash")}}};
    const QVariantHash hash = settings.toHash();
    QStringList keys = hash.keys();
    keys.sort();
    for (const QString &key : std::as_const(keys))
        DescriptionCheck(key, hash.value(key), &problems)
            .run(hash.value(key), entry ? entry->configuration.find(key) : nullptr);
    return problems;
}

} // namespace qel::values
