#include "configuration.h"

#include "messages_p.h"
#include "problems.h"
#include "wells.h"

#include <qeldevices/device.h>
#include <qelvalues/settings.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>

#include <cmath>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

namespace {

// What a value of the kind is called.
const char *kindId(Kind kind)
{
    switch (kind) {
    case Kind::Bool:
        return "qelfrontend-kind-bool";
    case Kind::Integer:
        return "qelfrontend-kind-integer";
    case Kind::Number:
        return "qelfrontend-kind-number";
    case Kind::Milliseconds:
        return "qelfrontend-kind-milliseconds";
    case Kind::Text:
        return "qelfrontend-kind-text";
    case Kind::Integers:
        return "qelfrontend-kind-integers";
    case Kind::Numbers:
        return "qelfrontend-kind-numbers";
    case Kind::Texts:
        return "qelfrontend-kind-texts";
    case Kind::Bytes:
        return "qelfrontend-kind-bytes";
    case Kind::Wells:
        return "qelfrontend-kind-wells";
    case Kind::Flags:
        return "qelfrontend-kind-flags";
    case Kind::Color:
        return "qelfrontend-kind-color";
    case Kind::Name:
        return "qelfrontend-kind-name";
    case Kind::Other:
        break;
    }
    return "qelfrontend-kind-unsupported";
}

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// What stands in the descriptor for `name`; `name` itself when it is none of the names.
QJsonValue resolved(const QJsonValue &name, const Setting &setting)
{
    const int index = name.isString() ? setting.names.indexOf(name.toString()) : -1;
    return index >= 0 && index < setting.choices.size()
        ? QJsonValue::fromVariant(setting.choices[index])
        : name;
}

// What to call `choice`; `choice` itself where it has no name.
QVariant choiceOrName(const QVariant &choice, const Setting &setting)
{
    const int index = setting.choices.indexOf(choice);
    return index >= 0 && index < setting.names.size() ? QVariant(setting.names[index]) : choice;
}

QString describe(const Setting &setting)
{
    QString text = message(kindId(setting.kind));
    if (setting.minimum && setting.maximum)
        text += message("qelfrontend-limit-range", numberText(*setting.minimum),
                        numberText(*setting.maximum));
    else if (setting.minimum)
        text += message("qelfrontend-limit-minimum", numberText(*setting.minimum));
    else if (setting.maximum)
        text += message("qelfrontend-limit-maximum", numberText(*setting.maximum));
    if (!setting.unit.isEmpty() && setting.kind != Kind::Milliseconds)
        text += u' ' + setting.unit;
    if (setting.step && *setting.step != 1)
        text += message("qelfrontend-limit-step", numberText(*setting.step));
    if (!setting.choices.isEmpty()) {
        QStringList offered;
        for (const QVariant &choice : setting.choices)
            offered += choiceOrName(choice, setting).toString();
        text += message("qelfrontend-limit-choices", offered.join(QStringLiteral(", ")));
    }
    if (setting.length > 0)
        text += message("qelfrontend-limit-length", QString::number(setting.length));
    return text;
}

// The plate that wells are named on.
struct PlateSize
{
    explicit PlateSize(const QVariant &descriptor)
        : rows(sizeIn(descriptor, QStringLiteral("rows")))
        , columns(sizeIn(descriptor, QStringLiteral("columns")))
    { }

    static int sizeIn(const QVariant &descriptor, const QString &key)
    {
        return qBound(0, descriptor.toHash().value(key).toInt(), 1000);
    }

    int rows;
    int columns;
};

// Reads the value of one setting. Everything that is wrong is named in `problems`.
class SettingReader
{
public:
    SettingReader(const Setting &setting, PlateSize plate, QStringList *problems)
        : m_setting(setting)
        , m_plate(plate)
        , m_problems(problems)
    { }

    std::optional<QVariant> read(const QJsonValue &given)
    {
        const QString text = given.toString();
        if (m_setting.kind == Kind::Bytes && text.startsWith(u'@'))
            return readFile(text.mid(1));
        if (m_setting.kind == Kind::Wells && given.isString())
            return checkLength(readWellNames(text));
        if (given.isArray())
            return readArray(given.toArray(), given);
        const auto value = contentFromJson(resolved(given, m_setting), m_setting.type);
        return value && !checkSetting(m_setting, *value) ? value : wrong(given);
    }

private:
    std::nullopt_t complain(Problem::Code code, const QStringList &details)
    {
        m_problems->append(explain({code, m_setting.key, details}));
        return std::nullopt;
    }

    std::nullopt_t wrong(const QJsonValue &given)
    {
        const QString text =
            given.isString() ? given.toString() : QString::fromUtf8(jsonText(given));
        const bool isWhole =
            m_setting.kind == Kind::Integer || m_setting.kind == Kind::Milliseconds;
        if (isWhole && std::abs(given.toDouble()) >= exactLimit
            && std::abs(given.toDouble()) < 1e20)
            return complain(Problem::SettingDigits, {});
        return complain(Problem::SettingNotAllowed, {excerpt(text), describe(m_setting)});
    }

    // The codec knows how each type is written; here only what people may write instead is added.
    std::optional<QVariant> readArray(const QJsonArray &entries, const QJsonValue &given)
    {
        Setting single = m_setting;
        single.length = 0;
        const bool isFlags = m_setting.kind == Kind::Flags;
        QJsonArray elements;
        int bits = 0;
        for (const auto &entry : entries) {
            const QJsonValue element = resolved(entry, m_setting);
            const auto value = contentFromJson(isFlags ? element : QJsonValue(QJsonArray{element}),
                                               m_setting.type);
            if (!value || checkSetting(single, *value))
                return wrong(entry);
            elements.append(element);
            bits |= element.toInt();
        }
        const auto value =
            contentFromJson(isFlags ? QJsonValue(bits) : QJsonValue(elements), m_setting.type);
        return value ? checkLength(value) : wrong(given);
    }

    std::optional<QVariant> readWellNames(const QString &text)
    {
        if (text.isEmpty())
            return complain(Problem::SettingEmpty, {});
        QString problem;
        const auto wells = readWells(text, m_plate.rows, m_plate.columns, &problem);
        if (wells)
            return QVariant::fromValue(*wells);
        m_problems->append(message("qelfrontend-setting-wells", m_setting.key, problem));
        return {};
    }

    std::optional<QVariant> checkLength(const std::optional<QVariant> &value)
    {
        const auto problem = value ? checkSetting(m_setting, *value) : std::nullopt;
        return problem ? complain(problem->code, problem->details) : value;
    }

    std::optional<QVariant> readFile(const QString &name)
    {
        QFile file(name);
        QString reason;
        // Opening a pipe waits for a writer, and a device such as /dev/zero has no end.
        if (QFileInfo::exists(name) && !QFileInfo(name).isFile()) {
            reason = message("qelfrontend-file-kind");
        } else if (!file.open(QIODevice::ReadOnly)) {
            reason = file.errorString();
        } else {
            const QByteArray bytes = file.read(maximumJsonSize + 1);
            if (bytes.size() <= maximumJsonSize && file.error() == QFile::NoError)
                return QVariant(bytes);
            reason = file.error() == QFile::NoError
                ? message("qelfrontend-file-size", QString::number(maximumJsonSize))
                : file.errorString();
        }
        m_problems->append(
            message("qelfrontend-setting-file", m_setting.key, excerpt(name), reason));
        return {};
    }

    // From here on a number in JSON may stand for several whole numbers.
    static constexpr double exactLimit = 9007199254740992;

    const Setting &m_setting;
    const PlateSize m_plate;
    QStringList *m_problems;
};

Problem unknownSetting(const QString &key, const QVector<Setting> &settings)
{
    QStringList keys;
    for (const Setting &setting : settings)
        keys += setting.key;
    if (keys.isEmpty())
        return {Problem::SettingNone, key, {}};
    return {Problem::SettingUnknown, key, {keys.join(QStringLiteral(", "))}};
}

// A number as JSON holds it without loss: its digits where it is long.
QJsonValue numberOrText(const QString &text)
{
    bool isNumber = false;
    const qlonglong whole = text.toLongLong(&isNumber);
    if (isNumber)
        return *contentToJson(whole);
    const qulonglong large = text.toULongLong(&isNumber);
    if (isNumber)
        return *contentToJson(large);
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? QJsonValue(number) : QJsonValue(text);
}

// Nothing where a part is empty: an unset variable must not mean "all".
std::optional<QJsonValue> listFromText(const QString &text, Kind kind)
{
    if (text.startsWith(u'[')) {
        Problem unused;
        return parseJson(text.toUtf8(), &unused).value_or(text);
    }
    QJsonArray elements;
    const auto parts = text.split(u',');
    for (const QString &part : parts) {
        const QString element = part.trimmed();
        if (element.isEmpty())
            return {};
        elements.append(kind == Kind::Texts ? QJsonValue(element) : numberOrText(element));
    }
    return elements;
}

// A text from KEY=VALUE as the JSON value that it stands for. What does not read as one stays a
// text: it may be a name, and what it may be is judged later.
std::optional<QJsonValue> fromText(const QString &text, Kind kind)
{
    switch (kind) {
    case Kind::Bool:
        if (text == QLatin1String("true") || text == QLatin1String("false"))
            return text == QLatin1String("true");
        return text;
    case Kind::Integer:
    case Kind::Number:
    case Kind::Milliseconds:
    case Kind::Name:
        return numberOrText(text);
    case Kind::Integers:
    case Kind::Numbers:
    case Kind::Texts:
    case Kind::Flags:
        return listFromText(text, kind);
    case Kind::Wells:
        return text.startsWith(u'[') ? listFromText(text, kind) : text;
    case Kind::Text:
    case Kind::Bytes:
    case Kind::Color:
    case Kind::Other:
        break;
    }
    return text;
}

QJsonValue writeFlags(int bits, const Setting &setting)
{
    QJsonArray flags;
    for (int bit = 1; bit <= 128; bit <<= 1) {
        if (bits & bit)
            flags.append(QJsonValue::fromVariant(choiceOrName(bit, setting)));
    }
    return flags;
}

std::optional<QJsonValue> writeSetting(const QVariant &value, const Setting &setting,
                                       PlateSize plate)
{
    const Kind kind = kindOf(value.userType());
    if (kind == Kind::Flags)
        return writeFlags(int(value.value<LedBarEffect_config::Modes>()), setting);
    const auto wells = value.value<QVector<bool>>();
    if (kind == Kind::Wells && wells.contains(true) && wells.size() == plate.rows * plate.columns)
        return QJsonValue(writeWells(wells, plate.columns));
    return contentToJson(value);
}

} // namespace

std::optional<QVariant> readConfiguration(const QJsonObject &configuration,
                                          const QVariant &descriptor, QStringList *problems)
{
    const auto settings = settingsOf(descriptor);
    const int problemsBefore = problems->size();
    const auto keys = configuration.keys();
    for (const QString &key : keys) {
        if (!findSetting(key, descriptor))
            problems->append(explain(unknownSetting(key, settings)));
    }
    QVariantHash record;
    for (const Setting &setting : settings) {
        if (configuration.contains(setting.key)) {
            SettingReader reader(setting, PlateSize(descriptor), problems);
            if (const auto value = reader.read(configuration.value(setting.key)))
                record.insert(setting.key, *value);
        } else if (!setting.fallback.isValid()) {
            problems->append(explain({Problem::SettingMissing, setting.key, {describe(setting)}}));
        } else {
            record.insert(setting.key, setting.fallback);
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
        *problem = message("qelfrontend-setting-form", excerpt(assignment));
        return false;
    }
    const QString key = assignment.left(separator).trimmed();
    const auto setting = findSetting(key, descriptor);
    if (!setting) {
        *problem = explain(unknownSetting(key, settingsOf(descriptor)));
        return false;
    }
    const auto value = fromText(assignment.mid(separator + 1).trimmed(), setting->kind);
    if (!value || (setting->kind == Kind::Wells && *value == QJsonValue(QString()))) {
        *problem = explain({Problem::SettingEmpty, key, {}});
        return false;
    }
    configuration->insert(key, *value);
    return true;
}

QJsonObject writeConfiguration(const QVariant &record, const QVariant &descriptor)
{
    QJsonObject configuration;
    const QVariantHash hash = record.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it) {
        const Setting setting = findSetting(it.key(), descriptor).value_or(Setting());
        if (const auto json = writeSetting(it.value(), setting, PlateSize(descriptor)))
            configuration.insert(it.key(), *json);
    }
    return configuration;
}

QString describeSetting(const QString &key, const QVariant &descriptor)
{
    const auto setting = findSetting(key, descriptor);
    return setting ? describe(*setting) : QString();
}

} // namespace qel::frontend
