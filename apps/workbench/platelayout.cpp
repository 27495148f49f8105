#include "platelayout.h"

#include "text.h"

#include <qelfrontend/wells.h>

#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace qelworkbench {

using namespace qel::frontend;

PlateLayout::PlateLayout(int rows, int columns)
    : m_columns(columns)
    , m_contents(rows * columns)
{ }

bool PlateLayout::isContent(const QString &content)
{
    const QStringList plain{QStringLiteral("sample"), QStringLiteral("blank"),
                            QStringLiteral("control"), QStringLiteral("standard")};
    if (plain.contains(content))
        return true;
    const QString standard = QStringLiteral("standard ");
    bool isNumber = false;
    const double concentration = content.midRef(standard.size()).toDouble(&isNumber);
    return content.startsWith(standard) && isNumber && std::isfinite(concentration)
        && concentration >= 0;
}

std::optional<PlateLayout> PlateLayout::fromCsv(const QByteArray &csv, int rows, int columns,
                                                QString *problem)
{
    PlateLayout layout(rows, columns);
    const QStringList lines =
        QString::fromUtf8(csv).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    for (int row = 0; row <= rows; ++row) {
        QStringList cells = lines.value(row).split(QLatin1Char(','));
        const QString expected = row == 0 ? QString() : rowName(row - 1);
        const bool isHeader =
            row == 0 && cells.value(columns).trimmed() == QString::number(columns);
        if (cells.size() != columns + 1
            || (row == 0 ? !isHeader : cells[0].trimmed() != expected)) {
            *problem = text("qelworkbench-layout-shape", QString::number(row + 1),
                            QString::number(rows), QString::number(columns));
            return {};
        }
        for (int column = 0; row > 0 && column < columns; ++column) {
            QString content = cells[column + 1].trimmed().toLower();
            if (content.startsWith(QLatin1Char('"')) && content.endsWith(QLatin1Char('"')))
                content = content.mid(1, content.size() - 2);
            if (!content.isEmpty() && !isContent(content)) {
                *problem = text("qelworkbench-layout-content", wellName(row - 1, column), content);
                return {};
            }
            layout.m_contents[(row - 1) * columns + column] = content;
        }
    }
    return layout;
}

PlateLayout PlateLayout::fromJson(const QJsonObject &json, int rows, int columns)
{
    PlateLayout layout(rows, columns);
    for (auto content = json.begin(); content != json.end(); ++content) {
        QString ignored;
        const auto wells = readWells(content.value().toString(), rows, columns, &ignored);
        if (wells && isContent(content.key()))
            layout.setContent(*wells, content.key());
    }
    return layout;
}

QJsonObject PlateLayout::toJson() const
{
    QMap<QString, QVector<bool>> wells;
    for (int well = 0; well < m_contents.size(); ++well) {
        if (m_contents[well].isEmpty())
            continue;
        QVector<bool> &own = wells[m_contents[well]];
        own.resize(m_contents.size());
        own[well] = true;
    }
    QJsonObject json;
    for (auto own = wells.cbegin(); own != wells.cend(); ++own)
        json.insert(own.key(), writeWells(own.value(), m_columns));
    return json;
}

bool PlateLayout::isEmpty() const
{
    return std::all_of(m_contents.begin(), m_contents.end(),
                       [](const QString &content) { return content.isEmpty(); });
}

QString PlateLayout::content(int well) const
{
    return m_contents.value(well);
}

void PlateLayout::setContent(const QVector<bool> &wells, const QString &content)
{
    for (int well = 0; well < m_contents.size(); ++well) {
        if (wells.value(well))
            m_contents[well] = content;
    }
}

QVector<QColor> PlateLayout::colors() const
{
    QVector<QColor> colors(m_contents.size());
    for (int well = 0; well < m_contents.size(); ++well) {
        const QString &content = m_contents[well];
        // Of Okabe and Ito's palette, which the colour-blind tell apart.
        if (content == QLatin1String("blank"))
            colors[well] = QColor(0x56, 0xb4, 0xe9);
        else if (content == QLatin1String("sample"))
            colors[well] = QColor(0x80, 0x80, 0x80);
        else if (content == QLatin1String("control"))
            colors[well] = QColor(0xcc, 0x79, 0xa7);
        else if (!content.isEmpty())
            colors[well] = QColor(0xd5, 0x5e, 0x00);
    }
    return colors;
}

std::optional<double> PlateLayout::blank(const QVector<double> &values,
                                         const std::optional<double> &maximum) const
{
    double sum = 0;
    int count = 0;
    for (int well = 0; well < m_contents.size(); ++well) {
        const double value = values.value(well, NAN);
        if (m_contents[well] != QLatin1String("blank") || std::isnan(value))
            continue;
        if (std::isinf(value) || (maximum && value >= *maximum))
            return {};
        sum += value;
        ++count;
    }
    return count > 0 ? std::make_optional(sum / count) : std::nullopt;
}

} // namespace qelworkbench
