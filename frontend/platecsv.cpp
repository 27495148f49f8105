#include "platecsv.h"

#include "wells.h"

#include <charconv>
#include <cmath>

namespace qel::frontend {

using namespace qel::devices;

namespace {

constexpr char lineEnd[] = "\r\n";

QByteArray quoted(const QString &text)
{
    QByteArray field = text.toUtf8();
    if (!field.contains(',') && !field.contains('"') && !field.contains('\n')
        && !field.contains('\r'))
        return field;
    return '"' + field.replace('"', "\"\"") + '"';
}

void appendNumber(QByteArray *line, double number)
{
    if (std::isnan(number))
        return;
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    line->append(digits, int(end.ptr - digits));
}

QByteArray number(const std::optional<double> &value)
{
    QByteArray digits;
    if (value)
        appendNumber(&digits, *value);
    return digits;
}

// The fields of a line that are the same for all wells of a read.
QByteArray readFields(const Plate &plate, int read, const DeviceInfo &device)
{
    const auto &wavelength = plate.reads[read].wavelength;
    const QByteArray fields[] = {
        quoted(device.name()),
        quoted(device.serial()),
        plate.startedAt.toString(Qt::ISODateWithMs).toUtf8(),
        number(plate.temperature),
        QByteArray::number(read + 1),
        wavelength ? QByteArray::number(*wavelength) : QByteArray(),
        plate.integrationTime ? QByteArray::number(qlonglong(plate.integrationTime->count()))
                              : QByteArray(),
    };
    QByteArray line;
    for (const QByteArray &field : fields)
        line += field + ',';
    return line;
}

} // namespace

QByteArray plateCsv(const Plate &plate)
{
    QByteArray csv;
    for (const PlateRead &read : plate.reads) {
        if (!csv.isEmpty())
            csv += lineEnd;
        csv += quoted(read.label == plate.unit
                          ? plate.unit
                          : QStringLiteral("%1 (%2)").arg(read.label, plate.unit));
        for (int column = 0; column < plate.columns; ++column)
            csv += ',' + QByteArray::number(column + 1);
        csv += lineEnd;
        for (int row = 0; row < plate.rows; ++row) {
            csv += rowName(row).toLatin1();
            for (int column = 0; column < plate.columns; ++column) {
                csv += ',';
                appendNumber(&csv, read.values[row * plate.columns + column]);
            }
            csv += lineEnd;
        }
    }
    return csv;
}

QByteArray tidyCsvHeader()
{
    return QByteArrayLiteral("device,serial,started_at,temperature_celsius,read,wavelength_nm,"
                             "integration_time_ms,well,row,column,value,unit\r\n");
}

QByteArray tidyCsv(const Plate &plate, const DeviceInfo &device)
{
    QByteArray csv;
    const QByteArray unit = ',' + quoted(plate.unit) + lineEnd;
    for (int read = 0; read < plate.reads.size(); ++read) {
        const QByteArray fields = readFields(plate, read, device);
        for (int row = 0; row < plate.rows; ++row) {
            const QByteArray letters = rowName(row).toLatin1();
            for (int column = 0; column < plate.columns; ++column) {
                const QByteArray digits = QByteArray::number(column + 1);
                csv += fields + letters + digits + ',' + letters + ',' + digits + ',';
                appendNumber(&csv, plate.reads[read].values[row * plate.columns + column]);
                csv += unit;
            }
        }
    }
    return csv;
}

} // namespace qel::frontend
