#ifndef QELCTL_LISTING_H
#define QELCTL_LISTING_H

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace qelctl {

/// Lines up `rows` in columns, the first row in capitals, harmless for a terminal. UTF-8, a line
/// break after each row. On a terminal that is too narrow, each row is a Sheet of its own.
QByteArray table(QList<QStringList> rows);

/// Lines of a name and a value, harmless for a terminal and folded for its width.
class Sheet
{
public:
    /// @param indent blanks before the name
    /// @param width of the column of names
    void add(int indent, int width, const QString &name, const QString &value);
    /// What has been added, in UTF-8.
    QByteArray data() const;

private:
    QString m_lines;
};

/// The top of every JSON document of the tool: what it is and the version of its shape.
QJsonObject document(const QString &kind);

/// `json` in a readable form with a line break at the end. A terminal only shows it: what it would
/// act on is written as JSON's escapes.
QByteArray indented(const QJsonObject &json);

/// As indented(), in one line.
QByteArray inOneLine(const QJsonObject &json);

/// A feature value as JSON; one that cannot be written stands as an object whose "problem" says
/// why.
QJsonValue valueOrProblem(const QVariant &value);

} // namespace qelctl

#endif
