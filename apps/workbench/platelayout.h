#ifndef QELWORKBENCH_PLATELAYOUT_H
#define QELWORKBENCH_PLATELAYOUT_H

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>

#include <optional>

namespace qelworkbench {

/// What a well holds: "sample", "blank", "control", "standard", a standard with its concentration
/// such as "standard 12.5", or nothing that is known.
///
/// A layout is a view on values and never changes them.
class PlateLayout
{
public:
    PlateLayout() = default;
    PlateLayout(int rows, int columns);

    /// The first grid of a file in the `plater` format: columns numbered, rows lettered, in each
    /// cell what the well holds.
    /// @return nothing, and a sentence in `problem` with the place, when it is none of this plate
    static std::optional<PlateLayout> fromCsv(const QByteArray &csv, int rows, int columns,
                                              QString *problem);
    /// Reads what toJson() wrote; an empty layout for anything else.
    static PlateLayout fromJson(const QJsonObject &json, int rows, int columns);
    /// Wells by what they hold, as {"blank": "A1:H1"}.
    QJsonObject toJson() const;

    /// Whether `content` is one that a layout knows.
    static bool isContent(const QString &content);

    bool isEmpty() const;
    /// What a well holds; empty when not known.
    QString content(int well) const;
    /// Says what the wells that `wells` sets hold; an empty text takes it back.
    void setContent(const QVector<bool> &wells, const QString &content);

    /// A colour for each well, invalid where nothing is known.
    QVector<QColor> colors() const;

    /// The mean of the blanks that were measured; nothing without one, or when one of them reached
    /// `maximum`, so that its value is not known.
    std::optional<double> blank(const QVector<double> &values,
                                const std::optional<double> &maximum) const;

private:
    int m_columns = 0;
    QVector<QString> m_contents; // one a well
};

} // namespace qelworkbench

#endif
