// Feeds what the fuzzer makes up to everything that reads JSON or a driver's values.
#include <qelfrontend/configuration.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/platetext.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonObject>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace qel::devices;
using namespace qel::frontend;
using namespace qel::values;

static void require(bool holds, const char *what, const QString &details = {})
{
    if (holds)
        return;
    std::fprintf(stderr, "%s: %s\n", what, qPrintable(details));
    std::abort();
}

// What was read can be written, and comes back the same.
static void writeAndReadAgain(const QVariant &value)
{
    Problem problem;
    const auto json = toJson(value, &problem);
    require(bool(json), "cannot write what was read", toString(problem));
    const QByteArray text = jsonText(*json);
    const auto parsed = parseJson(text, &problem);
    require(bool(parsed), "cannot parse what was written", toString(problem));
    const auto again = fromJson(*parsed, &problem);
    require(bool(again), "cannot read what was written", toString(problem));
    const auto jsonAgain = toJson(*again, &problem);
    require(jsonAgain && jsonText(*jsonAgain) == text, "comes back as another", text);
}

static void useAsResult(const QVariant &value)
{
    QString problem;
    const auto plate = plateFromResult(Device::DF_AbsorbanceMeasurement, value, &problem);
    require(plate || !problem.isEmpty(), "refused without a word");
    if (!plate)
        return;
    plateCsv(*plate);
    plateText(*plate, {true, 80});
}

static void useAsDescriptor(const QVariant &value, const QJsonObject &configuration)
{
    QStringList problems;
    const auto record = readConfiguration(configuration, value, &problems);
    require(record || !problems.isEmpty(), "refused without a word");
    if (record)
        writeConfiguration(*record, value);
    // Each setting is given something, whatever it is.
    const QVariantHash settings = value.toHash().value(QStringLiteral("settings")).toHash();
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        QJsonObject assigned;
        QString problem;
        for (const char *given : {"=1", "=true", "=A1:B2", "=[1,[]]", "=#123456", "=a,b"})
            if (assignSetting(&assigned, it.key() + QLatin1String(given), value, &problem))
                readConfiguration(assigned, value, &problems);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Problem problem;
    const auto json =
        parseJson(QByteArray(reinterpret_cast<const char *>(data), int(size)), &problem);
    if (!json)
        return 0;
    const auto value = fromJson(*json, &problem);
    if (!value)
        return 0;
    writeAndReadAgain(*value);
    useAsResult(*value);
    useAsDescriptor(*value, json->toObject());
    return 0;
}
