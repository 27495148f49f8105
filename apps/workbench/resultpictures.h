#ifndef QELWORKBENCH_RESULTPICTURES_H
#define QELWORKBENCH_RESULTPICTURES_H

#include "platelayout.h"
#include "platepicture.h"
#include "store.h"

#include <QtCore/QStringList>

#include <optional>

namespace qelworkbench {

/// A read of a plate as it was measured. `result` holds a plate.
PlatePicture pictureOf(const Result &result, int read, const PlateLayout &layout);

/// The same above the mean of the blanks.
PlatePicture aboveBlank(PlatePicture picture, double blank);

/// The labels of the reads that both results have. What is no plate has none.
QStringList commonReads(const Result &one, const Result &other);

/// Puts two pictures on one colour bar, when they have the same unit.
void shareColors(PlatePicture *one, PlatePicture *other);

/// `other` less `one`, well by well. A well that was not measured in both has no difference; where
/// one of them is saturated, the difference is not known and the well is marked as saturated.
/// @return nothing, and a sentence in `problem`, when their sizes or units differ
std::optional<PlatePicture> difference(const PlatePicture &one, const PlatePicture &other,
                                       QString *problem);

} // namespace qelworkbench

#endif
