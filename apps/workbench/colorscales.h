#ifndef QELWORKBENCH_COLORSCALES_H
#define QELWORKBENCH_COLORSCALES_H

#include <QtGui/QColor>

namespace qelworkbench {

/// The colour for a share from 0 to 1: from dark violet to yellow, even steps to the eye, told
/// apart by the colour-blind and in print.
QColor viridis(double share);

/// The colour for a share from 0 to 1 of what lies on two sides of the middle: blue below, white at
/// 0.5, red above. The colour-blind tell the sides apart, too.
QColor blueToRed(double share);

} // namespace qelworkbench

#endif
