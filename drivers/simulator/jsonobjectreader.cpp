#include "jsonobjectreader.h"

#include <QtCore/QJsonDocument>

#include <cmath>

namespace qel::simulator {

QString describe(const QJsonValue &value)
{
    if (value.isUndefined())
        return QStringLiteral("nothing");
    // A document holds arrays and objects only, so the value borrows an array's brackets.
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    text = text.mid(1, text.size() - 2);
    const QString readable = QString::fromUtf8(text);
    return readable.size() <= 60 ? readable : readable.left(57) + QStringLiteral("...");
}

JsonObjectReader::JsonObjectReader(const QJsonObject &object, const QString &path,
                                   QStringList *mistakes)
    : m_object(object)
    , m_path(path)
    , m_mistakes(mistakes)
{ }

bool JsonObjectReader::has(const QString &key) const
{
    return m_object.contains(key);
}

QString JsonObjectReader::pathOf(const QString &key) const
{
    return m_path.isEmpty() ? key : m_path + QLatin1Char('.') + key;
}

QJsonValue JsonObjectReader::take(const QString &key)
{
    m_known.append(key);
    return m_object.value(key);
}

void JsonObjectReader::complain(const QString &key, const QString &expected)
{
    m_mistakes->append(QStringLiteral("%1: expected %2, found %3")
                           .arg(pathOf(key), expected, describe(m_object.value(key))));
}

void JsonObjectReader::refuse(const QString &key, const QString &reason)
{
    if (!take(key).isUndefined())
        complain(key, QStringLiteral("nothing (%1)").arg(reason));
}

QString JsonObjectReader::text(const QString &key, const QString &byDefault)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return byDefault;
    if (!value.isString() || value.toString().isEmpty())
        complain(key, QStringLiteral("a text that is not empty"));
    return value.toString(byDefault);
}

bool JsonObjectReader::boolean(const QString &key, bool byDefault)
{
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isBool())
        complain(key, QStringLiteral("true or false"));
    return value.toBool(byDefault);
}

double JsonObjectReader::number(const QString &key, double byDefault, double minimum,
                                double maximum)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return byDefault;
    const double number = value.toDouble(NAN);
    if (number >= minimum && number <= maximum)
        return number;
    complain(
        key,
        QStringLiteral("a number from %1 to %2").arg(minimum, 0, 'g', 15).arg(maximum, 0, 'g', 15));
    return byDefault;
}

qint64 JsonObjectReader::integer(const QString &key, qint64 byDefault, qint64 minimum,
                                 qint64 maximum)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return byDefault;
    const double number = value.toDouble(NAN);
    if (number >= double(minimum) && number <= double(maximum) && number == std::floor(number))
        return qint64(number);
    complain(key, QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum));
    return byDefault;
}

int JsonObjectReader::indexOf(const QString &key, const QStringList &names, bool isOptional)
{
    const QJsonValue value = take(key);
    const int index = value.isString() ? names.indexOf(value.toString()) : -1;
    if (index < 0 && !(isOptional && value.isUndefined()))
        complain(key, QStringLiteral("one of %1").arg(names.join(QStringLiteral(", "))));
    return index;
}

QList<std::pair<QJsonObject, QString>> JsonObjectReader::objects(const QString &key)
{
    QList<std::pair<QJsonObject, QString>> found;
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isArray())
        complain(key, QStringLiteral("an array of objects"));
    const QJsonArray array = value.toArray();
    for (int i = 0; i < array.size(); ++i) {
        const QString path = QStringLiteral("%1[%2]").arg(pathOf(key)).arg(i);
        if (array.at(i).isObject())
            found.append({array.at(i).toObject(), path});
        else
            m_mistakes->append(QStringLiteral("%1: expected an object, found %2")
                                   .arg(path, describe(array.at(i))));
    }
    return found;
}

std::optional<std::pair<QJsonObject, QString>> JsonObjectReader::object(const QString &key)
{
    const QJsonValue value = take(key);
    if (value.isObject())
        return std::pair(value.toObject(), pathOf(key));
    if (!value.isUndefined())
        complain(key, QStringLiteral("an object"));
    return std::nullopt;
}

bool JsonObjectReader::isNull(const QString &key)
{
    return take(key).isNull();
}

void JsonObjectReader::finish()
{
    const QStringList keys = m_object.keys();
    for (const QString &key : keys) {
        if (!m_known.contains(key))
            complain(key,
                     QStringLiteral("one of the keys %1").arg(m_known.join(QStringLiteral(", "))));
    }
}

} // namespace qel::simulator
