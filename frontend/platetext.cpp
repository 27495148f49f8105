#include "platetext.h"

#include "wells.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace qel::frontend {

namespace {

// From dark to light, even steps to the eye, told apart also by the colour blind.
constexpr int palette[] = {17, 18, 19, 25, 31, 37, 36, 35, 71, 107, 143, 179, 215, 221, 228};
constexpr int firstLightColor = 8;

// The finite values of a read lie between these.
struct Range
{
    double lowest = 0;
    double highest = 0;
};

Range rangeOf(const QVector<double> &values)
{
    Range range;
    bool isFirst = true;
    for (const double value : values) {
        if (!std::isfinite(value))
            continue;
        range.lowest = isFirst ? value : std::min(range.lowest, value);
        range.highest = isFirst ? value : std::max(range.highest, value);
        isFirst = false;
    }
    return range;
}

// Four digits of the largest value are worth reading.
QString cellText(double value, const Range &range)
{
    if (std::isnan(value))
        return QStringLiteral("-");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    const double largest = std::max(std::abs(range.lowest), std::abs(range.highest));
    if (largest >= 1e7 || (largest > 0 && largest < 1e-3))
        return QString::number(value, 'e', 2);
    const int magnitude = largest < 1 ? 0 : int(std::floor(std::log10(largest)));
    return QString::number(value, 'f', std::max(0, 3 - magnitude));
}

QString painted(const QString &cell, double value, const Range &range)
{
    if (std::isnan(value))
        return cell;
    constexpr int colors = int(std::size(palette));
    // Halved first: the difference of two finite values may be infinite.
    const double span = range.highest / 2 - range.lowest / 2;
    const double share = span > 0 ? (value / 2 - range.lowest / 2) / span : 0;
    const int color = std::clamp(int(std::clamp(share, 0.0, 1.0) * colors), 0, colors - 1);
    return QStringLiteral("\033[38;5;%1;48;5;%2m%3\033[0m")
        .arg(QString::number(color < firstLightColor ? 231 : 16), QString::number(palette[color]),
             cell);
}

class ReadTable
{
public:
    ReadTable(const Plate &plate, const PlateRead &read, const PlateTextStyle &style)
        : m_plate(plate)
        , m_read(read)
        , m_style(style)
        , m_range(rangeOf(read.values))
        , m_rowWidth(rowName(plate.rows - 1).size())
    {
        for (const double value : read.values) {
            // More than that, nobody knows how much.
            m_cells += (plate.isSaturated(value) ? QStringLiteral(">") : QString())
                + cellText(value, m_range);
        }
        m_cellWidth = QString::number(plate.columns).size();
        for (const QString &cell : std::as_const(m_cells))
            m_cellWidth = std::max(m_cellWidth, cell.size());
    }

    QString text() const
    {
        int columns = m_plate.columns;
        if (m_style.width > 0)
            columns = std::clamp((m_style.width - m_rowWidth) / (m_cellWidth + 1), 1, columns);
        QStringList parts;
        for (int first = 0; first < m_plate.columns; first += columns)
            parts += part(first, std::min(first + columns, m_plate.columns));
        return parts.join(u'\n');
    }

private:
    QString part(int first, int end) const
    {
        QString text(m_rowWidth, u' ');
        for (int column = first; column < end; ++column)
            text += u' ' + QString::number(column + 1).rightJustified(m_cellWidth);
        text += u'\n';
        for (int row = 0; row < m_plate.rows; ++row) {
            text += rowName(row).rightJustified(m_rowWidth);
            for (int column = first; column < end; ++column) {
                const int well = row * m_plate.columns + column;
                const QString cell = m_cells[well].rightJustified(m_cellWidth);
                text += u' ';
                text += m_style.colors ? painted(cell, m_read.values[well], m_range) : cell;
            }
            text += u'\n';
        }
        return text;
    }

    const Plate &m_plate;
    const PlateRead &m_read;
    const PlateTextStyle m_style;
    const Range m_range;
    const int m_rowWidth;
    int m_cellWidth = 0;
    QVector<QString> m_cells;
};

} // namespace

QString plateText(const Plate &plate, const PlateTextStyle &style)
{
    QStringList tables;
    for (const PlateRead &read : plate.reads) {
        const QString title = read.label == plate.unit
            ? plate.unit
            : QStringLiteral("%1 (%2)").arg(read.label, plate.unit);
        tables += title + u'\n' + ReadTable(plate, read, style).text();
    }
    return tables.join(u'\n');
}

} // namespace qel::frontend
