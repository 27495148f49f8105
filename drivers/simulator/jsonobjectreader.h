#ifndef SIMULATOR_JSONOBJECTREADER_H
#define SIMULATOR_JSONOBJECTREADER_H

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <algorithm>
#include <optional>
#include <utility>

namespace qel::simulator {

/// The names that a document has for the values of an enumeration.
template<typename Value>
using Names = QVector<std::pair<QString, Value>>;

/// Takes the values out of a JSON object and collects a sentence for each one that is not as
/// expected. A value that is absent or wrong yields the default, so that reading goes on and every
/// mistake is found in one pass.
class JsonObjectReader
{
public:
    /// Reads `object`, which stands at `path` in its document ("" for the root). Mistakes are
    /// appended to `mistakes`, which must outlive the reader.
    JsonObjectReader(const QJsonObject &object, const QString &path, QStringList *mistakes);

    /// Whether the object has `key`.
    bool has(const QString &key) const;
    QString text(const QString &key, const QString &byDefault);
    bool boolean(const QString &key, bool byDefault);
    double number(const QString &key, double byDefault, double minimum, double maximum);
    qint64 integer(const QString &key, qint64 byDefault, qint64 minimum, qint64 maximum);
    /// The value whose name stands under `key`, which is required: in its absence the first one.
    template<typename Value>
    Value choice(const QString &key, const Names<Value> &choices)
    {
        return choices.at(std::max(0, indexOf(key, namesOf(choices), false))).second;
    }
    /// The value whose name stands under `key`.
    template<typename Value>
    Value choice(const QString &key, const Names<Value> &choices, const Value &byDefault)
    {
        const int index = indexOf(key, namesOf(choices), true);
        return index >= 0 ? choices.at(index).second : byDefault;
    }
    /// The objects of the array under `key`; elements that are no objects are mistakes and left
    /// out. The second of each pair is the element's path.
    QList<std::pair<QJsonObject, QString>> objects(const QString &key);
    /// The object under `key`.
    std::optional<std::pair<QJsonObject, QString>> object(const QString &key);
    /// Reads `key` as nothing but null; true if it is.
    bool isNull(const QString &key);

    /// Says that `key` holds something else than `expected`.
    void complain(const QString &key, const QString &expected);
    /// Says that `key`, if present, does not belong here.
    void refuse(const QString &key, const QString &reason);
    /// Says of every key that was never asked for that it is unknown. The last call on a reader.
    void finish();

private:
    template<typename Value>
    static QStringList namesOf(const Names<Value> &choices)
    {
        QStringList names;
        for (const auto &choice : choices)
            names.append(choice.first);
        return names;
    }
    // -1 where there is none.
    int indexOf(const QString &key, const QStringList &names, bool isOptional);
    QJsonValue take(const QString &key);
    QString pathOf(const QString &key) const;

    QJsonObject m_object;
    QString m_path;
    QStringList *m_mistakes;
    QStringList m_known;
};

/// A short description of a JSON value, for messages: its text, cut where it is long.
QString describe(const QJsonValue &value);

} // namespace qel::simulator

#endif
