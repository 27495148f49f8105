#include "valuecodec.h"

#include <qeldevices/device.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qel::values {

using namespace qel::devices;

namespace {

const QString typeKey = QStringLiteral("$type");
const QString valueKey = QStringLiteral("value");

// Whole numbers up to here are exact in every JSON reader.
constexpr qint64 exactLimit = Q_INT64_C(1) << 53;

bool isUnicode(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (!text[i].isHighSurrogate() || i + 1 == text.size() || !text[i + 1].isLowSurrogate())
            return false;
        ++i;
    }
    return true;
}

// How each type is written and read. There is nothing, or false, where JSON would not hold the
// value without loss or does not hold one of the type.
using Written = std::optional<QJsonValue>;

template<typename T>
using IfFloating = std::enable_if_t<std::is_floating_point_v<T>, bool>;
template<typename T>
using IfInteger = std::enable_if_t<std::is_integral_v<T>, bool>;
template<typename T>
using IfEnumeration = std::enable_if_t<std::is_enum_v<T>, bool>;

template<typename Floating, IfFloating<Floating> = true>
Written write(Floating value)
{
    if (std::isnan(value))
        return QJsonValue(QJsonValue::Null);
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    if (value == 0 && std::signbit(value))
        return QStringLiteral("-0");
    return double(value);
}

template<typename Floating, IfFloating<Floating> = true>
bool read(const QJsonValue &json, Floating *value)
{
    constexpr auto infinity = std::numeric_limits<Floating>::infinity();
    const QString text = json.toString();
    if (json.isDouble())
        *value = Floating(json.toDouble());
    else if (json.isNull())
        *value = std::numeric_limits<Floating>::quiet_NaN();
    else if (text == QLatin1String("inf"))
        *value = infinity;
    else if (text == QLatin1String("-inf"))
        *value = -infinity;
    else if (text == QLatin1String("-0"))
        *value = -Floating(0);
    else
        return false;
    // A number beyond the type's range is not one of its values.
    return !json.isDouble() || std::isfinite(*value);
}

template<typename Integer, IfInteger<Integer> = true>
Written write(Integer value)
{
    if constexpr (sizeof(Integer) == sizeof(qint64)) {
        if (value > Integer(exactLimit)
            || (std::is_signed_v<Integer> && value < -Integer(exactLimit)))
            return QString::number(value);
    }
    return qint64(value);
}

template<typename Integer, IfInteger<Integer> = true>
bool read(const QJsonValue &json, Integer *value)
{
    if (json.isDouble()) {
        const double number = json.toDouble();
        if (number != std::trunc(number) || std::abs(number) > double(exactLimit)
            || number < double(std::numeric_limits<Integer>::min())
            || number > double(std::numeric_limits<Integer>::max()))
            return false;
        *value = Integer(number);
        return true;
    }
    if constexpr (sizeof(Integer) == sizeof(qint64)) {
        const QString text = json.toString();
        bool isNumber = false;
        if constexpr (std::is_signed_v<Integer>)
            *value = text.toLongLong(&isNumber);
        else
            *value = text.toULongLong(&isNumber);
        // Only what is written is read: no sign, blank or zero too many.
        return isNumber && QString::number(*value) == text;
    }
    return false;
}

Written write(bool value)
{
    return value;
}

bool read(const QJsonValue &json, bool *value)
{
    *value = json.toBool();
    return json.isBool();
}

Written write(const QString &value)
{
    return isUnicode(value) ? Written(value) : std::nullopt;
}

bool read(const QJsonValue &json, QString *value)
{
    *value = json.toString();
    return json.isString() && isUnicode(*value);
}

template<typename List, typename Element = typename List::value_type>
Written write(const List &list)
{
    QJsonArray array;
    for (const Element &element : list) {
        const Written written = write(element);
        if (!written)
            return {};
        array.append(*written);
    }
    return array;
}

template<typename List, typename Element = typename List::value_type>
bool read(const QJsonValue &json, List *list)
{
    const QJsonArray array = json.toArray();
    list->reserve(array.size());
    for (const auto &entry : array) {
        Element element{};
        if (!read(entry, &element))
            return false;
        list->append(element);
    }
    return json.isArray();
}

template<typename Enumeration>
const char *enumeratorName(int value)
{
    if constexpr (std::is_same_v<Enumeration, Orientation_result::Side>) {
        // The one enumeration whose names the meta-type system does not know.
        constexpr const char *names[] = {"Top",  "Bottom", "Unknown", "Front",
                                         "Back", "Left",   "Right"};
        return value >= 0 && value < int(std::size(names)) ? names[value] : nullptr;
    } else {
        return QMetaEnum::fromType<Enumeration>().valueToKey(value);
    }
}

template<typename Enumeration, IfEnumeration<Enumeration> = true>
Written write(Enumeration value)
{
    const char *name = enumeratorName<Enumeration>(int(value));
    return name ? QJsonValue(QLatin1String(name)) : QJsonValue(int(value));
}

template<typename Enumeration, IfEnumeration<Enumeration> = true>
bool read(const QJsonValue &json, Enumeration *value)
{
    std::underlying_type_t<Enumeration> number = 0;
    if (!json.isString()) {
        const bool isNumber = read(json, &number);
        *value = static_cast<Enumeration>(number);
        return isNumber;
    }
    // By the names themselves: the meta-object would take "SlotStatus::Empty" and the like, too.
    constexpr int behindLast = 16;
    for (; number < behindLast; ++number) {
        const char *name = enumeratorName<Enumeration>(number);
        *value = static_cast<Enumeration>(number);
        if (name && json.toString() == QLatin1String(name))
            return true;
    }
    return false;
}

Written write(std::chrono::milliseconds value)
{
    return write(qint64(value.count()));
}

bool read(const QJsonValue &json, std::chrono::milliseconds *value)
{
    qint64 count = 0;
    const bool isNumber = read(json, &count);
    *value = std::chrono::milliseconds(count);
    return isNumber;
}

Written write(const QByteArray &value)
{
    return QString::fromLatin1(value.toBase64());
}

bool read(const QJsonValue &json, QByteArray *value)
{
    const auto decoded = QByteArray::fromBase64Encoding(json.toString().toUtf8(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    *value = decoded.decoded;
    return json.isString() && decoded;
}

Written write(LedBarEffect_config::Color value)
{
    const char channels[] = {char(value.red), char(value.green), char(value.blue)};
    return QString(u'#' + QLatin1String(QByteArray(channels, 3).toHex()));
}

bool read(const QJsonValue &json, LedBarEffect_config::Color *value)
{
    const QByteArray text = json.toString().toLatin1();
    const QByteArray channels = QByteArray::fromHex(text.mid(1));
    if (text.size() != 7 || text[0] != '#' || channels.toHex() != text.mid(1).toLower())
        return false;
    *value = {uchar(channels[0]), uchar(channels[1]), uchar(channels[2])};
    return true;
}

Written write(LedBarEffect_config::Modes value)
{
    return write(LedBarEffect_config::Modes::Int(value));
}

bool read(const QJsonValue &json, LedBarEffect_config::Modes *value)
{
    LedBarEffect_config::Modes::Int bits = 0;
    const bool isNumber = read(json, &bits);
    *value = LedBarEffect_config::Modes(QFlag(bits));
    return isNumber;
}

bool read(const QJsonValue &json, QDate *value)
{
    *value = QDate::fromString(json.toString(), Qt::ISODate);
    return json.isNull() || value->isValid();
}

bool read(const QJsonValue &json, QDateTime *value)
{
    *value = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
    return json.isNull() || value->isValid();
}

// A date that Qt's ISO 8601 does not carry (beyond the year 9999, in a named zone, with seconds in
// the offset) must not come back as another.
Written write(QDate value)
{
    if (!value.isValid())
        return QJsonValue(QJsonValue::Null);
    const QJsonValue json = value.toString(Qt::ISODate);
    QDate again;
    return read(json, &again) && again == value ? Written(json) : std::nullopt;
}

Written write(const QDateTime &value)
{
    if (!value.isValid())
        return QJsonValue(QJsonValue::Null);
    const QJsonValue json = value.toString(Qt::ISODateWithMs);
    QDateTime again;
    return read(json, &again) && again == value && again.timeSpec() == value.timeSpec()
            && again.offsetFromUtc() == value.offsetFromUtc()
        ? Written(json)
        : std::nullopt;
}

struct Type
{
    int id;
    Written (*write)(const QVariant &value);
    std::optional<QVariant> (*read)(const QJsonValue &json);
};

template<typename T>
Type typeOf()
{
    const auto writeValue = [](const QVariant &value) { return write(value.value<T>()); };
    const auto readValue = [](const QJsonValue &json) -> std::optional<QVariant> {
        T value{};
        return read(json, &value) ? std::make_optional(QVariant::fromValue(value)) : std::nullopt;
    };
    return {qMetaTypeId<T>(), writeValue, readValue};
}

// The types that are written as "$type" and "value", except the containers of any values.
const QVector<Type> &taggedTypes()
{
    static const QVector<Type> types = {
        typeOf<double>(),
        typeOf<float>(),
        typeOf<int>(),
        typeOf<uint>(),
        typeOf<uchar>(),
        typeOf<qlonglong>(),
        typeOf<qulonglong>(),
        typeOf<std::chrono::milliseconds>(),
        typeOf<QStringList>(),
        typeOf<QList<int>>(),
        typeOf<QVector<bool>>(),
        typeOf<QVector<double>>(),
        typeOf<QByteArray>(),
        typeOf<QDate>(),
        typeOf<QDateTime>(),
        typeOf<LedBarEffect_Effect>(),
        typeOf<SlotStatus>(),
        typeOf<Orientation_result::Side>(),
        typeOf<LedBarEffect_config::Color>(),
        typeOf<LedBarEffect_config::Modes>(),
    };
    return types;
}

const Type *findType(int id)
{
    const auto &types = taggedTypes();
    const auto found =
        std::find_if(types.begin(), types.end(), [id](const Type &type) { return type.id == id; });
    return found == types.end() ? nullptr : &*found;
}

QJsonObject tagged(int type, const QJsonValue &value)
{
    return {{typeKey, QString::fromLatin1(QMetaType::typeName(type))}, {valueKey, value}};
}

// What writing and reading share: the limits, and the place of a failure, which is put together on
// the way out so that it costs nothing where nothing fails.
class Walk
{
public:
    Problem problem() const
    {
        return {m_code, u'$' + m_path, m_details};
    }

protected:
    std::nullopt_t fail(Problem::Code code, const QStringList &details = {})
    {
        m_code = code;
        m_details = details;
        return std::nullopt;
    }

    std::nullopt_t failedAt(const QString &key)
    {
        m_path.prepend(u'.' + key);
        return std::nullopt;
    }

    std::nullopt_t failedAt(int index)
    {
        m_path.prepend(QStringLiteral("[%1]").arg(index));
        return std::nullopt;
    }

    bool mayEnter(int depth, int count)
    {
        if (depth > maximumValueDepth) {
            fail(Problem::ValueDepth, {QString::number(maximumValueDepth)});
            return false;
        }
        m_left -= count;
        if (m_left < 0) {
            fail(Problem::ValueCount, {QString::number(maximumValueCount)});
            return false;
        }
        return true;
    }

private:
    int m_left = maximumValueCount;
    Problem::Code m_code = Problem::ValueContent;
    QString m_path;
    QStringList m_details;
};

class Writer : public Walk
{
public:
    std::optional<QJsonValue> write(const QVariant &value, int depth = 0)
    {
        if (!mayEnter(depth, 1))
            return {};
        switch (value.userType()) {
        case QMetaType::UnknownType:
            return QJsonValue(QJsonValue::Null);
        case QMetaType::Bool:
            return value.toBool();
        case QMetaType::QString:
            if (!isUnicode(value.toString()))
                return fail(Problem::ValueUnicode);
            return value.toString();
        case QMetaType::QVariantList:
            return writeList(value.toList(), depth);
        case QMetaType::QVariantHash: {
            const auto hash = value.toHash();
            const auto object = writeObject(hash, depth);
            if (object && hash.contains(typeKey))
                return tagged(QMetaType::QVariantHash, *object);
            return object;
        }
        case QMetaType::QVariantMap: {
            const auto object = writeObject(value.toMap(), depth);
            return object ? std::make_optional<QJsonValue>(tagged(QMetaType::QVariantMap, *object))
                          : std::nullopt;
        }
        default:
            return writeTagged(value, depth);
        }
    }

private:
    std::optional<QJsonValue> writeTagged(const QVariant &value, int depth)
    {
        const Type *type = findType(value.userType());
        if (!type)
            return fail(Problem::ValueType, {QString::fromLatin1(value.typeName())});
        const auto json = type->write(value);
        if (!json)
            return fail(Problem::ValueUnwritable, {QString::fromLatin1(value.typeName())});
        if (json->isArray() && !mayEnter(depth, json->toArray().size()))
            return {};
        if (type->id == QMetaType::Double && json->isDouble())
            return json;
        return tagged(type->id, *json);
    }

    std::optional<QJsonValue> writeList(const QVariantList &list, int depth)
    {
        QJsonArray array;
        for (int i = 0; i < list.size(); ++i) {
            const auto entry = write(list[i], depth + 1);
            if (!entry)
                return failedAt(i);
            array.append(*entry);
        }
        return array;
    }

    template<typename Map>
    std::optional<QJsonValue> writeObject(const Map &map, int depth)
    {
        // In the order in which the object keeps its keys: inserting at the end is cheap.
        auto keys = map.keys();
        std::sort(keys.begin(), keys.end());
        QJsonObject object;
        for (const QString &key : std::as_const(keys)) {
            if (!isUnicode(key))
                return fail(Problem::ValueUnicode);
            const auto entry = write(map.value(key), depth + 1);
            if (!entry)
                return failedAt(key);
            object.insert(key, *entry);
        }
        return object;
    }
};

class Reader : public Walk
{
public:
    std::optional<QVariant> read(const QJsonValue &json, int depth = 0)
    {
        if (!mayEnter(depth, 1))
            return {};
        switch (json.type()) {
        case QJsonValue::Bool:
            return json.toBool();
        case QJsonValue::Double:
            return json.toDouble();
        case QJsonValue::String:
            if (!isUnicode(json.toString()))
                return fail(Problem::ValueUnicode);
            return json.toString();
        case QJsonValue::Array:
            return readList(json.toArray(), depth);
        case QJsonValue::Object: {
            const QJsonObject object = json.toObject();
            return object.contains(typeKey) ? readTagged(object, depth)
                                            : readObject<QVariantHash>(object, depth);
        }
        case QJsonValue::Null:
        case QJsonValue::Undefined:
            break;
        }
        return QVariant();
    }

private:
    std::optional<QVariant> readTagged(const QJsonObject &object, int depth)
    {
        const QJsonValue name = object.value(typeKey);
        const QJsonValue value = object.value(valueKey);
        if (object.size() != 2 || !name.isString() || value.isUndefined())
            return fail(Problem::ValueTag);
        if (value.isObject() && name.toString() == QLatin1String("QVariantHash"))
            return readObject<QVariantHash>(value.toObject(), depth);
        if (value.isObject() && name.toString() == QLatin1String("QVariantMap"))
            return readObject<QVariantMap>(value.toObject(), depth);
        // Looked up in the table only: a text from outside never picks a type of the process.
        for (const Type &type : taggedTypes()) {
            if (name.toString() != QLatin1String(QMetaType::typeName(type.id)))
                continue;
            if (value.isArray() && !mayEnter(depth, value.toArray().size()))
                return {};
            auto result = type.read(value);
            return result ? result : fail(Problem::ValueContent, {name.toString()});
        }
        return fail(Problem::ValueType, {name.toString()});
    }

    std::optional<QVariant> readList(const QJsonArray &array, int depth)
    {
        QVariantList list;
        for (int i = 0; i < array.size(); ++i) {
            auto entry = read(array[i], depth + 1);
            if (!entry)
                return failedAt(i);
            list.append(*std::move(entry));
        }
        // Not QVariant(list) by braces or brackets: that would nest it.
        return QVariant(std::move(list));
    }

    template<typename Map>
    std::optional<QVariant> readObject(const QJsonObject &object, int depth)
    {
        Map map;
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (!isUnicode(it.key()))
                return fail(Problem::ValueUnicode);
            auto entry = read(it.value(), depth + 1);
            if (!entry)
                return failedAt(it.key());
            map.insert(it.key(), *std::move(entry));
        }
        return QVariant(std::move(map));
    }
};

} // namespace

std::optional<QJsonValue> toJson(const QVariant &value, Problem *problem)
{
    Writer writer;
    auto json = writer.write(value);
    if (!json)
        *problem = writer.problem();
    return json;
}

std::optional<QVariant> fromJson(const QJsonValue &json, Problem *problem)
{
    Reader reader;
    auto value = reader.read(json);
    if (!value)
        *problem = reader.problem();
    return value;
}

std::optional<QJsonValue> parseJson(const QByteArray &text, Problem *problem)
{
    if (text.size() > maximumJsonSize) {
        *problem = {Problem::JsonSize,
                    {},
                    {QString::number(text.size()), QString::number(maximumJsonSize)}};
        return {};
    }
    // A document holds only an object or an array, so the value goes into one.
    QJsonParseError error{};
    const QJsonArray array = QJsonDocument::fromJson('[' + text + ']', &error).array();
    if (error.error != QJsonParseError::NoError) {
        *problem = {
            Problem::JsonSyntax,
            {},
            {error.errorString(), QString::number(qBound(0, error.offset - 1, text.size()))}};
        return {};
    }
    if (array.size() != 1) {
        *problem = {Problem::JsonSingle, {}, {}};
        return {};
    }
    return QJsonValue(array.first());
}

QByteArray jsonText(const QJsonValue &json)
{
    const QByteArray text = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

} // namespace qel::values
