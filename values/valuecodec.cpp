#include "valuecodec.h"

#include "valuetypes_p.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>
#include <cstring>

namespace qel::values {

namespace {

const QString typeKey = QStringLiteral("$type");
const QString valueKey = QStringLiteral("value");

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
        const Type *type = findType(name.toString());
        if (!type || type->isPlain)
            return fail(Problem::ValueType, {name.toString()});
        if (value.isArray() && !mayEnter(depth, value.toArray().size()))
            return {};
        auto result = type->read(value);
        return result ? result : fail(Problem::ValueContent, {name.toString()});
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

// Finds a key that an object names twice: Qt's parser takes the last without a word. Walks over a
// text that is known to be JSON.
class KeyScanner
{
public:
    struct Key
    {
        QString path; ///< of the object
        QString name;
    };

    explicit KeyScanner(const QByteArray &text)
        : m_text(text)
    { }

    std::optional<Key> findDuplicate()
    {
        for (m_position = 0; m_position < m_text.size(); ++m_position) {
            switch (m_text[m_position]) {
            case '{':
            case '[':
                m_levels.append({m_text[m_position] == '{', 0, {}, {}});
                break;
            case '}':
            case ']':
                m_levels.removeLast();
                break;
            case ',':
                ++m_levels.last().index;
                break;
            case '"':
                const QString string = takeString();
                if (!isKey())
                    break;
                if (m_levels.last().names.contains(string))
                    return Key{path(), string};
                m_levels.last().names.insert(string);
                m_levels.last().name = string;
            }
        }
        return {};
    }

private:
    struct Level
    {
        bool isObject;
        int index;
        QString name;
        QSet<QString> names;
    };

    // Leaves the position at the closing quotation mark.
    QString takeString()
    {
        const int start = m_position++;
        bool isEscaped = false;
        for (; m_text[m_position] != '"'; ++m_position) {
            if (m_text[m_position] == '\\') {
                isEscaped = true;
                ++m_position;
            }
        }
        const QByteArray string = m_text.mid(start, m_position - start + 1);
        return isEscaped ? QJsonDocument::fromJson('[' + string + ']').array()[0].toString()
                         : QString::fromUtf8(string.mid(1, string.size() - 2));
    }

    // Whether the string that ends here names an entry: a colon follows it.
    bool isKey() const
    {
        int next = m_position + 1;
        while (next < m_text.size() && std::strchr(" \t\r\n", m_text[next]))
            ++next;
        return next < m_text.size() && m_text[next] == ':';
    }

    QString path() const
    {
        QString path;
        for (int i = 0; i + 1 < m_levels.size(); ++i) {
            const Level &level = m_levels[i];
            path += level.isObject ? u'.' + level.name : QStringLiteral("[%1]").arg(level.index);
        }
        return path;
    }

    const QByteArray &m_text;
    int m_position = 0;
    QVector<Level> m_levels;
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

std::optional<QJsonValue> contentToJson(const QVariant &value)
{
    const Type *type = findType(value.userType());
    return type ? type->write(value) : std::nullopt;
}

std::optional<QVariant> contentFromJson(const QJsonValue &json, int type)
{
    const Type *found = findType(type);
    return found ? found->read(json) : std::nullopt;
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
    if (const auto key = KeyScanner(text).findDuplicate()) {
        *problem = {Problem::JsonDuplicateKey, u'$' + key->path, {key->name}};
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
