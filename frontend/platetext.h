#ifndef QELFRONTEND_PLATETEXT_H
#define QELFRONTEND_PLATETEXT_H

#include "export.h"
#include "plate.h"

#include <QtCore/QString>

namespace qel::frontend {

/// How a plate is shown on a terminal.
struct PlateTextStyle
{
    bool colors = false; ///< paint each well by its value, in the 256 colours of terminals
    int width = 0;       ///< columns of the terminal; wider plates are folded. 0: never
};

/// A plate as a table for people, one for each read: title, numbered columns, lettered rows,
/// numbers rounded to what is worth reading. A well that was not measured is "-", a
/// saturated one has ">" in front of the maximum of the detector.
QELFRONTEND_EXPORT QString plateText(const Plate &plate,
                                     const PlateTextStyle &style = PlateTextStyle());

} // namespace qel::frontend

#endif
