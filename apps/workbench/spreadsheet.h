#ifndef QELWORKBENCH_SPREADSHEET_H
#define QELWORKBENCH_SPREADSHEET_H

#include "store.h"

#include <QtCore/QByteArray>

namespace qelworkbench {

/// Results as a workbook: a sheet with one line a well, read and run, a sheet with the plates as
/// grids, and a sheet with what is known of the runs. Saturated wells are marked in their colour.
/// @return nothing, and a sentence in `problem`, when it cannot be made
std::optional<QByteArray> spreadsheet(const QVector<Result> &results, QString *problem);

} // namespace qelworkbench

#endif
