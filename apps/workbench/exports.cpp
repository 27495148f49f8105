#include "exports.h"

#include "spreadsheet.h"
#include "text.h"

#include <qelfrontend/platecsv.h>
#include <qelfrontend/wells.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QSaveFile>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgGenerator>

#include <cmath>

namespace qelworkbench {

using namespace qel::frontend;

namespace {

constexpr QSize pictureSize(960, 640);

// Pictures in files are printed and pasted into documents, whatever the window looks like.
QPalette paperPalette()
{
    QPalette palette(QColor(0xe8, 0xe8, 0xe8), Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Mid, QColor(0x90, 0x90, 0x90));
    return palette;
}

QByteArray png(const PlatePicture &picture)
{
    constexpr int density = 2;
    QImage image(pictureSize * density, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(density, density);
    picture.paint(&painter, QRectF(QPointF(), pictureSize), paperPalette());
    painter.end();
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

QByteArray svg(const PlatePicture &picture)
{
    QByteArray data;
    QBuffer buffer(&data);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(pictureSize);
    generator.setViewBox(QRect(QPoint(), pictureSize));
    generator.setTitle(picture.title);
    QPainter painter(&generator);
    picture.paint(&painter, QRectF(QPointF(), pictureSize), paperPalette());
    painter.end();
    return data;
}

QByteArray csv(const QVector<Result> &results, ExportFormat format)
{
    QByteArray data = format == ExportFormat::TidyCsv ? tidyCsvHeader() : QByteArray();
    for (const Result &result : results) {
        if (!result.run.plate)
            continue;
        if (format == ExportFormat::PlateCsv)
            data += (data.isEmpty() ? "" : "\r\n") + plateCsv(*result.run.plate);
        else
            data += tidyCsv(*result.run.plate, result.run.record.device);
    }
    return data;
}

QByteArray json(const QVector<Result> &results)
{
    QByteArray data;
    for (const Result &result : results)
        data += qel::values::jsonText(result.run.json) + '\n';
    return data;
}

std::optional<QByteArray> dataFor(ExportFormat format, const QVector<Result> &results,
                                  const PlatePicture &picture, QString *problem)
{
    switch (format) {
    case ExportFormat::Spreadsheet:
        return spreadsheet(results, problem);
    case ExportFormat::TidyCsv:
    case ExportFormat::PlateCsv:
        return csv(results, format);
    case ExportFormat::Json:
        return json(results);
    case ExportFormat::Png:
        return png(picture);
    case ExportFormat::Svg:
        return svg(picture);
    }
    return {};
}

} // namespace

QString suffixOf(ExportFormat format)
{
    switch (format) {
    case ExportFormat::Spreadsheet:
        return QStringLiteral("xlsx");
    case ExportFormat::TidyCsv:
    case ExportFormat::PlateCsv:
        return QStringLiteral("csv");
    case ExportFormat::Json:
        return QStringLiteral("json");
    case ExportFormat::Png:
        return QStringLiteral("png");
    case ExportFormat::Svg:
        return QStringLiteral("svg");
    }
    return {};
}

bool exportTo(const QString &path, ExportFormat format, const QVector<Result> &results,
              const PlatePicture &picture, QString *problem)
{
    const auto data = dataFor(format, results, picture, problem);
    if (!data)
        return false;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(*data) == data->size() && file.commit())
        return true;
    *problem =
        text("qelworkbench-cannot-write", QDir::toNativeSeparators(path), file.errorString());
    return false;
}

QString clipboardTable(const PlatePicture &picture)
{
    // Spreadsheets read numbers in the notation of the user's language.
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    QString table = picture.unit;
    for (int column = 0; column < picture.columns; ++column)
        table += QStringLiteral("\t%1").arg(column + 1);
    for (int row = 0; row < picture.rows; ++row) {
        table += QLatin1Char('\n') + rowName(row);
        for (int column = 0; column < picture.columns; ++column) {
            const double value = picture.values.value(row * picture.columns + column, NAN);
            table += QLatin1Char('\t');
            if (std::isfinite(value))
                table += locale.toString(value, 'g', QLocale::FloatingPointShortest);
        }
    }
    return table + QLatin1Char('\n');
}

} // namespace qelworkbench
