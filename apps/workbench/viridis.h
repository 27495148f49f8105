#ifndef QELWORKBENCH_VIRIDIS_H
#define QELWORKBENCH_VIRIDIS_H

#include <QtGui/QColor>

namespace qelworkbench {

/// The colour for a share from 0 to 1: from dark violet to yellow, even steps to the eye, told
/// apart by the colour-blind and in print.
QColor viridis(double share);

/// Black or white, whichever is read better on `background`.
QColor inkOn(const QColor &background);

} // namespace qelworkbench

#endif
