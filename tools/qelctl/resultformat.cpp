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
#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QStringList>

#include <unistd.h>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

std::optional<Format> formatNamed(const QString &name)
{
    const QStringList names{QStringLiteral("table"), QStringLiteral("plate"), QStringLiteral("csv"),
                            QStringLiteral("json")};
    const int index = names.indexOf(name);
    return index >= 0 ? std::optional(Format(index)) : std::nullopt;
}

bool isFormatFor(Format format, Device::DeviceFeature feature)
{
    return isMeasurement(feature) || format == Format::Table || format == Format::Json;
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

static std::optional<QByteArray> asJson(const Outcome &outcome, const ResultContext &context,
                                        QString *problem)
{
    const Device &device = *context.device;
    const RunRecord record{device.deviceInfo(),
                           pluginOfDriver(device.driver()),
                           context.feature,
                           device.descriptor(context.feature),
                           device.configuration(context.feature),
                           outcome};
    const auto json = runToJson(record, problem);
    if (!json)
        return std::nullopt;
    return context.oneOfMany ? inOneLine(*json) : indented(*json);
}

std::optional<QByteArray> formatResult(const Outcome &outcome, Format format,
                                       const ResultContext &context, QString *problem)
{
    if (format == Format::Json)
        return asJson(outcome, context, problem);
    if (!isMeasurement(context.feature))
        return asText(outcome.result, context);
    const auto plate = plateFromResult(context.feature, outcome.result, problem);
    if (!plate)
        return std::nullopt;
    const QByteArray gap = context.number > 0 ? "\r\n" : "";
    switch (format) {
    case Format::Plate:
        return gap + plateCsv(*plate);
    case Format::Csv:
        return (context.number > 0 ? QByteArray() : tidyCsvHeader())
            + tidyCsv(*plate, context.device->deviceInfo());
    default:
        break;
    }
    PlateTextStyle style;
    style.colors = usesColor(context.toTerminal);
    style.width = context.toTerminal ? terminalWidth(STDOUT_FILENO) : 0;
    return (context.number > 0 ? "\n" : "") + plateText(*plate, style).toUtf8();
}

} // namespace qelctl
