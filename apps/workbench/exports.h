#ifndef QELWORKBENCH_EXPORTS_H
#define QELWORKBENCH_EXPORTS_H

#include "platepicture.h"
#include "store.h"

#include <QtCore/QVector>

namespace qelworkbench {

/// The forms in which results leave the workbench.
enum class ExportFormat { Spreadsheet, TidyCsv, PlateCsv, Json, Png, Svg };

/// A format's suffix, for instance "xlsx".
QString suffixOf(ExportFormat format);

/// Writes results of one series, or a single one, to a file, whole or not at all. Pictures show
/// `picture`. False, and a sentence in `problem`, when that fails.
bool exportTo(const QString &path, ExportFormat format, const QVector<Result> &results,
              const PlatePicture &picture, QString *problem);

/// A read as a table that a spreadsheet takes from the clipboard: tabs between columns, with the
/// names of rows and columns.
QString clipboardTable(const PlatePicture &picture);

} // namespace qelworkbench

#endif
