#include <qelfrontend/frontend.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/platetext.h>
#include <qelfrontend/runjson.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

using namespace qel::devices;
using namespace qel::frontend;
using namespace qel::values;

static QVariantHash absorbance()
{
    return {
        {QStringLiteral("rows"), 2},
        {QStringLiteral("columns"), 3},
        {QStringLiteral("unit"), QStringLiteral("OD")},
        {QStringLiteral("values"),
         QVariantList{QVariant::fromValue(QVector<double>{0.1, 0.25, 4, std::nan(""), 1e-7, 3}),
                      QVariant::fromValue(QVector<double>{1, 2, 3, 4, 5, qInf()})}},
        {QStringLiteral("startedAt"), QDateTime({2024, 5, 6}, {7, 8, 9, 10}, Qt::UTC)},
        {QStringLiteral("temperature"), 25.5},
        {QStringLiteral("wavelengths"), QVariant::fromValue(QList<int>{450, 620})},
    };
}

static QVariantHash with(QVariantHash result, const char *key, const QVariant &value)
{
    result.insert(QString::fromLatin1(key), value);
    return result;
}

static Plate plate(const QVariantHash &result)
{
    QString problem;
    return plateFromResult(Device::DF_AbsorbanceMeasurement, result, &problem).value_or(Plate());
}

class PlateTest : public QObject
{
    Q_OBJECT

private slots:
    void refusesMalformedResults_data();
    void refusesMalformedResults();
    void writesPlateCsv();
    void writesTidyCsv();
    void tellsRepeatedReadsApart();
    void writesLuminescence();
    void ignoresTheLocale();
    void writesText();
    void foldsAndPaintsText();
    void writesRunJson();
};

void PlateTest::refusesMalformedResults_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *name, const QVariant &result, const char *named) {
        QTest::newRow(name) << result << QString::fromLatin1(named);
    };
    const auto values = [](int count) { return QVariant::fromValue(QVector<double>(count, 1.0)); };
    const QVariantHash good = absorbance();
    row("nothing", QVariant(), "\"result\"");
    row("no size", with(good, "rows", QVariant()), "\"result.rows\"");
    row("size overflows", with(with(good, "rows", 1 << 16), "columns", 1 << 16), "65536 by 65536");
    row("read too short", with(good, "values", QVariantList{values(6), values(5)}),
        "\"result.values[1]\" with 5");
    row("too few wavelengths", with(good, "wavelengths", QVariant::fromValue(QList<int>{450})),
        "\"result.values\" with 2 reads");
}

void PlateTest::refusesMalformedResults()
{
    QFETCH(QVariant, result);
    QFETCH(QString, named);
    QString problem;
    QVERIFY(!plateFromResult(Device::DF_AbsorbanceMeasurement, result, &problem));
    QVERIFY2(problem.contains(named) && !problem.contains(QLatin1String("qelfrontend-"))
                 && !problem.contains(u'%'),
             qPrintable(problem));
}

void PlateTest::writesPlateCsv()
{
    QCOMPARE(plateCsv(plate(absorbance())),
             QByteArray("450 nm (OD),1,2,3\r\n"
                        "A,0.1,0.25,4\r\n"
                        "B,,1e-07,3\r\n"
                        "\r\n"
                        "620 nm (OD),1,2,3\r\n"
                        "A,1,2,3\r\n"
                        "B,4,5,inf\r\n"));
    // Only a quoted name may hold what separates cells.
    auto odd = plate(absorbance());
    odd.unit = QStringLiteral("a,\"b\"\n");
    QVERIFY(plateCsv(odd).startsWith("\"450 nm (a,\"\"b\"\"\n)\",1,2,3\r\n"));
}

void PlateTest::writesTidyCsv()
{
    const DeviceInfo device(DeviceInfo::UsbHid, QStringLiteral("d"), QStringLiteral("l"),
                            QStringLiteral("Reader, \"big\""), QStringLiteral("S1"));
    Plate whole = plate(absorbance());
    whole.maximum = 4;
    const QList<QByteArray> lines = (tidyCsvHeader() + tidyCsv(whole, device)).split('\n');
    QCOMPARE(lines.size(), 1 + 12 + 1);
    QCOMPARE(lines[0],
             QByteArray("device,serial,started_at,temperature_celsius,read,wavelength_nm,"
                        "integration_time_ms,well,row,column,value,unit,flag,run,note\r"));
    const QByteArray start = "\"Reader, \"\"big\"\"\",S1,2024-05-06T07:08:09.010Z,25.5,";
    QCOMPARE(lines[1], start + "1,450,,A1,A,1,0.1,OD,,,\r");
    QCOMPARE(lines[3], start + "1,450,,A3,A,3,4,OD,saturated,,\r");
    QCOMPARE(lines[4], start + "1,450,,B1,B,1,,OD,not measured,,\r");
    QCOMPARE(lines[12], start + "2,620,,B3,B,3,inf,OD,saturated,,\r");
    QVERIFY(plateText(whole).contains(QLatin1String(">4.000")));

    // For a spreadsheet that reads ";" and ",", and takes what begins with "=" for a formula.
    CsvOptions options;
    options.delimiter = ';';
    options.decimal = ',';
    options.run = 2;
    options.note = QStringLiteral("=SUM(A1)");
    const DeviceInfo formula(DeviceInfo::UsbHid, {}, {}, QStringLiteral("@x"),
                             QStringLiteral("-1"));
    QVERIFY(tidyCsv(whole, formula, options)
                .startsWith("\"'@x\";\"'-1\";2024-05-06T07:08:09.010Z;25,5;1;450;;A1;A;1;0,1;OD;;2;"
                            "\"'=SUM(A1)\"\r\n"));
    QVERIFY(
        plateCsv(whole, options)
            .startsWith("\"'=SUM(A1)\"\r\n450 nm (OD), run 2, 2024-05-06T07:08:09.010Z;1;2;3\r\n"
                        "A;0,1;"));
    QCOMPARE(valueCsv(Device::DF_AmbientTemperature, 21.5, QStringLiteral("°C"), whole.startedAt,
                      formula, options),
             QByteArray("\"'@x\";\"'-1\";2024-05-06T07:08:09.010Z;ambient-temperature;;21,5;°C;2;"
                        "\"'=SUM(A1)\"\r\n"));
}

void PlateTest::tellsRepeatedReadsApart()
{
    const auto twice =
        plate(with(absorbance(), "wavelengths", QVariant::fromValue(QList<int>{450, 450})));
    QCOMPARE(twice.reads[0].label, QStringLiteral("450 nm"));
    QCOMPARE(twice.reads[1].label, QStringLiteral("450 nm #2"));
}

void PlateTest::writesLuminescence()
{
    QVariantHash result = with(absorbance(), "unit", QStringLiteral("RLU/s"));
    result.remove(QStringLiteral("wavelengths"));
    result.insert(QStringLiteral("values"),
                  QVariantList{result.value(QStringLiteral("values")).toList().first()});
    result.insert(QStringLiteral("integrationTime"),
                  QVariant::fromValue(std::chrono::milliseconds(500)));
    QString problem;
    const auto plate = plateFromResult(Device::DF_LuminescenceMeasurement, result, &problem);
    QVERIFY2(plate, qPrintable(problem));
    QVERIFY(plateCsv(*plate).startsWith("RLU/s,1,2,3\r\n"));
    const DeviceInfo device(DeviceInfo::Serial, {}, {}, {}, {});
    QVERIFY(tidyCsv(*plate, device)
                .startsWith(",,2024-05-06T07:08:09.010Z,25.5,1,,500,A1,A,1,0.1,RLU/s,,,\r\n"));
}

void PlateTest::ignoresTheLocale()
{
    const QByteArray csv = plateCsv(plate(absorbance()));
    const QString text = plateText(plate(absorbance()));
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QByteArray germanCsv = plateCsv(plate(absorbance()));
    const QString germanText = plateText(plate(absorbance()));
    QLocale::setDefault(before);
    QCOMPARE(germanCsv, csv);
    QCOMPARE(germanText, text);
}

void PlateTest::writesText()
{
    QCOMPARE(plateText(plate(absorbance())),
             QStringLiteral("450 nm (OD)\n"
                            "      1     2     3\n"
                            "A 0.100 0.250 4.000\n"
                            "B     - 0.000 3.000\n"
                            "\n"
                            "620 nm (OD)\n"
                            "      1     2     3\n"
                            "A 1.000 2.000 3.000\n"
                            "B 4.000 5.000   inf\n"));
}

void PlateTest::foldsAndPaintsText()
{
    Plate large;
    large.rows = 32;
    large.columns = 48;
    large.unit = QStringLiteral("RLU/s");
    QVector<double> values(32 * 48);
    for (int i = 0; i < values.size(); ++i)
        values[i] = i * 10.0;
    values[0] = -std::numeric_limits<double>::max();
    values[1] = std::numeric_limits<double>::max();
    values[2] = std::nan("");
    values[3] = qInf();
    large.reads = {{large.unit, {}, values}};

    PlateTextStyle style;
    style.width = 60;
    const QString folded = plateText(large, style);
    int cells = 0;
    for (const QString &line : folded.split(u'\n')) {
        QVERIFY2(line.size() <= style.width, qPrintable(line));
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        if (words.size() > 1 && words[0][0].isLetter())
            cells += words.size() - 1;
    }
    QCOMPARE(cells, 1536);

    // Without its colours, a painted table is the plain one.
    style.colors = true;
    QString painted = plateText(large, style);
    QVERIFY(painted.count(QStringLiteral("\033[0m")) == 1535);
    QCOMPARE(painted.remove(QRegularExpression(QStringLiteral("\033\\[[0-9;]*m"))), folded);

    // A terminal too narrow for anything still gets everything.
    style.width = 1;
    style.colors = false;
    QVERIFY(plateText(large, style).contains(QLatin1String("AF")));
}

void PlateTest::writesRunJson()
{
    const DeviceInfo device(DeviceInfo::Simulator, QStringLiteral("d"), QStringLiteral("l"),
                            QStringLiteral("n"), QStringLiteral("s"));
    RunRecord record{device,
                     {},
                     Device::DF_AbsorbanceMeasurement,
                     QVariantHash{{QStringLiteral("maximum"), 4.0}},
                     QVariant(),
                     {}};
    record.configuration =
        QVariantHash{{QStringLiteral("wavelengths"), QVariant::fromValue(QList<int>{450, 620})}};
    record.outcome.result = absorbance();
    record.outcome.startedAt = QDateTime({2024, 5, 6}, {7, 8, 9}, Qt::UTC);
    record.outcome.elapsed = std::chrono::milliseconds(1234);
    QString problem;
    auto json = runToJson(record, &problem);
    QVERIFY2(json, qPrintable(problem));

    const QJsonObject document = *json;
    QCOMPARE(document[QStringLiteral("version")].toInt(), runJsonVersion);
    QCOMPARE(document[QStringLiteral("plugin")], QJsonValue(QJsonValue::Null));
    QCOMPARE(document[QStringLiteral("feature")].toString(),
             QStringLiteral("DF_AbsorbanceMeasurement"));
    QCOMPARE(document[QStringLiteral("elapsed")].toDouble(), 1.234);
    QCOMPARE(jsonText(document[QStringLiteral("configuration")]),
             QByteArray(R"({"wavelengths":[450,620]})"));
    QCOMPARE(
        jsonText(document[QStringLiteral("plate")]),
        QByteArray(
            R"({"columns":3,"integrationTime":null,"maximum":4,"reads":[)"
            R"({"label":"450 nm","saturated":["A3"],"values":[[0.1,0.25,4],[null,1e-07,3]],)"
            R"("wavelength":450},)"
            R"({"label":"620 nm","saturated":["B1","B2","B3"],"values":[[1,2,3],[4,5,"inf"]],"wavelength":620}],)"
            R"("rows":2,"startedAt":"2024-05-06T07:08:09.010Z","temperature":25.5,)"
            R"("unit":"OD"})"));
    // The result comes back as the device delivered it.
    Problem unreadable;
    const auto result = fromJson(document[QStringLiteral("result")], &unreadable);
    QVERIFY2(result, qPrintable(toString(unreadable)));
    QCOMPARE(plateCsv(plate(result->toHash())), plateCsv(plate(absorbance())));

    record.outcome.result = QVariantHash();
    QVERIFY(!runToJson(record, &problem));
    record.feature = Device::DF_FirmwareInfo;
    json = runToJson(record, &problem);
    QVERIFY(json && !json->contains(QStringLiteral("plate")));
    record.outcome.result = QVariant::fromValue(QSizeF());
    QVERIFY(!runToJson(record, &problem));
}

QTEST_GUILESS_MAIN(PlateTest)
#include "tst_plate.moc"
