#include "runjson.h"

#include "configuration.h"
#include "messages_p.h"
#include "plate.h"
#include "problems.h"
#include "selection.h"
#include "wells.h"

#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDebug>
#include <QtCore/QJsonArray>

#include <cmath>
#include <limits>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

namespace {

QString timeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QJsonValue valueToJson(double value)
{
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    return std::isnan(value) ? QJsonValue(QJsonValue::Null) : QJsonValue(value);
}

// What valueToJson() wrote; nothing for null.
std::optional<double> valueFromJson(const QJsonValue &json)
{
    if (json == QLatin1String("inf") || json == QLatin1String("-inf")) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        return json == QLatin1String("inf") ? infinity : -infinity;
    }
    return json.isDouble() ? std::optional(json.toDouble()) : std::nullopt;
}

template<typename T, typename Write>
QJsonValue orNull(const std::optional<T> &value, Write write)
{
    return value ? QJsonValue(write(*value)) : QJsonValue(QJsonValue::Null);
}

QJsonObject readToJson(const PlateRead &read, const Plate &plate)
{
    QJsonArray rows;
    QJsonArray saturated;
    for (int row = 0; row < plate.rows; ++row) {
        QJsonArray values;
        for (int column = 0; column < plate.columns; ++column) {
            const double value = read.values[row * plate.columns + column];
            values.append(valueToJson(value));
            if (plate.isSaturated(value))
                saturated.append(wellName(row, column));
        }
        rows.append(values);
    }
    return {
        {QStringLiteral("label"), read.label},
        {QStringLiteral("wavelength"), orNull(read.wavelength, [](int nm) { return nm; })},
        {QStringLiteral("values"), rows},
        {QStringLiteral("saturated"), saturated},
    };
}

QJsonObject plateToJson(const Plate &plate)
{
    QJsonArray reads;
    for (const PlateRead &read : plate.reads)
        reads.append(readToJson(read, plate));
    return {
        {QStringLiteral("rows"), plate.rows},
        {QStringLiteral("columns"), plate.columns},
        {QStringLiteral("unit"), plate.unit},
        {QStringLiteral("startedAt"),
         plate.startedAt.isValid() ? QJsonValue(timeText(plate.startedAt))
                                   : QJsonValue(QJsonValue::Null)},
        {QStringLiteral("temperature"), orNull(plate.temperature, valueToJson)},
        {QStringLiteral("integrationTime"),
         orNull(plate.integrationTime, [](auto time) { return double(time.count()); })},
        {QStringLiteral("maximum"), orNull(plate.maximum, valueToJson)},
        {QStringLiteral("reads"), reads},
    };
}

QJsonValue pluginToJson(const std::optional<DeviceBroker::DevicePluginInfo> &plugin)
{
    if (!plugin)
        return QJsonValue::Null;
    return QJsonObject{
        {QStringLiteral("file"), plugin->fileName},
        {QStringLiteral("manufacturer"), plugin->manufacturer},
        {QStringLiteral("version"), plugin->version},
    };
}

std::optional<DeviceBroker::DevicePluginInfo> pluginFromJson(const QJsonValue &json)
{
    if (!json.isObject())
        return {};
    DeviceBroker::DevicePluginInfo plugin;
    plugin.fileName = json[QLatin1String("file")].toString();
    plugin.manufacturer = json[QLatin1String("manufacturer")].toString();
    plugin.version = json[QLatin1String("version")].toString();
    return plugin;
}

DeviceInfo deviceFromJson(const QJsonObject &json)
{
    const auto part = [&json](const char *key) {
        return json.value(QLatin1String(key)).toString();
    };
    return {interfaceNamed(part("interface")), part("driver"), part("location"), part("name"),
            part("serial")};
}

QString outcomeName(Outcome::Kind kind)
{
    switch (kind) {
    case Outcome::Unfinished:
        return QStringLiteral("unfinished");
    case Outcome::Result:
        return QStringLiteral("result");
    case Outcome::Refused:
        return QStringLiteral("refused");
    case Outcome::CannotOpen:
        return QStringLiteral("cannot-open");
    case Outcome::Failed:
        return QStringLiteral("failed");
    case Outcome::AbortedByUser:
        return QStringLiteral("aborted-by-user");
    case Outcome::TimedOut:
        return QStringLiteral("timed-out");
    case Outcome::DeviceGone:
        return QStringLiteral("device-gone");
    }
    return {};
}

// What the documents of all runs hold.
QJsonObject documentOf(const RunRecord &record, const QString &format)
{
    QJsonObject document{
        {QStringLiteral("format"), format},
        {QStringLiteral("version"), runJsonVersion},
        {QStringLiteral("library"), version()},
        {QStringLiteral("device"), deviceToJson(record.device)},
        {QStringLiteral("plugin"), pluginToJson(record.plugin)},
        {QStringLiteral("feature"), featureName(record.feature)},
        {QStringLiteral("configuration"),
         writeConfiguration(record.configuration, record.descriptor)},
        {QStringLiteral("startedAt"), timeText(record.outcome.startedAt)},
        {QStringLiteral("elapsed"), double(record.outcome.elapsed.count()) / 1000},
    };
    if (record.number > 0) {
        document.insert(QStringLiteral("run"),
                        QJsonObject{{QStringLiteral("number"), record.number},
                                    {QStringLiteral("of"), record.count}});
    }
    if (!record.note.isEmpty())
        document.insert(QStringLiteral("note"), record.note);
    return document;
}

// `value` with all that JSON can tell as it is, and the rest as text.
QVariant tellable(const QVariant &value)
{
    Problem problem;
    if (toJson(value, &problem))
        return value;
    if (value.userType() == QMetaType::QVariantHash) {
        QVariantHash hash = value.toHash();
        for (QVariant &entry : hash)
            entry = tellable(entry);
        return hash;
    }
    if (value.userType() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant &entry : list)
            entry = tellable(entry);
        return list;
    }
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

} // namespace

QJsonObject deviceToJson(const DeviceInfo &device)
{
    return {
        {QStringLiteral("interface"), interfaceName(device.interface())},
        {QStringLiteral("driver"), device.driver()},
        {QStringLiteral("location"), device.location()},
        {QStringLiteral("name"), device.name()},
        {QStringLiteral("serial"), device.serial()},
    };
}

std::optional<QJsonObject> runToJson(const RunRecord &record, QString *problem)
{
    Problem unwritable;
    const auto result = toJson(record.outcome.result, &unwritable);
    if (!result) {
        *problem = explain(unwritable);
        return {};
    }
    QJsonObject document = documentOf(record, QStringLiteral("qeldevices-run"));
    document.insert(QStringLiteral("result"), *result);
    if (isMeasurement(record.feature)) {
        const auto plate =
            plateFromResult(record.feature, record.outcome.result, problem, record.descriptor);
        if (!plate)
            return {};
        document.insert(QStringLiteral("plate"), plateToJson(*plate));
    }
    return document;
}

std::optional<RunDocument> readRunDocument(const QByteArray &text, QString *problem)
{
    Problem mistake;
    const auto json = parseJson(text, &mistake);
    if (json && json->isObject())
        return readRunDocument(json->toObject(), problem);
    *problem = json ? message("qelfrontend-document-other") : explain(mistake);
    return {};
}

std::optional<RunDocument> readRunDocument(const QJsonObject &json, QString *problem)
{
    const auto member = [](const QJsonObject &object, const char *key) {
        return object.value(QLatin1String(key));
    };
    if (member(json, "format") != QLatin1String("qeldevices-run")) {
        *problem = message("qelfrontend-document-other");
        return {};
    }
    if (const int found = member(json, "version").toInt(); found != runJsonVersion) {
        *problem = message("qelfrontend-document-version", QString::number(found),
                           QString::number(runJsonVersion));
        return {};
    }
    const auto feature = selectFeature(member(json, "feature").toString(), problem);
    if (!feature)
        return {};
    Problem mistake;
    const auto result = fromJson(member(json, "result"), &mistake);
    if (!result) {
        *problem = explain(mistake);
        return {};
    }
    Outcome outcome;
    outcome.kind = Outcome::Result;
    outcome.result = *result;
    outcome.startedAt =
        QDateTime::fromString(member(json, "startedAt").toString(), Qt::ISODateWithMs);
    outcome.elapsed =
        std::chrono::milliseconds(qRound64(member(json, "elapsed").toDouble() * 1000));
    const QJsonObject run = member(json, "run").toObject();
    RunDocument document{{deviceFromJson(member(json, "device").toObject()),
                          pluginFromJson(member(json, "plugin")),
                          *feature,
                          {},
                          {},
                          outcome,
                          member(run, "number").toInt(),
                          member(run, "of").toInt(),
                          member(json, "note").toString()},
                         {},
                         json};
    if (!isMeasurement(*feature))
        return document;
    document.plate = plateFromResult(*feature, *result, problem);
    if (!document.plate)
        return {};
    document.plate->maximum = valueFromJson(member(member(json, "plate").toObject(), "maximum"));
    return document;
}

QJsonObject failureToJson(const RunRecord &record)
{
    QJsonObject document = documentOf(record, QStringLiteral("qeldevices-run-error"));
    const Outcome &outcome = record.outcome;
    document.insert(QStringLiteral("outcome"), outcomeName(outcome.kind));
    document.insert(QStringLiteral("errorCode"), outcome.code);
    document.insert(QStringLiteral("errorId"), outcome.trId);
    document.insert(QStringLiteral("sentence"), outcome.sentence);
    document.insert(QStringLiteral("details"), outcome.additionalInfo);
    Problem problem;
    const auto delivered = toJson(tellable(outcome.delivered), &problem);
    document.insert(QStringLiteral("delivered"),
                    outcome.delivered.isValid() && delivered ? *delivered
                                                             : QJsonValue(QJsonValue::Null));
    return document;
}

} // namespace qel::frontend
