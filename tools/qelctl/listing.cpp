#include "listing.h"

#include "output.h"
#include "terminaltext.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/problems.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonDocument>

#include <algorithm>
#include <limits>
#include <numeric>

#include <unistd.h>

namespace qelctl {

// How many characters a line of data may have.
static int dataWidth()
{
    return isatty(dataDescriptor()) ? std::max(narrowestTerminal, terminalWidth(dataDescriptor()))
                                    : std::numeric_limits<int>::max();
}

void Sheet::add(int indent, int width, const QString &name, const QString &value)
{
    const int total = dataWidth();
    QString left = QString(indent, QLatin1Char(' '))
        + qel::frontend::printable(name).leftJustified(width) + QLatin1Char(' ');
    const int start = std::min(left.size(), total - 20);
    if (left.size() > start && !value.isEmpty()) { // no room for the value beside the name
        m_lines += left.trimmed().prepend(QString(indent, QLatin1Char(' '))) + QLatin1Char('\n');
        left = QString(start, QLatin1Char(' '));
    }
    const auto parts = folded(qel::frontend::printable(value), total - start);
    for (const QString &part : parts) {
        QString line = left + part;
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        m_lines += line + QLatin1Char('\n');
        left = QString(start, QLatin1Char(' '));
    }
}

QByteArray Sheet::data() const
{
    return m_lines.toUtf8();
}

static QByteArray sheets(const QList<QStringList> &rows)
{
    const QStringList titles = rows.constFirst();
    int width = 0;
    for (const QString &title : titles)
        width = std::max(width, title.size());
    QByteArray text;
    for (int i = 1; i < rows.size(); ++i) {
        Sheet sheet;
        for (int column = 0; column < rows.at(i).size(); ++column)
            sheet.add(0, width, titles.value(column).toUpper(), rows.at(i).at(column));
        text += (i > 1 ? "\n" : "") + sheet.data();
    }
    return text;
}

QByteArray table(QList<QStringList> rows)
{
    QList<int> widths;
    for (QStringList &row : rows) {
        std::transform(row.begin(), row.end(), row.begin(), &qel::frontend::printable);
        for (int column = 0; column < row.size(); ++column) {
            if (column == widths.size())
                widths.append(0);
            widths[column] = std::max(widths.at(column), row.at(column).size());
        }
    }
    if (std::accumulate(widths.begin(), widths.end(), 2 * (widths.size() - 1)) > dataWidth())
        return sheets(rows);
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

// Qt's writer escapes the first 32 characters only.
static QByteArray escaped(const QByteArray &json)
{
    const auto isHarmless = [](char byte) { return byte >= 0 && byte != 0x7f; };
    if (std::all_of(json.cbegin(), json.cend(), isHarmless))
        return json;
    QString safe;
    const QString characters = QString::fromUtf8(json);
    for (const QChar character : characters) {
        const bool isLineEnd = character.unicode() < 0x20; // between two values
        const bool isShown = character.isPrint() && character != QChar::LineSeparator
            && character != QChar::ParagraphSeparator;
        if (isLineEnd || isShown || character.isSurrogate())
            safe += character;
        else
            safe += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return safe.toUtf8();
}

QByteArray indented(const QJsonObject &json)
{
    return escaped(QJsonDocument(json).toJson(QJsonDocument::Indented));
}

QByteArray inOneLine(const QJsonObject &json)
{
    return escaped(qel::values::jsonText(json)) + '\n';
}

QJsonValue valueOrProblem(const QVariant &value)
{
    qel::values::Problem problem;
    const auto json = qel::values::toJson(value, &problem);
    return json ? *json : QJsonObject{{QStringLiteral("problem"), qel::frontend::explain(problem)}};
}

} // namespace qelctl
