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

/// Lines up `rows` in columns, the first row in capitals. UTF-8, a line break after each row.
QByteArray table(const QList<QStringList> &rows);

/// The top of every JSON document of the tool: what it is and the version of its shape.
QJsonObject document(const QString &kind);

/// `json` in a readable form with a line break at the end.
QByteArray printable(const QJsonObject &json);

/// A feature value as JSON; one that cannot be written stands as an object whose "problem" says
/// why.
QJsonValue valueOrProblem(const QVariant &value);

} // namespace qelctl

#endif
