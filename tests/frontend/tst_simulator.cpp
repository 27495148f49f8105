// The whole way from a driver plugin to a file, with simulated instruments of every model.
#include "configuration.h"
#include "enumeration.h"
#include "frontend.h"
#include "plate.h"
#include "platecsv.h"
#include "run.h"
#include "runjson.h"
#include "selection.h"

#include <qeldevices/devicebroker.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

using namespace qel::devices;
using namespace qel::frontend;
using namespace qel::values;

class SimulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void findsThePlugin();
    void runsEveryFeature_data();
    void runsEveryFeature();
    void measuresAsConfigured_data();
    void measuresAsConfigured();
    void declinesTheCalibration();

private:
    RunRecord run(const QString &device, Device::DeviceFeature feature,
                  const QJsonObject &configuration);

    QTemporaryFile m_scenario;
};

static const char scenario[] = R"({"timeScale": 0, "instruments": [
    {"model": "absorbance-96", "serial": "A", "plate": {"layout": "elisa"}},
    {"model": "luminescence-96", "serial": "L", "plate": {"layout": "elisa"}},
    {"model": "combined-384", "serial": "C", "plate": {"layout": "elisa"}},
    {"model": "identity-only", "serial": "I"}
]})";

void SimulatorTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("qel.devices.info=false\nqel.devices.debug=false"));
    registerMetaTypes();
    QVERIFY(m_scenario.open());
    m_scenario.write(scenario);
    m_scenario.close();
    qputenv("QELDEVICES_SIMULATOR", m_scenario.fileName().toUtf8());
    QVERIFY(DeviceBroker::loadPlugin(QStringLiteral(SIMULATOR)));
    QCOMPARE(enumerate().devices().size(), 4);
}

void SimulatorTest::findsThePlugin()
{
    const auto plugin = pluginOfDriver(QStringLiteral("simulator"));
    QVERIFY(plugin);
    QCOMPARE(plugin->fileName, QStringLiteral(SIMULATOR));
    QVERIFY(!plugin->version.isEmpty());
}

// Declines everything that the device asks for.
RunRecord SimulatorTest::run(const QString &device, Device::DeviceFeature feature,
                             const QJsonObject &configuration)
{
    QString problem;
    const auto info = *selectDevice(device, enumerate().devices(), &problem);
    RunRecord record{info, {}, feature, QVariant(), QVariant(), {}};
    const std::unique_ptr<Device> instrument(DeviceBroker::createDevice(info));
    RunRequest request;
    request.feature = feature;
    request.deadline = std::chrono::seconds(20);
    request.configure = [&](const QVariant &descriptor, QString *wrong) -> std::optional<QVariant> {
        record.descriptor = descriptor;
        QStringList problems;
        const auto read = readConfiguration(configuration, descriptor, &problems);
        *wrong = problems.join(u'\n');
        record.configuration = read.value_or(QVariant());
        return read;
    };
    Run run(instrument.get(), request);
    connect(&run, &Run::actionRequired, &run, [&run](int id) { run.abortAction(id); });
    QSignalSpy end(&run, &Run::finished);
    run.start();
    end.wait(30000);
    record.outcome = run.outcome();
    return record;
}

void SimulatorTest::runsEveryFeature_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<int>("feature");
    const auto devices = enumerate().devices();
    for (const DeviceInfo &info : devices) {
        const std::unique_ptr<Device> device(DeviceBroker::createDevice(info));
        Run opening(device.get(), {});
        QSignalSpy end(&opening, &Run::finished);
        opening.start();
        QVERIFY(end.wait(30000) && opening.outcome().isResult());
        for (const auto feature : offeredFeatures(*device)) {
            // These two need more than their defaults.
            if (feature != Device::DF_Calibration && feature != Device::DF_FirmwareUpdate)
                QTest::addRow("%s %s", qPrintable(info.serial()),
                              qPrintable(featureArgument(feature)))
                    << info.serial() << int(feature);
        }
    }
}

void SimulatorTest::runsEveryFeature()
{
    QFETCH(QString, device);
    QFETCH(int, feature);
    const auto record = run(device, static_cast<Device::DeviceFeature>(feature), {});
    QVERIFY2(record.outcome.isResult(), qPrintable(record.outcome.sentence));

    QString problem;
    const auto json = runToJson(record, &problem);
    QVERIFY2(json, qPrintable(problem));
    // What the record says of the configuration makes the same run again.
    QStringList problems;
    const auto configuration = readConfiguration(
        json->value(QStringLiteral("configuration")).toObject(), record.descriptor, &problems);
    QVERIFY2(configuration, qPrintable(problems.join(u'\n')));
    const auto asJson = [](const QVariant &value) {
        Problem unused;
        return jsonText(toJson(value, &unused).value_or(QJsonValue::Undefined));
    };
    QCOMPARE(asJson(*configuration), asJson(record.configuration));
}

void SimulatorTest::measuresAsConfigured_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<int>("feature");
    QTest::addColumn<QString>("assignment");
    QTest::addColumn<int>("reads");
    QTest::addColumn<int>("values");
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    QTest::newRow("two wavelengths")
        << s("A") << int(Device::DF_AbsorbanceMeasurement) << s("wavelengths=450,620") << 2 << 192;
    QTest::newRow("some wells") << s("L") << int(Device::DF_LuminescenceMeasurement)
                                << s("selectedWells=A1:B3,H12") << 1 << 7;
}

void SimulatorTest::measuresAsConfigured()
{
    QFETCH(QString, device);
    QFETCH(int, feature);
    QFETCH(QString, assignment);
    QFETCH(int, reads);
    QFETCH(int, values);
    const auto measurement = static_cast<Device::DeviceFeature>(feature);
    // The descriptor is known once the device has run.
    QVariant descriptor = run(device, measurement, {}).descriptor;
    QJsonObject configuration;
    QString problem;
    QVERIFY2(assignSetting(&configuration, assignment, descriptor, &problem), qPrintable(problem));
    const auto record = run(device, measurement, configuration);
    QVERIFY2(record.outcome.isResult(), qPrintable(record.outcome.sentence));
    const auto plate = plateFromResult(measurement, record.outcome.result, &problem);
    QVERIFY2(plate, qPrintable(problem));
    QCOMPARE(plate->reads.size(), reads);
    const auto lines = tidyCsv(*plate, record.device).split('\n');
    const auto measured = std::count_if(lines.begin(), lines.end(), [](const QByteArray &line) {
        return line.contains(',') && !line.split(',').value(10).isEmpty();
    });
    QCOMPARE(int(measured), values);
}

void SimulatorTest::declinesTheCalibration()
{
    const auto record = run(QStringLiteral("A"), Device::DF_Calibration, {});
    QCOMPARE(record.outcome.kind, Outcome::AbortedByUser);
}

QTEST_GUILESS_MAIN(SimulatorTest)
#include "tst_simulator.moc"
