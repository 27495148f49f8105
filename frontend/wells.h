#ifndef QELFRONTEND_WELLS_H
#define QELFRONTEND_WELLS_H

#include "export.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

namespace qel::frontend {

/// The letters of a row: A to Z, then AA and on. `row` counts from 0.
QELFRONTEND_EXPORT QString rowName(int row);

/// The name of a well, for instance B12. `row` and `column` count from 0.
QELFRONTEND_EXPORT QString wellName(int row, int column);

/// Reads well names and ranges such as "A1:B12,C3" into one flag a well, row by row from A1. A
/// range is the rectangle between its two corners; letter case and blanks do not count.
/// @return nothing, and a sentence in `problem`, when a name is none or not on the plate
QELFRONTEND_EXPORT std::optional<QVector<bool>> readWells(const QString &text, int rows,
                                                          int columns, QString *problem);

/// What readWells() reads: the wells that are set, as one range for each run within a row. Empty
/// when no well is set. `wells` has one flag a well.
QELFRONTEND_EXPORT QString writeWells(const QVector<bool> &wells, int columns);

} // namespace qel::frontend

#endif
