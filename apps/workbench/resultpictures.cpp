#include "resultpictures.h"

#include "text.h"

#include <algorithm>
#include <cmath>

namespace qelworkbench {

PlatePicture pictureOf(const Result &result, int read, const PlateLayout &layout)
{
    const qel::frontend::Plate &plate = *result.run.plate;
    PlatePicture picture;
    picture.rows = plate.rows;
    picture.columns = plate.columns;
    picture.values = plate.reads.value(read).values;
    picture.unit = plate.unit;
    picture.maximum = plate.maximum;
    picture.rings = layout.colors();
    for (int well = 0; well < picture.values.size(); ++well)
        picture.contents.append(contentTitle(layout.content(well)));
    return picture;
}

PlatePicture aboveBlank(PlatePicture picture, double blank)
{
    for (double &value : picture.values)
        value -= blank;
    if (picture.maximum)
        *picture.maximum -= blank;
    picture.unit = text("qelworkbench-above-blank", picture.unit);
    return picture;
}

static QStringList reads(const Result &result)
{
    QStringList labels;
    if (result.run.plate) {
        for (const auto &read : result.run.plate->reads)
            labels.append(read.label);
    }
    return labels;
}

QStringList commonReads(const Result &one, const Result &other)
{
    QStringList labels = reads(one);
    const QStringList others = reads(other);
    labels.erase(
        std::remove_if(labels.begin(), labels.end(),
                       [&others](const QString &label) { return !others.contains(label); }),
        labels.end());
    return labels;
}

void shareColors(PlatePicture *one, PlatePicture *other)
{
    if (one->unit != other->unit)
        return;
    const ColorRange span = one->span();
    const ColorRange otherSpan = other->span();
    // A plate without a value that has a place on the bar must not stretch it.
    const auto hasPlace = [](const PlatePicture &picture) {
        return std::any_of(picture.values.begin(), picture.values.end(), [&picture](double value) {
            return std::isfinite(value) && !picture.isSaturated(value);
        });
    };
    if (hasPlace(*one) && hasPlace(*other))
        one->range =
            ColorRange{std::min(span.from, otherSpan.from), std::max(span.to, otherSpan.to)};
    else
        one->range = hasPlace(*one) ? span : otherSpan;
    other->range = one->range;
}

std::optional<PlatePicture> difference(const PlatePicture &one, const PlatePicture &other,
                                       QString *problem)
{
    if (one.rows != other.rows || one.columns != other.columns) {
        *problem = text("qelworkbench-compare-sizes", QString::number(one.rows * one.columns),
                        QString::number(other.rows * other.columns));
        return {};
    }
    if (one.unit != other.unit) {
        *problem = text("qelworkbench-compare-units", one.unit, other.unit);
        return {};
    }
    PlatePicture picture;
    picture.rows = one.rows;
    picture.columns = one.columns;
    picture.unit = one.unit;
    picture.isDifference = true;
    for (int well = 0; well < one.values.size(); ++well) {
        const double value = one.values[well];
        const double otherValue = other.values[well];
        const bool isMeasured = !std::isnan(value) && !std::isnan(otherValue);
        const bool isSaturated = one.isSaturated(value) || other.isSaturated(otherValue);
        picture.values.append(isMeasured && isSaturated ? INFINITY : otherValue - value);
    }
    return picture;
}

} // namespace qelworkbench
