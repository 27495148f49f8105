#include "resultformat.h"

#include "listing.h"
#include "output.h"
#include "tool.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/platetext.h>
#include <qelfrontend/problems.h>
#include <qelfrontend/provenance.h>
#include <qelfrontend/runjson.h>

#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QStringList>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

std::optional<Format> formatNamed(const QString &name)
{
    for (const auto &[known, format] : {std::pair("table", Format::Table),
                                        {"plate", Format::Plate},
                                        {"csv", Format::Csv},
                                        {"json", Format::Json}}) {
        if (name == QLatin1String(known))
            return format;
    }
    return std::nullopt;
}

std::optional<Format> formatOfSuffix(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const auto &[known, format] : {std::pair("txt", Format::Table),
                                        {"csv", Format::Csv},
                                        {"json", Format::Json},
                                        {"jsonl", Format::Json}}) {
        if (suffix == QLatin1String(known))
            return format;
    }
    return std::nullopt;
}

bool fitsSuffix(Format format, const QString &path)
{
    const auto due = formatOfSuffix(path);
    return !due || *due == format || (*due == Format::Csv && format == Format::Plate);
}

bool isFormatFor(Format format, Device::DeviceFeature feature)
{
    return isMeasurement(feature) || format != Format::Plate;
}

static QString unitOf(const ResultContext &context)
{
    return printable(context.device->descriptor(context.feature)
                         .toHash()
                         .value(QStringLiteral("unit"))
                         .toString());
}

static QString valueText(const QVariant &value)
{
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return QString::number(value.toDouble());
    if (value.userType() == QMetaType::QDateTime)
        return value.toDateTime().toString(Qt::ISODate);
    if (value.canConvert<QString>())
        return printable(value.toString());
    Problem problem;
    const auto json = toJson(value, &problem);
    if (!json)
        return explain(problem);
    const QJsonValue plain =
        json->isObject() ? json->toObject().value(QStringLiteral("value")) : *json;
    return printable(plain.isString() ? plain.toString() : QString::fromUtf8(jsonText(plain)));
}

// A result that is no plate: the value, or a line for each entry of a record.
static QByteArray asText(const QVariant &result, const ResultContext &context)
{
    if (!result.isValid())
        return {};
    if (result.userType() != QMetaType::QVariantHash) {
        const QString unit = unitOf(context);
        return (valueText(result) + (unit.isEmpty() ? QString() : QLatin1Char(' ') + unit)).toUtf8()
            + '\n';
    }
    const QVariantHash record = result.toHash();
    QStringList keys = record.keys();
    keys.sort();
    QString lines;
    for (const QString &key : qAsConst(keys))
        lines += printable(key).leftJustified(16) + QLatin1Char(' ') + valueText(record.value(key))
            + QLatin1Char('\n');
    return lines.toUtf8();
}

static RunRecord recordOf(const Outcome &outcome, const ResultContext &context)
{
    const Device &device = *context.device;
    const bool isSeries = context.count > 1;
    return {device.deviceInfo(),
            pluginOfDevice(device),
            context.feature,
            device.descriptor(context.feature),
            device.configuration(context.feature),
            outcome,
            isSeries ? context.number : 0,
            isSeries ? context.count : 0,
            context.style.note};
}

static std::optional<QByteArray> asJson(const Outcome &outcome, const ResultContext &context,
                                        QString *problem)
{
    const auto json = runToJson(recordOf(outcome, context), problem);
    if (!json)
        return std::nullopt;
    return context.count > 1 ? inOneLine(*json) : indented(*json);
}

static CsvOptions csvOptions(const ResultContext &context)
{
    CsvOptions options;
    options.delimiter = context.style.delimiter;
    options.decimal = context.style.decimal;
    options.run = context.count > 1 ? context.number : 0;
    options.note = context.style.note;
    return options;
}

static QByteArray asCsv(const Outcome &outcome, const ResultContext &context)
{
    const CsvOptions options = csvOptions(context);
    return (context.isFirst ? valueCsvHeader(options) : QByteArray())
        + valueCsv(context.feature, outcome.result, unitOf(context), outcome.startedAt,
                   context.device->deviceInfo(), options);
}

// Above the table of a run: what the other formats have in columns.
static QByteArray heading(const Outcome &outcome, const ResultContext &context)
{
    QString lines;
    if (context.count > 1) {
        lines += text("qelctl-run-heading", QString::number(context.number),
                      QString::number(context.count),
                      outcome.startedAt.toLocalTime().toString(QStringLiteral("HH:mm:ss")))
            + QLatin1Char('\n');
    }
    if (!context.style.note.isEmpty())
        lines += printable(context.style.note) + QLatin1Char('\n');
    return lines.toUtf8();
}

std::optional<QByteArray> formatResult(const Outcome &outcome, Format format,
                                       const ResultContext &context, QString *problem)
{
    if (format == Format::Json)
        return asJson(outcome, context, problem);
    if (!isMeasurement(context.feature)) {
        return format == Format::Csv ? asCsv(outcome, context)
                                     : heading(outcome, context) + asText(outcome.result, context);
    }
    const auto plate = plateFromResult(context.feature, outcome.result, problem,
                                       context.device->descriptor(context.feature));
    if (!plate)
        return std::nullopt;
    const CsvOptions options = csvOptions(context);
    switch (format) {
    case Format::Plate:
        return (context.isFirst ? "" : "\r\n") + plateCsv(*plate, options);
    case Format::Csv:
        return (context.isFirst ? tidyCsvHeader(options) : QByteArray())
            + tidyCsv(*plate, context.device->deviceInfo(), options);
    default:
        break;
    }
    PlateTextStyle style;
    style.colors = usesColor(context.toTerminal);
    style.width = context.toTerminal ? terminalWidth(dataDescriptor()) : 0;
    return (context.isFirst ? "" : "\n") + heading(outcome, context)
        + plateText(*plate, style).toUtf8();
}

QJsonObject errorDocument(const Outcome &outcome, int code, const ResultContext &context)
{
    QJsonObject json = failureToJson(recordOf(outcome, context));
    json.insert(QStringLiteral("exitCode"), code);
    json.insert(QStringLiteral("run"),
                QJsonObject{{QStringLiteral("number"), context.number},
                            {QStringLiteral("of"), context.count}});
    return json;
}

QJsonObject refusalDocument(Device::DeviceFeature feature, int code)
{
    QJsonObject json = document(QStringLiteral("qeldevices-run-error"));
    json.insert(QStringLiteral("outcome"), QStringLiteral("refused"));
    json.insert(QStringLiteral("exitCode"), code);
    json.insert(QStringLiteral("errorCode"), 0);
    json.insert(QStringLiteral("errorId"), QString());
    json.insert(QStringLiteral("sentence"), lastComplaint());
    json.insert(QStringLiteral("details"), QString());
    json.insert(QStringLiteral("device"), QJsonValue::Null);
    json.insert(QStringLiteral("feature"),
                feature == Device::DF_None ? QJsonValue(QJsonValue::Null)
                                           : QJsonValue(featureName(feature)));
    json.insert(QStringLiteral("run"),
                QJsonObject{{QStringLiteral("number"), 1}, {QStringLiteral("of"), 1}});
    json.insert(QStringLiteral("delivered"), QJsonValue::Null);
    return json;
}

} // namespace qelctl
