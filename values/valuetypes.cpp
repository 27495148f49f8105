#include "valuetypes.h"
#include "valuetypes_p.h"

#include <qeldevices/device.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QMetaEnum>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qel::values {

using namespace qel::devices;

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

namespace {

// Whole numbers below this are exact in every JSON reader, and no other number reads as one of
// them.
constexpr qint64 exactLimit = Q_INT64_C(1) << 53;

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
bool isExact(Integer value)
{
    return value < Integer(exactLimit)
        && (!std::is_signed_v<Integer> || value > -Integer(exactLimit));
}

template<typename Integer, IfInteger<Integer> = true>
Written write(Integer value)
{
    if constexpr (sizeof(Integer) == sizeof(qint64)) {
        if (!isExact(value))
            return QString::number(value);
    }
    return qint64(value);
}

template<typename Integer, IfInteger<Integer> = true>
bool read(const QJsonValue &json, Integer *value)
{
    if (json.isDouble()) {
        const double number = json.toDouble();
        if (number != std::trunc(number) || std::abs(number) >= double(exactLimit)
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
        // Only what is written is read: no sign, blank or zero too many, no number that is exact.
        return isNumber && !isExact(*value) && QString::number(*value) == text;
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

// The one enumeration whose names the meta-type system does not know.
const char *nameOf(Orientation_result::Side side)
{
    using Side = Orientation_result::Side;
    switch (side) {
    case Side::Top:
        return "Top";
    case Side::Bottom:
        return "Bottom";
    case Side::Unknown:
        return "Unknown";
    case Side::Front:
        return "Front";
    case Side::Back:
        return "Back";
    case Side::Left:
        return "Left";
    case Side::Right:
        return "Right";
    }
    return nullptr;
}

template<typename Enumeration>
const char *nameOf(Enumeration value)
{
    return QMetaEnum::fromType<Enumeration>().valueToKey(int(value));
}

template<typename Enumeration, IfEnumeration<Enumeration> = true>
Written write(Enumeration value)
{
    const char *name = nameOf(value);
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
        *value = static_cast<Enumeration>(number);
        const char *name = nameOf(*value);
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

template<typename T>
Type typeOf(Kind kind, bool isPlain = false)
{
    const auto writeValue = [](const QVariant &value) { return write(value.value<T>()); };
    const auto readValue = [](const QJsonValue &json) -> std::optional<QVariant> {
        T value{};
        return read(json, &value) ? std::make_optional(QVariant::fromValue(value)) : std::nullopt;
    };
    return {qMetaTypeId<T>(), kind, isPlain, writeValue, readValue};
}

} // namespace

const QVector<Type> &valueTypes()
{
    static const QVector<Type> types = {
        typeOf<bool>(Kind::Bool, true),
        typeOf<QString>(Kind::Text, true),
        typeOf<double>(Kind::Number),
        typeOf<float>(Kind::Number),
        typeOf<int>(Kind::Integer),
        typeOf<uint>(Kind::Integer),
        typeOf<uchar>(Kind::Integer),
        typeOf<qlonglong>(Kind::Integer),
        typeOf<qulonglong>(Kind::Integer),
        typeOf<std::chrono::milliseconds>(Kind::Milliseconds),
        typeOf<QStringList>(Kind::Texts),
        typeOf<QList<int>>(Kind::Integers),
        typeOf<QVector<bool>>(Kind::Wells),
        typeOf<QVector<double>>(Kind::Numbers),
        typeOf<QByteArray>(Kind::Bytes),
        typeOf<QDate>(Kind::Other),
        typeOf<QDateTime>(Kind::Other),
        typeOf<LedBarEffect_Effect>(Kind::Name),
        typeOf<SlotStatus>(Kind::Name),
        typeOf<Orientation_result::Side>(Kind::Name),
        typeOf<LedBarEffect_config::Color>(Kind::Color),
        typeOf<LedBarEffect_config::Modes>(Kind::Flags),
    };
    return types;
}

const Type *findType(int id)
{
    const auto &types = valueTypes();
    const auto found =
        std::find_if(types.begin(), types.end(), [id](const Type &type) { return type.id == id; });
    return found == types.end() ? nullptr : &*found;
}

const Type *findType(const QString &name)
{
    const auto &types = valueTypes();
    const auto found = std::find_if(types.begin(), types.end(), [&name](const Type &type) {
        return name == QLatin1String(QMetaType::typeName(type.id));
    });
    return found == types.end() ? nullptr : &*found;
}

Kind kindOf(int type)
{
    const Type *found = findType(type);
    return found ? found->kind : Kind::Other;
}

int typeNamed(const QString &name)
{
    const Type *found = findType(name);
    return found ? found->id : int(QMetaType::UnknownType);
}

} // namespace qel::values
