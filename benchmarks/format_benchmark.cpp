// Prints the processor time that it takes to write the result of a plate with 1536 wells in each
// format, and to read it back from JSON. Ends with 1 when one takes longer than the 5 ms that a
// user is promised.
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/platetext.h>
#include <qelfrontend/runjson.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

using namespace qel::devices;
using namespace qel::frontend;
using namespace qel::values;

static constexpr auto feature = Device::DF_AbsorbanceMeasurement;

// Values with all the digits that a double can have, which are the slowest to write.
static QVariant makeResult()
{
    QRandomGenerator random(1);
    QVector<double> values(1536);
    for (double &value : values)
        value = random.generateDouble() * 4;
    return QVariantHash{
        {QStringLiteral("rows"), 32},
        {QStringLiteral("columns"), 48},
        {QStringLiteral("unit"), QStringLiteral("OD")},
        {QStringLiteral("values"), QVariantList{QVariant::fromValue(values)}},
        {QStringLiteral("startedAt"), QDateTime::currentDateTimeUtc()},
        {QStringLiteral("temperature"), 25.5},
        {QStringLiteral("wavelengths"), QVariant::fromValue(QList<int>{450})},
    };
}

static bool measure(const char *name, const std::function<int()> &format)
{
    constexpr int rounds = 200;
    constexpr double allowed = 5;
    double sum = 0;
    double slowest = 0;
    int size = 0;
    for (int i = 0; i < rounds; ++i) {
        const std::clock_t before = std::clock();
        size = format();
        const double spent = double(std::clock() - before) * 1000 / CLOCKS_PER_SEC;
        sum += spent;
        slowest = std::max(slowest, spent);
    }
    std::printf("%-24s %8d bytes %7.3f ms mean %7.3f ms slowest\n", name, size, sum / rounds,
                slowest);
    return sum / rounds < allowed;
}

int main()
{
    const DeviceInfo device(DeviceInfo::Simulator, QStringLiteral("d"), QStringLiteral("1"),
                            QStringLiteral("Reader"), QStringLiteral("S1"));
    RunRecord record{device, {}, feature, QVariant(), QVariant(), {}};
    record.outcome.result = makeResult();
    record.outcome.startedAt = QDateTime::currentDateTimeUtc();
    QString problem;
    Problem unused;
    const auto plate = [&] { return *plateFromResult(feature, record.outcome.result, &problem); };
    const QByteArray json = jsonText(*toJson(record.outcome.result, &unused));

    bool isFast = measure("table", [&] { return plateText(plate()).toUtf8().size(); });
    isFast &= measure("table in colour", [&] {
        return plateText(plate(), {true, 100}).toUtf8().size();
    });
    isFast &= measure("plate CSV", [&] { return plateCsv(plate()).size(); });
    isFast &=
        measure("tidy CSV", [&] { return (tidyCsvHeader() + tidyCsv(plate(), device)).size(); });
    isFast &= measure("JSON",
                      [&] { return QJsonDocument(*runToJson(record, &problem)).toJson().size(); });
    isFast &= measure("read back from JSON", [&] {
        return fromJson(*parseJson(json, &unused), &unused) ? json.size() : 0;
    });
    return isFast ? 0 : 1;
}
