#include "listing.h"

#include <qelfrontend/problems.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonDocument>

#include <algorithm>

namespace qelctl {

QByteArray table(const QList<QStringList> &rows)
{
    QList<int> widths;
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column) {
            if (column == widths.size())
                widths.append(0);
            widths[column] = std::max(widths.at(column), row.at(column).size());
        }
    }
    QString lines;
    for (int i = 0; i < rows.size(); ++i) {
        QString line;
        for (int column = 0; column < rows.at(i).size(); ++column)
            line += rows.at(i).at(column).leftJustified(widths.at(column) + 2);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        lines += (i == 0 ? line.toUpper() : line) + QLatin1Char('\n');
    }
    return lines.toUtf8();
}

QJsonObject document(const QString &kind)
{
    return {{QStringLiteral("format"), kind}, {QStringLiteral("version"), 1}};
}

QByteArray printable(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

QJsonValue valueOrProblem(const QVariant &value)
{
    qel::values::Problem problem;
    const auto json = qel::values::toJson(value, &problem);
    return json ? *json : QJsonObject{{QStringLiteral("problem"), qel::frontend::explain(problem)}};
}

} // namespace qelctl
