#include "scenario.h"

#include <QtTest/QtTest>

using namespace qel::simulator;

class tst_Scenario : public QObject
{
    Q_OBJECT

private slots:
    void builtIn();
    void defaults();
    void brokenScenarios_data();
    void brokenScenarios();
    void damagedTextNeverPasses();
};

static QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(fileName));
    return file.readAll();
}

void tst_Scenario::builtIn()
{
    const Scenario scenario = parseScenario(builtInScenario());
    QCOMPARE(scenario.mistakes, QStringList());
    QCOMPARE(scenario.instruments.size(), 2);
    QCOMPARE(scenario.instruments.at(0).model.format.wells(), 96);
    QVERIFY(scenario.instruments.at(0).model.features.contains(
        qel::devices::Device::DF_AbsorbanceMeasurement));
    QVERIFY(scenario.instruments.at(1).model.features.contains(
        qel::devices::Device::DF_LuminescenceMeasurement));
}

void tst_Scenario::defaults()
{
    const Scenario scenario = parseScenario(R"({"timeScale": 0.5, "instruments": [
        {"model": "combined-384"}, {"model": "absorbance-96", "plate": null, "timeScale": 2},
        {"model": "combined-384", "wells": 1536}]})");
    QCOMPARE(scenario.mistakes, QStringList());
    const auto &first = scenario.instruments.at(0);
    const auto &second = scenario.instruments.at(1);
    QCOMPARE(first.serial, QStringLiteral("SIM-0001"));
    QCOMPARE(second.location, QStringLiteral("bench-2"));
    QCOMPARE(first.timeScale, 0.5);
    QCOMPARE(second.timeScale, 2.0);
    QVERIFY(first.plate && !second.plate);
    QCOMPARE(first.plate->volume, 80.0); // what a well of this model holds
    const auto &third = scenario.instruments.at(2);
    QCOMPARE(third.model.format.rows, 32);
    QCOMPARE(third.plate->volume, 8.0);
    QVERIFY(first.source != second.source);
}

void tst_Scenario::brokenScenarios_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(BROKEN_SCENARIOS);
    const QStringList files = folder.entryList({"*.json"});
    QVERIFY(files.size() > 10);
    for (const QString &file : files)
        QTest::addRow("%s", qPrintable(file)) << folder.filePath(file);
}

// Beside each broken scenario stands what is to be said of it, one mistake a line.
void tst_Scenario::brokenScenarios()
{
    QFETCH(QString, path);
    const Scenario scenario = parseScenario(contents(path));
    const QString expected = QString::fromUtf8(contents(path.chopped(5) + ".txt"));
    QCOMPARE(scenario.mistakes.join('\n') + '\n', expected);
    QVERIFY(scenario.instruments.isEmpty());
}

// Cut anywhere, a scenario is no scenario; changed anywhere, it never crashes the parser.
void tst_Scenario::damagedTextNeverPasses()
{
    const QByteArray whole = builtInScenario();
    for (int size = 0; size < whole.size(); ++size)
        QVERIFY(!parseScenario(whole.left(size)).mistakes.isEmpty());
    for (int i = 0; i < whole.size(); ++i) {
        QByteArray changed = whole;
        changed[i] = char(changed.at(i) ^ 0x15);
        const Scenario scenario = parseScenario(changed);
        QVERIFY(scenario.mistakes.isEmpty() || scenario.instruments.isEmpty());
    }
}

QTEST_GUILESS_MAIN(tst_Scenario)
#include "tst_scenario.moc"
