#include "spreadsheet.h"

#include "platelayout.h"
#include "text.h"

#include <qelfrontend/selection.h>
#include <qelfrontend/wells.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <xlsxwriter.h>

#include <algorithm>
#include <cmath>

namespace qelworkbench {

using namespace qel::frontend;

namespace {

// Writes one workbook; the sheets are in the language of the window.
class Workbook
{
public:
    explicit Workbook(const QByteArray &path)
        : m_book(workbook_new(path.constData()))
        , m_bold(workbook_add_format(m_book))
        , m_saturated(workbook_add_format(m_book))
        , m_date(workbook_add_format(m_book))
    {
        format_set_bold(m_bold);
        format_set_bg_color(m_saturated, 0xFFC7CE);
        format_set_num_format(m_date, "yyyy-mm-dd hh:mm:ss");
    }

    lxw_error close()
    {
        return workbook_close(m_book);
    }

    lxw_worksheet *addSheet(const char *title)
    {
        return workbook_add_worksheet(m_book, text(title).toUtf8().constData());
    }

    void write(lxw_worksheet *sheet, int row, int column, const QString &string,
               lxw_format *format = nullptr)
    {
        worksheet_write_string(sheet, lxw_row_t(row), lxw_col_t(column),
                               string.toUtf8().constData(), format);
    }

    void writeHeader(lxw_worksheet *sheet, int row, int column, const QString &string)
    {
        write(sheet, row, column, string, m_bold);
    }

    // A well that was not measured is an empty cell.
    void writeValue(lxw_worksheet *sheet, int row, int column, double value, const Result &result)
    {
        lxw_format *format = result.run.plate->isSaturated(value) ? m_saturated : nullptr;
        if (std::isinf(value))
            write(sheet, row, column, value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf"),
                  format);
        else if (!std::isnan(value))
            worksheet_write_number(sheet, lxw_row_t(row), lxw_col_t(column), value, format);
    }

    void writeTime(lxw_worksheet *sheet, int row, int column, const QDateTime &time)
    {
        // Days since the end of 1899, in the operator's own time.
        const QDateTime local = time.toLocalTime();
        const double days = double(QDate(1899, 12, 30).daysTo(local.date()))
            + double(local.time().msecsSinceStartOfDay()) / 86400000;
        worksheet_write_number(sheet, lxw_row_t(row), lxw_col_t(column), days, m_date);
    }

    void writeValues(const QVector<Result> &results);
    void writePlates(const QVector<Result> &results);
    void writeLayout(const Result &result);
    void writeMetadata(const QVector<Result> &results);

private:
    lxw_workbook *m_book;
    lxw_format *m_bold;
    lxw_format *m_saturated;
    lxw_format *m_date;
};

void Workbook::writeValues(const QVector<Result> &results)
{
    lxw_worksheet *sheet = addSheet("qelworkbench-sheet-values");
    const char *titles[] = {"qelworkbench-column-run",    "qelworkbench-column-time",
                            "qelworkbench-column-read",   "qelworkbench-column-well",
                            "qelworkbench-column-row",    "qelworkbench-column-column",
                            "qelworkbench-column-value",  "qelworkbench-column-unit",
                            "qelworkbench-column-remark", "qelworkbench-column-content"};
    for (int column = 0; column < int(std::size(titles)); ++column)
        writeHeader(sheet, 0, column, text(titles[column]));
    worksheet_freeze_panes(sheet, 1, 0);
    worksheet_set_column(sheet, 1, 1, 20, nullptr);
    int line = 1;
    for (const Result &result : results) {
        const Plate &plate = *result.run.plate;
        const PlateLayout layout =
            PlateLayout::fromJson(results.constFirst().entry.layout, plate.rows, plate.columns);
        for (const PlateRead &read : plate.reads) {
            for (int well = 0; well < read.values.size(); ++well) {
                const int row = well / plate.columns;
                const int column = well % plate.columns;
                const double value = read.values[well];
                worksheet_write_number(sheet, lxw_row_t(line), 0, result.entry.number, nullptr);
                writeTime(sheet, line, 1, result.entry.startedAt);
                write(sheet, line, 2, read.label);
                write(sheet, line, 3, wellName(row, column));
                write(sheet, line, 4, rowName(row));
                worksheet_write_number(sheet, lxw_row_t(line), 5, column + 1, nullptr);
                writeValue(sheet, line, 6, value, result);
                write(sheet, line, 7, plate.unit);
                if (std::isnan(value))
                    write(sheet, line, 8, text("qelworkbench-not-measured"));
                else if (result.run.plate->isSaturated(value))
                    write(sheet, line, 8, text("qelworkbench-saturated"));
                write(sheet, line, 9, layout.content(well));
                ++line;
            }
        }
    }
}

void Workbook::writePlates(const QVector<Result> &results)
{
    lxw_worksheet *sheet = addSheet("qelworkbench-sheet-plates");
    int line = 0;
    for (const Result &result : results) {
        const Plate &plate = *result.run.plate;
        for (const PlateRead &read : plate.reads) {
            const QString title = results.size() > 1
                ? QStringLiteral("%1, %2").arg(result.entry.number).arg(read.label)
                : read.label;
            writeHeader(sheet, line, 0,
                        read.label == plate.unit
                            ? title
                            : QStringLiteral("%1 (%2)").arg(title, plate.unit));
            for (int column = 0; column < plate.columns; ++column)
                worksheet_write_number(sheet, lxw_row_t(line), lxw_col_t(column + 1), column + 1,
                                       m_bold);
            for (int row = 0; row < plate.rows; ++row) {
                writeHeader(sheet, line + row + 1, 0, rowName(row));
                for (int column = 0; column < plate.columns; ++column)
                    writeValue(sheet, line + row + 1, column + 1,
                               read.values[row * plate.columns + column], result);
            }
            line += plate.rows + 2;
        }
    }
    worksheet_set_column(sheet, 0, 0, 16, nullptr);
}

// A series has the layout of its first run.
void Workbook::writeLayout(const Result &result)
{
    const Plate &plate = *result.run.plate;
    const PlateLayout layout =
        PlateLayout::fromJson(result.entry.layout, plate.rows, plate.columns);
    if (layout.isEmpty())
        return;
    lxw_worksheet *sheet = addSheet("qelworkbench-sheet-layout");
    for (int column = 0; column < plate.columns; ++column)
        worksheet_write_number(sheet, 0, lxw_col_t(column + 1), column + 1, m_bold);
    for (int row = 0; row < plate.rows; ++row) {
        writeHeader(sheet, row + 1, 0, rowName(row));
        for (int column = 0; column < plate.columns; ++column)
            write(sheet, row + 1, column + 1, layout.content(row * plate.columns + column));
    }
    worksheet_set_column(sheet, 1, lxw_col_t(plate.columns), 12, nullptr);
}

void Workbook::writeMetadata(const QVector<Result> &results)
{
    lxw_worksheet *sheet = addSheet("qelworkbench-sheet-metadata");
    worksheet_set_column(sheet, 0, 0, 24, nullptr);
    worksheet_set_column(sheet, 1, results.size(), 28, nullptr);
    const char *titles[] = {"qelworkbench-column-run",         "qelworkbench-column-time",
                            "qelworkbench-column-name",        "qelworkbench-column-note",
                            "qelworkbench-column-instrument",  "qelworkbench-column-serial",
                            "qelworkbench-column-measurement", "qelworkbench-column-settings",
                            "qelworkbench-column-temperature", "qelworkbench-column-maximum",
                            "qelworkbench-column-library",     "qelworkbench-column-file"};
    for (int row = 0; row < int(std::size(titles)); ++row)
        writeHeader(sheet, row, 0, text(titles[row]));
    for (int i = 0; i < results.size(); ++i) {
        const Result &result = results[i];
        const int column = i + 1;
        worksheet_write_number(sheet, 0, lxw_col_t(column), result.entry.number, nullptr);
        writeTime(sheet, 1, column, result.entry.startedAt);
        write(sheet, 2, column, result.entry.name);
        write(sheet, 3, column, result.entry.note);
        write(sheet, 4, column, result.run.record.device.name());
        write(sheet, 5, column, result.run.record.device.serial());
        write(sheet, 6, column, featureTitle(result.run.record.feature));
        write(sheet, 7, column,
              QString::fromUtf8(
                  qel::values::jsonText(result.run.json.value(QStringLiteral("configuration")))));
        if (result.run.plate->temperature)
            worksheet_write_number(sheet, 8, lxw_col_t(column), *result.run.plate->temperature,
                                   nullptr);
        if (result.run.plate->maximum)
            worksheet_write_number(sheet, 9, lxw_col_t(column), *result.run.plate->maximum,
                                   nullptr);
        write(sheet, 10, column, result.run.json.value(QStringLiteral("library")).toString());
        write(sheet, 11, column, result.entry.file);
    }
}

} // namespace

std::optional<QByteArray> spreadsheet(const QVector<Result> &results, QString *problem)
{
    QVector<Result> plates;
    std::copy_if(results.begin(), results.end(), std::back_inserter(plates),
                 [](const Result &result) { return result.run.plate.has_value(); });
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("book.xlsx")));
    Workbook book(QFile::encodeName(file.fileName()));
    book.writeValues(plates);
    book.writePlates(plates);
    if (!plates.isEmpty())
        book.writeLayout(plates.constFirst());
    book.writeMetadata(plates);
    const lxw_error error = book.close();
    if (error == LXW_NO_ERROR && file.open(QIODevice::ReadOnly))
        return file.readAll();
    *problem = text("qelworkbench-no-spreadsheet", QString::fromUtf8(lxw_strerror(error)));
    return {};
}

} // namespace qelworkbench
