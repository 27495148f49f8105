#ifndef QELWORKBENCH_PLATEPICTURE_H
#define QELWORKBENCH_PLATEPICTURE_H

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>
#include <QtGui/QPalette>

#include <optional>

class QPainter;

namespace qelworkbench {

/// The values at the two ends of a colour bar.
struct ColorRange
{
    double from = 0;
    double to = 0;

    /// Where `value` lies in it, from 0 to 1; the middle where the range is empty.
    double share(double value) const;
};

/// A plate as it is drawn: on the screen by PlateView, into files by the exports.
///
/// Wells are circles in the colour of their value, beside a colour bar. A well that was not
/// measured is empty and crossed, a saturated one is white with a triangle; neither is coloured,
/// since neither has a place on the bar.
class PlatePicture
{
public:
    int rows = 0;
    int columns = 0;
    QVector<double>
        values; ///< row by row from A1; NaN where not measured; empty: a plate to pick on
    QString unit;
    QString title;
    std::optional<double> maximum; ///< of the detector, in `unit`
    /// Whether the values are what lies between two plates: white is 0, and the colour bar reaches
    /// as far below it as above.
    bool isDifference = false;
    std::optional<ColorRange>
        range; ///< what the colour bar spans; unless set, what the values span
    /// What each well holds, as a ring's colour, row by row; empty, or invalid colours, for none.
    QVector<QColor> rings;
    QVector<QString> contents; ///< the same in words; empty texts for none

    /// Draws into `area`.
    /// @param selection one flag a well, or empty
    /// @param current the well with the keyboard's frame; -1 for none
    void paint(QPainter *painter, const QRectF &area, const QPalette &palette,
               const QVector<bool> &selection = {}, int current = -1) const;

    /// The well at `point` of a picture drawn into `area`; -1 beside the wells.
    int wellAt(const QPointF &point, const QRectF &area) const;
    /// Where a well is drawn.
    QRectF wellRect(int well, const QRectF &area) const;

    /// Whether a value has no place on the colour bar because the detector ended.
    bool isSaturated(double value) const;

    /// What the finite values that are not saturated lie between; around 0 for a difference.
    ColorRange span() const;

private:
    struct Grid
    {
        QPointF origin;  // the corner of A1's cell
        double cell = 0; // width and height
    };
    Grid gridIn(const QRectF &area) const;
    QColor color(double share) const;
    void paintWell(QPainter *painter, const QRectF &circle, double value, double share,
                   const QPalette &palette) const;
    void paintNames(QPainter *painter, const Grid &grid, const QPalette &palette) const;
    void paintBar(QPainter *painter, const QRectF &area, const QPalette &palette) const;
};

} // namespace qelworkbench

#endif
