#include "platepicture.h"

#include "colorscales.h"
#include "text.h"

#include <qelfrontend/wells.h>

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace qelworkbench {

namespace {

constexpr double margin = 8;
constexpr double namesWidth = 30;
constexpr double namesHeight = 22;
constexpr double barWidth = 16;
constexpr double barSpace = 96; // the bar, its numbers and the gap to the plate

} // namespace

double ColorRange::share(double value) const
{
    return to > from ? (value - from) / (to - from) : 0.5;
}

ColorRange PlatePicture::span() const
{
    ColorRange span{INFINITY, -INFINITY};
    for (const double value : values) {
        if (!std::isfinite(value) || isSaturated(value))
            continue;
        span.from = std::min(span.from, value);
        span.to = std::max(span.to, value);
    }
    if (span.from > span.to)
        return {};
    if (isDifference) {
        const double most = std::max(std::abs(span.from), std::abs(span.to));
        return {-most, most};
    }
    return span;
}

QColor PlatePicture::color(double share) const
{
    return isDifference ? blueToRed(share) : viridis(share);
}

bool PlatePicture::isSaturated(double value) const
{
    return (maximum && value >= *maximum) || value == INFINITY;
}

PlatePicture::Grid PlatePicture::gridIn(const QRectF &area) const
{
    const double bar = values.isEmpty() ? 0 : barSpace;
    const double titleHeight = title.isEmpty() ? 0 : namesHeight;
    const QRectF space = area.adjusted(margin + namesWidth, margin + namesHeight + titleHeight,
                                       -margin - bar, -margin);
    if (rows < 1 || columns < 1 || space.width() <= 0 || space.height() <= 0)
        return {};
    Grid grid;
    grid.cell = std::min(space.width() / columns, space.height() / rows);
    grid.origin = space.topLeft()
        + QPointF((space.width() - grid.cell * columns) / 2,
                  (space.height() - grid.cell * rows) / 2);
    return grid;
}

QRectF PlatePicture::wellRect(int well, const QRectF &area) const
{
    const Grid grid = gridIn(area);
    return QRectF(grid.origin
                      + QPointF(grid.cell * (well % columns), grid.cell * int(well / columns)),
                  QSizeF(grid.cell, grid.cell));
}

int PlatePicture::wellAt(const QPointF &point, const QRectF &area) const
{
    const Grid grid = gridIn(area);
    if (grid.cell <= 0)
        return -1;
    const int column = int(std::floor((point.x() - grid.origin.x()) / grid.cell));
    const int row = int(std::floor((point.y() - grid.origin.y()) / grid.cell));
    const bool isInside = row >= 0 && row < rows && column >= 0 && column < columns;
    return isInside ? row * columns + column : -1;
}

void PlatePicture::paintWell(QPainter *painter, const QRectF &circle, double value, double share,
                             const QPalette &palette) const
{
    const QColor line = palette.color(QPalette::Mid);
    const QRectF inner = circle.adjusted(circle.width() * 0.28, circle.height() * 0.28,
                                         -circle.width() * 0.28, -circle.height() * 0.28);
    if (values.isEmpty()) {
        painter->setPen(QPen(line, 1));
        painter->setBrush(palette.color(QPalette::Base));
        painter->drawEllipse(circle);
    } else if (std::isnan(value) || value == -INFINITY) {
        painter->setPen(QPen(line, 1));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(circle);
        painter->drawLine(inner.topLeft(), inner.bottomRight());
        painter->drawLine(inner.bottomLeft(), inner.topRight());
    } else if (isSaturated(value)) {
        painter->setPen(QPen(Qt::black, 1));
        painter->setBrush(Qt::white);
        painter->drawEllipse(circle);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(0xc6, 0x28, 0x28));
        const QPointF triangle[] = {QPointF(inner.center().x(), inner.top()), inner.bottomRight(),
                                    inner.bottomLeft()};
        painter->drawPolygon(triangle, 3);
    } else {
        // White would be lost on white, and the darkest violet in a dark window.
        painter->setPen(circle.width() > 8 ? QPen(line, 1) : QPen(Qt::NoPen));
        painter->setBrush(color(share));
        painter->drawEllipse(circle);
    }
}

void PlatePicture::paintNames(QPainter *painter, const Grid &grid, const QPalette &palette) const
{
    painter->setPen(palette.color(QPalette::WindowText));
    // On dense plates every second, fourth, … name.
    const QFontMetricsF metrics(painter->font());
    int step = 1;
    while (grid.cell * step
           < std::max(metrics.height(), metrics.horizontalAdvance(QString::number(columns)) + 4))
        step *= 2;
    for (int column = 0; column < columns; column += step) {
        const QRectF place(grid.origin.x() + grid.cell * column - grid.cell * (step - 1) / 2,
                           grid.origin.y() - namesHeight, grid.cell * step, namesHeight - 2);
        painter->drawText(place, Qt::AlignCenter, QString::number(column + 1));
    }
    for (int row = 0; row < rows; row += step) {
        const QRectF place(grid.origin.x() - namesWidth,
                           grid.origin.y() + grid.cell * row - grid.cell * (step - 1) / 2,
                           namesWidth - 6, grid.cell * step);
        painter->drawText(place, Qt::AlignVCenter | Qt::AlignRight, qel::frontend::rowName(row));
    }
}

void PlatePicture::paintBar(QPainter *painter, const QRectF &area, const QPalette &palette) const
{
    const Grid grid = gridIn(area);
    const double lineHeight = QFontMetricsF(painter->font()).height();
    const QRectF bar(area.right() - barSpace - margin + 20, grid.origin.y() + lineHeight + 2,
                     barWidth, std::max(20.0, grid.cell * rows - lineHeight - 2));
    QLinearGradient gradient(bar.bottomLeft(), bar.topLeft());
    for (int step = 0; step <= 16; ++step)
        gradient.setColorAt(step / 16.0, color(step / 16.0));
    painter->setPen(palette.color(QPalette::Mid));
    painter->setBrush(gradient);
    painter->drawRect(bar);
    painter->setPen(palette.color(QPalette::WindowText));
    painter->drawText(QRectF(bar.left(), bar.top() - lineHeight - 4, barSpace - 20, lineHeight),
                      Qt::AlignLeft | Qt::AlignVCenter, unit);
    const ColorRange ends = range.value_or(span());
    int ticks = std::clamp(int(bar.height() / (2.5 * lineHeight)), 1, 5);
    if (isDifference)
        ticks = ticks < 4 ? 2 : 4; // with one at 0
    if (ends.to <= ends.from)
        ticks = 0;
    for (int tick = 0; tick <= ticks; ++tick) {
        const double share = ticks > 0 ? double(tick) / ticks : 0.5;
        const double y = bar.bottom() - share * bar.height();
        painter->drawLine(QPointF(bar.right(), y), QPointF(bar.right() + 4, y));
        painter->drawText(QRectF(bar.right() + 7, y - lineHeight / 2, 60, lineHeight),
                          Qt::AlignLeft | Qt::AlignVCenter,
                          valueText(ends.from + share * (ends.to - ends.from)));
    }
}

void PlatePicture::paint(QPainter *painter, const QRectF &area, const QPalette &palette,
                         const QVector<bool> &selection, int current) const
{
    const Grid grid = gridIn(area);
    if (grid.cell <= 0)
        return;
    painter->setRenderHint(QPainter::Antialiasing);
    if (!title.isEmpty()) {
        painter->setPen(palette.color(QPalette::WindowText));
        painter->drawText(QRectF(area.left() + margin, area.top() + margin,
                                 area.width() - 2 * margin, namesHeight),
                          Qt::AlignLeft | Qt::AlignTop, title);
    }
    paintNames(painter, grid, palette);
    const double gap = std::max(0.5, grid.cell * 0.07);
    const double width = std::clamp(grid.cell * 0.08, 1.5, 3.0);
    const ColorRange ends = range.value_or(span());
    for (int well = 0; well < rows * columns; ++well) {
        const double value = values.value(well, NAN);
        const QRectF cell = wellRect(well, area);
        QRectF circle = cell.adjusted(gap, gap, -gap, -gap);
        if (selection.value(well)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(palette.color(QPalette::Highlight));
            painter->drawRoundedRect(cell, gap, gap);
        }
        const QColor ring = rings.value(well);
        if (ring.isValid()) {
            painter->setPen(QPen(ring, width));
            painter->setBrush(Qt::NoBrush);
            painter->drawEllipse(circle);
            circle.adjust(width, width, -width, -width);
        }
        paintWell(painter, circle, value, ends.share(value), palette);
        if (well == current) {
            painter->setPen(QPen(palette.color(QPalette::WindowText), width));
            painter->setBrush(Qt::NoBrush);
            painter->drawRoundedRect(cell.adjusted(1, 1, -1, -1), gap, gap);
        }
    }
    if (!values.isEmpty())
        paintBar(painter, area, palette);
}

} // namespace qelworkbench
