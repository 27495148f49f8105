#include "configuration.h"

#include "frontend.h"
#include "messages_p.h"
#include "wells.h"

#include <qeldevices/device.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

namespace {

// What distinguishes values for a reader.
enum class Kind {
    Bool,
    Number,
    Text,
    NumberList,
    TextList,
    Bytes,
    Wells,
    Flags,
    Color,
    Enumeration,
    Unsupported,
};

// How the values of a type are read, and what they are called.
struct Form
{
    int type;
    Kind kind;
    const char *description;
};

Form formOf(int type)
{
    static const Form forms[] = {
        {QMetaType::Bool, Kind::Bool, "qelfrontend-kind-bool"},
        {QMetaType::Int, Kind::Number, "qelfrontend-kind-integer"},
        {QMetaType::UInt, Kind::Number, "qelfrontend-kind-integer"},
        {QMetaType::UChar, Kind::Number, "qelfrontend-kind-integer"},
        {QMetaType::LongLong, Kind::Number, "qelfrontend-kind-integer"},
        {QMetaType::ULongLong, Kind::Number, "qelfrontend-kind-integer"},
        {QMetaType::Double, Kind::Number, "qelfrontend-kind-number"},
        {QMetaType::Float, Kind::Number, "qelfrontend-kind-number"},
        {qMetaTypeId<std::chrono::milliseconds>(), Kind::Number, "qelfrontend-kind-milliseconds"},
        {QMetaType::QString, Kind::Text, "qelfrontend-kind-text"},
        {qMetaTypeId<QList<int>>(), Kind::NumberList, "qelfrontend-kind-integers"},
        {qMetaTypeId<QVector<double>>(), Kind::NumberList, "qelfrontend-kind-numbers"},
        {QMetaType::QStringList, Kind::TextList, "qelfrontend-kind-texts"},
        {QMetaType::QByteArray, Kind::Bytes, "qelfrontend-kind-bytes"},
        {qMetaTypeId<QVector<bool>>(), Kind::Wells, "qelfrontend-kind-wells"},
        {qMetaTypeId<LedBarEffect_config::Modes>(), Kind::Flags, "qelfrontend-kind-flags"},
        {qMetaTypeId<LedBarEffect_config::Color>(), Kind::Color, "qelfrontend-kind-color"},
        {qMetaTypeId<LedBarEffect_Effect>(), Kind::Enumeration, "qelfrontend-kind-name"},
        {qMetaTypeId<SlotStatus>(), Kind::Enumeration, "qelfrontend-kind-name"},
        {qMetaTypeId<Orientation_result::Side>(), Kind::Enumeration, "qelfrontend-kind-name"},
    };
    const auto found = std::find_if(std::begin(forms), std::end(forms),
                                    [type](const Form &form) { return form.type == type; });
    return found != std::end(forms) ? *found
                                    : Form{type, Kind::Unsupported, "qelfrontend-kind-unsupported"};
}

// One entry of a descriptor's settings. Whatever a driver has put there, nothing here fails: a
// limit that makes no sense is none.
struct Setting
{
    Setting(QString settingKey, const QVariant &descriptor)
        : key(std::move(settingKey))
    {
        const QVariantHash all = descriptor.toHash();
        rows = qBound(0, all.value(QStringLiteral("rows")).toInt(), 1000);
        columns = qBound(0, all.value(QStringLiteral("columns")).toInt(), 1000);
        const QVariantHash own = all.value(QStringLiteral("settings")).toHash().value(key).toHash();
        // The type is looked up by its name, which an unregistered one does not have.
        registerMetaTypes();
        const QByteArray type = own.value(QStringLiteral("type")).toString().toUtf8();
        form = formOf(QMetaType::type(type.constData()));
        fallback = own.value(QStringLiteral("default"));
        minimum = limit(own.value(QStringLiteral("minimum")));
        maximum = limit(own.value(QStringLiteral("maximum")));
        step = limit(own.value(QStringLiteral("step")));
        if (step && *step <= 0)
            step.reset();
        unit = own.value(QStringLiteral("unit")).toString();
        choices = own.value(QStringLiteral("choices")).toList();
        names = own.value(QStringLiteral("names")).toStringList();
        length = std::max(0, own.value(QStringLiteral("length")).toInt());
    }

    static std::optional<double> limit(const QVariant &value)
    {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        return isNumber && std::isfinite(number) ? std::make_optional(number) : std::nullopt;
    }

    // What stands in the descriptor for `name`; `name` itself when it is none of the names.
    QJsonValue resolved(const QJsonValue &name) const
    {
        const int index = name.isString() ? names.indexOf(name.toString()) : -1;
        return index >= 0 && index < choices.size() ? QJsonValue::fromVariant(choices[index])
                                                    : name;
    }

    QJsonValue named(const QJsonValue &choice) const
    {
        for (int i = 0; i < choices.size() && i < names.size(); ++i) {
            if (QJsonValue::fromVariant(choices[i]) == choice)
                return names[i];
        }
        return choice;
    }

    bool offers(const QJsonValue &choice) const
    {
        return choices.isEmpty()
            || std::any_of(choices.begin(), choices.end(), [&choice](const QVariant &offered) {
                   return QJsonValue::fromVariant(offered) == choice;
               });
    }

    bool allows(double number) const
    {
        if ((minimum && number < *minimum) || (maximum && number > *maximum))
            return false;
        if (!step)
            return true;
        // Steps such as 0.1 are not exact.
        const double steps = (number - minimum.value_or(0)) / *step;
        return std::abs(steps - std::round(steps)) < 1e-6;
    }

    QString key;
    Form form{};
    QVariant fallback;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> step;
    QString unit;
    QVariantList choices;
    QStringList names;
    int length = 0;
    int rows = 0;
    int columns = 0;
};

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString describe(const Setting &setting)
{
    QString text = message(setting.form.description);
    if (setting.minimum && setting.maximum)
        text += message("qelfrontend-limit-range", numberText(*setting.minimum),
                        numberText(*setting.maximum));
    else if (setting.minimum)
        text += message("qelfrontend-limit-minimum", numberText(*setting.minimum));
    else if (setting.maximum)
        text += message("qelfrontend-limit-maximum", numberText(*setting.maximum));
    if (!setting.unit.isEmpty() && setting.form.type != qMetaTypeId<std::chrono::milliseconds>())
        text += u' ' + setting.unit;
    if (setting.step && *setting.step != 1)
        text += message("qelfrontend-limit-step", numberText(*setting.step));
    if (!setting.choices.isEmpty()) {
        QStringList offered;
        for (const QVariant &choice : setting.choices)
            offered += setting.named(QJsonValue::fromVariant(choice)).toVariant().toString();
        text += message("qelfrontend-limit-choices", offered.join(QStringLiteral(", ")));
    }
    if (setting.length > 0)
        text += message("qelfrontend-limit-length", QString::number(setting.length));
    return text;
}

// Reads the value of one setting. Everything that is wrong is named in `problems`.
class SettingReader
{
public:
    SettingReader(const Setting &setting, QStringList *problems)
        : m_setting(setting)
        , m_problems(problems)
    { }

    std::optional<QVariant> read(const QJsonValue &given)
    {
        switch (m_setting.form.kind) {
        case Kind::Bytes:
            return readBytes(given);
        case Kind::Flags:
            return readFlags(given);
        case Kind::Wells:
            return checkLength(given.isString() ? readWellNames(given.toString())
                                                : decode(given, given));
        case Kind::NumberList:
        case Kind::TextList:
            return readList(given);
        default:
            return readScalar(given);
        }
    }

private:
    std::nullopt_t wrong(const QJsonValue &given)
    {
        QString text = given.isString() ? given.toString() : QString::fromUtf8(jsonText(given));
        m_problems->append(message("qelfrontend-setting-wrong", m_setting.key, printable(text),
                                   describe(m_setting)));
        return std::nullopt;
    }

    // The codec knows how each type is written in JSON; here only what people leave out is added.
    std::optional<QVariant> decode(const QJsonValue &json, const QJsonValue &given)
    {
        Problem unused;
        const auto type = QString::fromLatin1(QMetaType::typeName(m_setting.form.type));
        const auto value = fromJson(
            QJsonObject{{QStringLiteral("$type"), type}, {QStringLiteral("value"), json}}, &unused);
        return value ? value : wrong(given);
    }

    // Whether one value, or one element, keeps the limits.
    bool isAllowed(const QJsonValue &json) const
    {
        return m_setting.offers(json) && (!json.isDouble() || m_setting.allows(json.toDouble()));
    }

    std::optional<QVariant> readScalar(const QJsonValue &given)
    {
        QJsonValue json = m_setting.resolved(given);
        if (m_setting.form.kind == Kind::Bool)
            return json.isBool() ? std::make_optional(QVariant(json.toBool())) : wrong(given);
        if (m_setting.form.kind == Kind::Text)
            return json.isString() && isAllowed(json)
                ? std::make_optional(QVariant(json.toString()))
                : wrong(given);
        if (m_setting.form.kind == Kind::Number && !json.isDouble())
            return wrong(given);
        const auto value = decode(json, given);
        if (!value)
            return {};
        // A driver may offer an enumeration's values by number or by name.
        if (m_setting.form.kind == Kind::Enumeration) {
            const QJsonValue number(value->toInt());
            return isAllowed(number) || isAllowed(json) ? value : wrong(given);
        }
        return isAllowed(json) ? value : wrong(given);
    }

    std::optional<QVariant> readList(const QJsonValue &given)
    {
        if (!given.isArray())
            return wrong(given);
        QJsonArray elements;
        const QJsonArray entries = given.toArray();
        for (const auto &entry : entries) {
            const QJsonValue element = m_setting.resolved(entry);
            if (m_setting.form.kind != Kind::TextList && !element.isDouble())
                return wrong(entry);
            if (!isAllowed(element))
                return wrong(entry);
            elements.append(element);
        }
        return checkLength(decode(elements, given));
    }

    std::optional<QVariant> readFlags(const QJsonValue &given)
    {
        uint bits = 0;
        const QJsonArray entries = given.isArray() ? given.toArray() : QJsonArray{given};
        for (const auto &entry : entries) {
            const QJsonValue flag = m_setting.resolved(entry);
            const double number = flag.toDouble(-1);
            if (number < 0 || number > 255 || number != std::trunc(number))
                return wrong(entry);
            // A number may also stand for several bits at once.
            for (uint bit = 1; bit <= uint(number); bit <<= 1) {
                if ((uint(number) & bit) && !m_setting.offers(double(bit)))
                    return wrong(entry);
            }
            bits |= uint(number);
        }
        return decode(double(bits), given);
    }

    std::optional<QVariant> readWellNames(const QString &text)
    {
        if (text.isEmpty())
            return QVariant::fromValue(QVector<bool>());
        QString problem;
        const auto wells = readWells(text, m_setting.rows, m_setting.columns, &problem);
        if (wells)
            return QVariant::fromValue(*wells);
        m_problems->append(message("qelfrontend-setting-wells", m_setting.key, problem));
        return {};
    }

    std::optional<QVariant> checkLength(std::optional<QVariant> value)
    {
        if (!value)
            return {};
        const int size = value->value<QSequentialIterable>().size();
        if (size == 0 || m_setting.length == 0 || size == m_setting.length)
            return value;
        m_problems->append(message("qelfrontend-setting-length", m_setting.key,
                                   QString::number(size), QString::number(m_setting.length)));
        return {};
    }

    std::optional<QVariant> readBytes(const QJsonValue &given)
    {
        if (!given.toString().startsWith(u'@'))
            return decode(given, given);
        QFile file(given.toString().mid(1));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = file.read(maximumJsonSize + 1);
            if (bytes.size() <= maximumJsonSize && file.error() == QFile::NoError)
                return QVariant(bytes);
        }
        const QString reason = file.error() == QFile::NoError
            ? message("qelfrontend-file-size", QString::number(maximumJsonSize))
            : file.errorString();
        m_problems->append(
            message("qelfrontend-setting-file", m_setting.key, printable(file.fileName()), reason));
        return {};
    }

    const Setting &m_setting;
    QStringList *m_problems;
};

QVariantHash settingsOf(const QVariant &descriptor)
{
    return descriptor.toHash().value(QStringLiteral("settings")).toHash();
}

QStringList sortedKeys(const QVariantHash &settings)
{
    QStringList keys = settings.keys();
    keys.sort();
    return keys;
}

QString unknownSetting(const QString &key, const QVariantHash &settings)
{
    if (settings.isEmpty())
        return message("qelfrontend-setting-none", printable(key));
    return message("qelfrontend-setting-unknown", printable(key),
                   sortedKeys(settings).join(QStringLiteral(", ")));
}

QJsonValue numberOrText(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? QJsonValue(number) : QJsonValue(text);
}

QJsonValue listFromText(const QString &text, Kind kind)
{
    if (text.startsWith(u'[')) {
        Problem unused;
        return parseJson(text.toUtf8(), &unused).value_or(text);
    }
    if (kind == Kind::Wells)
        return text;
    QJsonArray elements;
    const auto parts = text.split(u',', Qt::SkipEmptyParts);
    for (const QString &part : parts)
        elements.append(kind == Kind::TextList ? part.trimmed() : numberOrText(part.trimmed()));
    return elements;
}

// A text from KEY=VALUE as the JSON value that it stands for. What does not read as one stays a
// text: it may be a name, and what it may be is judged later.
QJsonValue fromText(const QString &text, Kind kind)
{
    switch (kind) {
    case Kind::Bool:
        if (text == QLatin1String("true") || text == QLatin1String("false"))
            return text == QLatin1String("true");
        return text;
    case Kind::Number:
    case Kind::Enumeration:
        return numberOrText(text);
    case Kind::NumberList:
    case Kind::TextList:
    case Kind::Wells:
    case Kind::Flags:
        return listFromText(text, kind);
    case Kind::Text:
    case Kind::Bytes:
    case Kind::Color:
    case Kind::Unsupported:
        break;
    }
    return text;
}

QJsonValue writeFlags(uint bits, const Setting &setting)
{
    QJsonArray flags;
    for (int bit = 1; bit <= 128; bit <<= 1) {
        if (bits & uint(bit))
            flags.append(setting.named(bit));
    }
    return flags;
}

std::optional<QJsonValue> writeSetting(const QVariant &value, const Setting &setting)
{
    const Kind kind = formOf(value.userType()).kind;
    if (kind == Kind::Unsupported)
        return {};
    if (kind == Kind::Flags)
        return writeFlags(uint(value.value<LedBarEffect_config::Modes>()), setting);
    const auto wells = value.value<QVector<bool>>();
    if (kind == Kind::Wells && setting.columns > 0
        && wells.size() == setting.rows * setting.columns)
        return QJsonValue(writeWells(wells, setting.columns));
    Problem unused;
    const auto json = toJson(value, &unused);
    return json && json->isObject() ? json->toObject().value(QStringLiteral("value")) : json;
}

} // namespace

std::optional<QVariant> readConfiguration(const QJsonObject &configuration,
                                          const QVariant &descriptor, QStringList *problems)
{
    const QVariantHash settings = settingsOf(descriptor);
    const int problemsBefore = problems->size();
    QVariantHash record;
    const auto keys = configuration.keys();
    for (const QString &key : keys) {
        if (!settings.contains(key))
            problems->append(unknownSetting(key, settings));
    }
    const auto expected = sortedKeys(settings);
    for (const QString &key : expected) {
        const Setting setting(key, descriptor);
        if (configuration.contains(key)) {
            if (const auto value = SettingReader(setting, problems).read(configuration.value(key)))
                record.insert(key, *value);
        } else if (!setting.fallback.isValid()) {
            problems->append(message("qelfrontend-setting-missing", key, describe(setting)));
        } else {
            record.insert(key, setting.fallback);
        }
    }
    if (problems->size() > problemsBefore)
        return {};
    return settings.isEmpty() ? QVariant() : QVariant(record);
}

bool assignSetting(QJsonObject *configuration, const QString &assignment,
                   const QVariant &descriptor, QString *problem)
{
    const int separator = assignment.indexOf(u'=');
    if (separator <= 0) {
        *problem = message("qelfrontend-setting-form", printable(assignment));
        return false;
    }
    const QString key = assignment.left(separator).trimmed();
    const QVariantHash settings = settingsOf(descriptor);
    if (!settings.contains(key)) {
        *problem = unknownSetting(key, settings);
        return false;
    }
    const Kind kind = Setting(key, descriptor).form.kind;
    configuration->insert(key, fromText(assignment.mid(separator + 1).trimmed(), kind));
    return true;
}

QJsonObject writeConfiguration(const QVariant &record, const QVariant &descriptor)
{
    QJsonObject configuration;
    const QVariantHash hash = record.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it) {
        if (const auto json = writeSetting(it.value(), Setting(it.key(), descriptor)))
            configuration.insert(it.key(), *json);
    }
    return configuration;
}

QString describeSetting(const QString &key, const QVariant &descriptor)
{
    return settingsOf(descriptor).contains(key) ? describe(Setting(key, descriptor)) : QString();
}

} // namespace qel::frontend
