#include "platecsv.h"

#include "wells.h"

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QStringList>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qel::frontend {

using namespace qel::devices;

namespace {

constexpr char lineEnd[] = "\r\n";

class Writer
{
public:
    explicit Writer(const CsvOptions &options)
        : m_options(options)
    { }

    QByteArray text(const QString &text) const
    {
        QByteArray field = text.toUtf8();
        const bool isFormula = !field.isEmpty() && QByteArray("=+-@\t\r").contains(field.at(0));
        if (isFormula)
            field.prepend('\'');
        if (!isFormula && !field.contains(m_options.delimiter) && !field.contains('"')
            && !field.contains('\n') && !field.contains('\r'))
            return field;
        return '"' + field.replace('"', "\"\"") + '"';
    }

    void append(QByteArray *line, double number) const
    {
        if (std::isnan(number))
            return;
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, number);
        if (m_options.decimal != '.')
            std::replace(digits, end.ptr, '.', m_options.decimal);
        line->append(digits, int(end.ptr - digits));
    }

    QByteArray number(const std::optional<double> &value) const
    {
        QByteArray digits;
        if (value)
            append(&digits, *value);
        return digits;
    }

    QByteArray line(const QByteArrayList &fields) const
    {
        return fields.join(m_options.delimiter) + lineEnd;
    }

    QByteArray run() const
    {
        return m_options.run > 0 ? QByteArray::number(m_options.run) : QByteArray();
    }

private:
    const CsvOptions &m_options;
};

QByteArray timeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs).toUtf8();
}

// The fields of a line that are the same for all wells of a read.
QByteArray readFields(const Plate &plate, int read, const DeviceInfo &device, const Writer &writer,
                      char delimiter)
{
    const auto &wavelength = plate.reads[read].wavelength;
    const QByteArray fields[] = {
        writer.text(device.name()),
        writer.text(device.serial()),
        timeText(plate.startedAt),
        writer.number(plate.temperature),
        QByteArray::number(read + 1),
        wavelength ? QByteArray::number(*wavelength) : QByteArray(),
        plate.integrationTime ? QByteArray::number(qlonglong(plate.integrationTime->count()))
                              : QByteArray(),
    };
    QByteArray line;
    for (const QByteArray &field : fields)
        line += field + delimiter;
    return line;
}

QString titleOf(const Plate &plate, const PlateRead &read, const CsvOptions &options)
{
    QString title = read.label == plate.unit
        ? plate.unit
        : QStringLiteral("%1 (%2)").arg(read.label, plate.unit);
    if (options.run > 0) {
        title += QStringLiteral(", run %1, %2")
                     .arg(options.run)
                     .arg(QString::fromUtf8(timeText(plate.startedAt)));
    }
    return title;
}

// Appended one by one: a chain of + would make an array for each step, for every well of a plate.
template<typename... Parts>
void appendAll(QByteArray *line, const Parts &...parts)
{
    (line->append(parts), ...);
}

QByteArray valueText(const QVariant &value, const Writer &writer)
{
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return writer.number(value.toDouble());
    if (value.userType() == QMetaType::QDateTime)
        return timeText(value.toDateTime());
    if (value.canConvert<QString>())
        return writer.text(value.toString());
    const auto json = values::contentToJson(value);
    return json ? writer.text(json->isString() ? json->toString()
                                               : QString::fromUtf8(values::jsonText(*json)))
                : QByteArray();
}

} // namespace

QByteArray plateCsv(const Plate &plate, const CsvOptions &options)
{
    const Writer writer(options);
    QByteArray csv;
    for (const PlateRead &read : plate.reads) {
        if (!csv.isEmpty())
            csv += lineEnd;
        if (!options.note.isEmpty())
            csv += writer.text(options.note) + lineEnd;
        csv += writer.text(titleOf(plate, read, options));
        for (int column = 0; column < plate.columns; ++column)
            csv += options.delimiter + QByteArray::number(column + 1);
        csv += lineEnd;
        for (int row = 0; row < plate.rows; ++row) {
            csv += rowName(row).toLatin1();
            for (int column = 0; column < plate.columns; ++column) {
                csv += options.delimiter;
                writer.append(&csv, read.values[row * plate.columns + column]);
            }
            csv += lineEnd;
        }
    }
    return csv;
}

QByteArray tidyCsvHeader(const CsvOptions &options)
{
    return Writer(options).line({"device", "serial", "started_at", "temperature_celsius", "read",
                                 "wavelength_nm", "integration_time_ms", "well", "row", "column",
                                 "value", "unit", "flag", "run", "note"});
}

QByteArray tidyCsv(const Plate &plate, const DeviceInfo &device, const CsvOptions &options)
{
    const Writer writer(options);
    const char next = options.delimiter;
    const QByteArray unit = next + writer.text(plate.unit) + next;
    const QByteArray end = next + writer.run() + next + writer.text(options.note) + lineEnd;
    QByteArray csv;
    for (int read = 0; read < plate.reads.size(); ++read) {
        const QByteArray fields = readFields(plate, read, device, writer, next);
        constexpr int widest = 64; // of the well, its row and column, the value and the flag
        csv.reserve(csv.size()
                    + plate.rows * plate.columns
                        * (fields.size() + unit.size() + end.size() + widest));
        for (int row = 0; row < plate.rows; ++row) {
            const QByteArray letters = rowName(row).toLatin1();
            for (int column = 0; column < plate.columns; ++column) {
                const double value = plate.reads[read].values[row * plate.columns + column];
                const QByteArray digits = QByteArray::number(column + 1);
                appendAll(&csv, fields, letters, digits, next, letters, next, digits, next);
                writer.append(&csv, value);
                const char *flag = std::isnan(value) ? "not measured"
                    : plate.isSaturated(value)       ? "saturated"
                                                     : "";
                appendAll(&csv, unit, flag, end);
            }
        }
    }
    return csv;
}

QByteArray valueCsvHeader(const CsvOptions &options)
{
    return Writer(options).line(
        {"device", "serial", "started_at", "feature", "key", "value", "unit", "run", "note"});
}

QByteArray valueCsv(Device::DeviceFeature feature, const QVariant &result, const QString &unit,
                    const QDateTime &startedAt, const DeviceInfo &device, const CsvOptions &options)
{
    const Writer writer(options);
    const auto line = [&](const QString &key, const QVariant &value, const QString &unitOfValue) {
        return writer.line({writer.text(device.name()), writer.text(device.serial()),
                            timeText(startedAt), values::featureArgument(feature).toUtf8(),
                            writer.text(key), valueText(value, writer), writer.text(unitOfValue),
                            writer.run(), writer.text(options.note)});
    };
    if (result.userType() != QMetaType::QVariantHash)
        return line(QString(), result, unit);
    const QVariantHash record = result.toHash();
    QStringList keys = record.keys();
    keys.sort();
    QByteArray csv;
    for (const QString &key : std::as_const(keys))
        csv += line(key, record.value(key), QString());
    return csv;
}

} // namespace qel::frontend
