#include "lab.h"

#include <qeldevices/deviceerrors.h>

#include <QtTest/QtTest>

#include <chrono>
#include <cmath>

using namespace qel::devices;
using namespace std::chrono_literals;

class tst_Reader : public QObject
{
    Q_OBJECT

private slots:
    void numbersFollowTheSeed();
    void badConfigurations_data();
    void badConfigurations();
    void refusals_data();
    void refusals();
    void firmwareImages_data();
    void firmwareImages();
    void endsAtEveryStage_data();
    void endsAtEveryStage();
    void survivesItsReceivers_data();
    void survivesItsReceivers();
    void labChangesWhileOpen();
    void forgetsWhatNobodyHolds();
    void brokenScenarioHasNoInstruments();

private:
    QVariantHash measure(Device *device, Device::DeviceFeature feature,
                         const QVariant &configuration);

    Lab m_lab;
};

QVariantHash tst_Reader::measure(Device *device, Device::DeviceFeature feature,
                                 const QVariant &configuration)
{
    device->setConfiguration(feature, configuration);
    Recorder seen(device);
    device->execute(feature);
    if (!waitFor([&] { return !seen.endings.isEmpty(); }))
        return {};
    return seen.results.constFirst().toHash();
}

static QVector<double> valuesOf(const QVariantHash &result, int read = 0)
{
    return result.value("values").toList().value(read).value<QVector<double>>();
}

void tst_Reader::numbersFollowTheSeed()
{
    AbsorbanceMeasurement_config config;
    config.setWavelengths({450, 620});
    const auto run = [&](int seed) {
        m_lab.setUpOne("absorbance-96", {{"seed", seed}});
        const auto device = m_lab.openDevice();
        const auto first = measure(device.get(), Device::DF_AbsorbanceMeasurement, config);
        const auto second = measure(device.get(), Device::DF_AbsorbanceMeasurement, config);
        return QVector<QVector<double>>{valuesOf(first, 0), valuesOf(first, 1),
                                        valuesOf(second, 0)};
    };
    const auto one = run(1);
    QCOMPARE(one.at(0).size(), 96);
    QCOMPARE(run(1), one);
    QVERIFY(run(2) != one);
    QVERIFY(one.at(0) != one.at(2)); // every measurement has noise of its own
    // The same on every machine.
    QCOMPARE(one.at(0).mid(0, 3), (QVector<double>{2.2599, 1.1532, 0.5971}));
}

void tst_Reader::badConfigurations_data()
{
    QTest::addColumn<int>("feature");
    QTest::addColumn<QVariant>("configuration");
    const auto row = [](const char *name, Device::DeviceFeature feature, const QVariant &value) {
        QTest::newRow(name) << int(feature) << value;
    };
    AbsorbanceMeasurement_config absorbance;
    absorbance.setWavelengths({450, 451});
    row("a wavelength without filter", Device::DF_AbsorbanceMeasurement, absorbance);
    row("a list from JSON", Device::DF_AbsorbanceMeasurement,
        QVariantHash{{"wavelengths", QVariantList{450}}});
    row("no hash", Device::DF_AbsorbanceMeasurement, 450);
    LuminescenceMeasurement_config luminescence;
    luminescence.setIntegrationTime(15ms);
    row("off the steps", Device::DF_LuminescenceMeasurement, luminescence);
    luminescence.setIntegrationTime(-10ms);
    row("negative time", Device::DF_LuminescenceMeasurement, luminescence);
    row("a number for a time", Device::DF_LuminescenceMeasurement,
        QVariantHash{{"integrationTime", 100}});
    luminescence.setIntegrationTime(100ms);
    luminescence.setSelectedWells(QVector<bool>(96, true));
    row("wells of another plate", Device::DF_LuminescenceMeasurement, luminescence);
    row("no image", Device::DF_FirmwareUpdate, QVariant());
    LedBarEffect_config led;
    led.setEffect(LedBarEffect_Effect(9));
    row("no such effect", Device::DF_LedBarEffect, led);
    led = LedBarEffect_config();
    led.setModes(LedBarEffect_config::Modes(8));
    row("no such mode", Device::DF_LedBarEffect, led);
    led.setModes(LedBarEffect_config::Modes(QFlag(0x80000000u)) | LedBarEffect_config::Once);
    row("the highest bit for a mode", Device::DF_LedBarEffect, led);
    led = LedBarEffect_config();
    led.insert("color", "white");
    row("a colour by name", Device::DF_LedBarEffect, led);
}

void tst_Reader::badConfigurations()
{
    QFETCH(int, feature);
    QFETCH(QVariant, configuration);
    const auto f = Device::DeviceFeature(feature);
    m_lab.setUpOne("combined-384");
    const auto device = m_lab.openDevice();
    device->setConfiguration(f, configuration);
    Recorder seen(device.get());
    device->execute(f);
    settle();
    QCOMPARE(seen.endings, QVector<bool>{false});
    QCOMPARE(device->errorCode(), int(ERROR_DEVICE_INVALID_CONFIGURATION));
    QVERIFY(device->isOpen() && !device->isBusy());
    QCOMPARE(device->configuration(f), configuration);
}

void tst_Reader::refusals_data()
{
    QTest::addColumn<QJsonObject>("instrument");
    QTest::addColumn<QString>("situation");
    QTest::addColumn<int>("code");
    QTest::newRow("never calibrated")
        << QJsonObject{{"calibrated", false}} << "measure" << int(ERROR_DEVICE_NOT_CALIBRATED);
    QTest::newRow("newer protocol")
        << QJsonObject{{"apiVersion", 2}} << "open" << int(ERROR_DEVICE_API_TOO_NEW);
    QTest::newRow("open twice") << QJsonObject{} << "open by another"
                                << int(ERROR_DEVICE_CANT_OPEN);
    QTest::newRow("second run") << QJsonObject{} << "measure twice" << int(ERROR_DEVICE_NOT_READY);
}

void tst_Reader::refusals()
{
    QFETCH(QJsonObject, instrument);
    QFETCH(QString, situation);
    QFETCH(int, code);
    m_lab.setUpOne("absorbance-96", instrument);
    if (situation.startsWith("open")) {
        const auto other = situation.endsWith("another") ? m_lab.openDevice() : nullptr;
        const auto device = m_lab.device();
        QCOMPARE(device->open(), !other);
        QTRY_COMPARE(device->errorCode(), code);
        QVERIFY(!device->isOpen());
        return;
    }
    const auto device = m_lab.openDevice();
    Recorder seen(device.get());
    device->execute(Device::DF_AbsorbanceMeasurement);
    if (situation == "measure") {
        QVERIFY(waitFor([&] { return !seen.endings.isEmpty(); }));
        QCOMPARE(seen.endings, QVector<bool>{false});
        QCOMPARE(device->errorCode(), code);
        return;
    }
    device->execute(Device::DF_AbsorbanceMeasurement);
    QCOMPARE(seen.endings, QVector<bool>{false}); // the second, and the first goes on
    QCOMPARE(device->errorCode(), code);
    QVERIFY(waitFor([&] { return seen.endings == (QVector<bool>{false, true}); }));
    QCOMPARE(device->errorCode(), int(NO_DEVICE_ERROR));
}

void tst_Reader::firmwareImages_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<int>("code");
    const auto sealed = [](QByteArray image) {
        const quint16 sum = qChecksum(image.constData(), uint(image.size()));
        return image + char(sum >> 8) + char(sum & 0xff);
    };
    const QByteArray good = sealed("QELSIM 3.1.4\ncode");
    QByteArray damaged = good;
    damaged[14] = 'X';
    QTest::newRow("good") << good << int(NO_DEVICE_ERROR);
    QTest::newRow("damaged") << damaged << int(ERROR_DEVICE_CHECKSUM_MISMATCH);
    QTest::newRow("no code") << sealed("QELSIM 3.1.4\n") << int(ERROR_DEVICE_BOOT_FAIL);
    QTest::newRow("empty") << QByteArray() << int(ERROR_DEVICE_INVALID_CONFIGURATION);
    QTest::newRow("something else") << sealed("\x7f"
                                              "ELF\n12345")
                                    << int(ERROR_DEVICE_INVALID_CONFIGURATION);
    QTest::newRow("no version") << sealed("QELSIM \ncode")
                                << int(ERROR_DEVICE_INVALID_CONFIGURATION);
    for (int size = 1; size < 13; ++size) {
        QTest::addRow("first %d bytes", size)
            << good.left(size) << int(ERROR_DEVICE_INVALID_CONFIGURATION);
    }
}

void tst_Reader::firmwareImages()
{
    QFETCH(QByteArray, image);
    QFETCH(int, code);
    m_lab.setUpOne("luminescence-96");
    const auto device = m_lab.openDevice();
    measure(device.get(), Device::DF_FirmwareUpdate, QVariantHash{{"image", image}});
    QCOMPARE(device->errorCode(), code);
    const auto info = measure(device.get(), Device::DF_FirmwareInfo, {});
    QCOMPARE(info.value("version").toString(), QString(code == 0 ? "3.1.4" : "2.4.0"));
    QVERIFY(info.value("date").toDate().isValid());
}

void tst_Reader::endsAtEveryStage_data()
{
    QTest::addColumn<QString>("stage");
    QTest::addColumn<QString>("operation");
    for (const char *stage : {"closed", "opening", "idle", "running", "asking", "stalled"}) {
        for (const char *operation : {"close", "reset", "delete", "unplug"})
            QTest::addRow("%s when %s", operation, stage) << stage << operation;
    }
}

void tst_Reader::endsAtEveryStage()
{
    QFETCH(QString, stage);
    QFETCH(QString, operation);
    QJsonObject instrument{{"timeScale", stage == "running" || stage == "opening" ? 1 : 0}};
    if (stage == "asking")
        instrument.insert("plate", QJsonValue::Null);
    if (stage == "stalled")
        instrument.insert("faults",
                          QJsonArray{QJsonObject{{"at", "execute"},
                                                 {"feature", "absorbance-measurement"},
                                                 {"do", "stall"}}});
    m_lab.setUpOne("absorbance-96", instrument);
    auto device = stage == "closed" || stage == "opening" ? m_lab.device() : m_lab.openDevice();
    const bool open = device->isOpen();
    if (stage == "opening")
        device->open();
    const bool run = stage == "running" || stage == "asking" || stage == "stalled";
    if (run) {
        device->execute(Device::DF_AbsorbanceMeasurement);
        settle();
        QVERIFY(device->isBusy());
    }
    Recorder seen(device.get());
    QStringList expected;
    if (operation == "close") {
        device->close();
        expected = open ? QStringList{"open 0"} : QStringList{};
    } else if (operation == "reset") {
        device->reset();
    } else if (operation == "unplug") {
        m_lab.setUp({});
        m_lab.instruments();
        expected = open ? QStringList{"error 8009", "open 0"} : QStringList{};
        if (stage == "opening")
            expected = QStringList{"error 8009"};
    } else {
        device.reset();
    }
    if (run && operation != "delete")
        expected << "busy 0"
                 << "executed 2 0";
    settle();
    QCOMPARE(seen.signalsSeen, expected);
    if (operation == "unplug" || operation == "delete")
        return;
    // Nothing is left behind: it opens, or still is open, and works.
    QVERIFY(device->open());
    QVERIFY(waitFor([&] { return device->isOpen(); }));
    device->execute(Device::DF_AmbientTemperature);
    QVERIFY(waitFor([&] { return seen.signalsSeen.endsWith("executed 1 1"); }));
}

void tst_Reader::survivesItsReceivers_data()
{
    QTest::addColumn<QString>("signalName");
    QTest::addColumn<QString>("operation");
    for (const char *signal : {"openChanged", "busyChanged", "transientValue", "executed",
                               "errorChanged", "featuresChanged", "actionRequired"}) {
        for (const char *operation : {"close", "reset", "open", "execute", "deleteLater"})
            QTest::addRow("%s from %s", operation, signal) << signal << operation;
    }
}

// A receiver may call anything from any signal; every accepted run still ends once.
void tst_Reader::survivesItsReceivers()
{
    QFETCH(QString, signalName);
    QFETCH(QString, operation);
    m_lab.setUpOne(
        "absorbance-96",
        {{"plate", QJsonValue::Null},
         {"faults", QJsonArray{QJsonObject{{"at", "execute"}, {"nth", 1}, {"do", "error"}}}}});
    QPointer<Device> device = m_lab.device().release();
    Recorder seen(device);
    int calls = 0;
    int executions = 0;
    const auto call = [&] {
        if (++calls > 3 || !device)
            return;
        if (operation == "execute" && device->isOpen())
            ++executions;
        if (operation == "execute")
            device->isOpen() ? device->execute(Device::DF_AmbientTemperature) : void();
        else
            QMetaObject::invokeMethod(device, qPrintable(operation));
    };
    QObject context;
    connect(device, &Device::openChanged, &context, [&] {
        if (signalName == "openChanged")
            call();
    });
    connect(device, &Device::busyChanged, &context, [&] {
        if (signalName == "busyChanged")
            call();
    });
    connect(device, &Device::transientValue, &context, [&] {
        if (signalName == "transientValue")
            call();
    });
    connect(device, &Device::executed, &context, [&] {
        if (signalName == "executed")
            call();
    });
    connect(device, &Device::errorChanged, &context, [&] {
        if (signalName == "errorChanged")
            call();
    });
    connect(device, &Device::featuresChanged, &context, [&] {
        if (signalName == "featuresChanged")
            call();
    });
    connect(device, &Device::actionRequired, &context, [&](int id) {
        if (signalName == "actionRequired")
            call();
        if (device)
            device->confirmAction(id);
    });
    device->open();
    settle();
    for (int i = 0; i < 2 && device && device->isOpen(); ++i) {
        ++executions;
        device->execute(Device::DF_AbsorbanceMeasurement);
        settle();
    }
    settle();
    if (device) {
        QVERIFY(!device->isBusy());
        QCOMPARE(seen.endings.size(), executions);
    }
    QVERIFY(calls > 0);
    delete device;
}

void tst_Reader::labChangesWhileOpen()
{
    const QJsonObject kept{{"model", "absorbance-96"}, {"serial", "kept"}, {"location", "a"}};
    const QJsonObject changed{
        {"model", "luminescence-96"}, {"serial", "changed"}, {"location", "b"}};
    m_lab.setUp({kept, changed});
    QCOMPARE(m_lab.instruments().size(), 2);
    std::unique_ptr<Device> first(DeviceBroker::createDevice(m_lab.instruments().at(0)));
    std::unique_ptr<Device> second(DeviceBroker::createDevice(m_lab.instruments().at(1)));
    first->open();
    second->open();
    QVERIFY(waitFor([&] { return first->isOpen() && second->isOpen(); }));

    m_lab.setUp(
        {QJsonObject{{"model", "identity-only"}, {"serial", "new"}, {"location", "c"}}, kept});
    QVERIFY(second->isOpen()); // nobody has looked yet
    const auto now = m_lab.instruments();
    QCOMPARE(now.size(), 2);
    QCOMPARE(now.at(1).serial(), QStringLiteral("new"));
    QVERIFY(first->isOpen());
    QVERIFY(!second->isOpen());
    QCOMPARE(second->errorCode(), int(ERROR_DEVICE_DISCONNECTED));
    QVERIFY(!second->open());

    m_lab.setUp({kept, changed});
    m_lab.instruments();
    QVERIFY(second->open()); // the same device, plugged in again
    QVERIFY(waitFor([&] { return second->isOpen(); }));
    QVERIFY(!DeviceBroker::createDevice(now.at(1)));
}

// The first enumeration misses this instrument; one that is new to the driver starts over.
void tst_Reader::forgetsWhatNobodyHolds()
{
    const QJsonObject shy{
        {"model", "identity-only"},
        {"faults",
         QJsonArray{
             QJsonObject{{"at", "enumerate"}, {"nth", 1}, {"do", "unplug"}, {"absentFor", 1}}}}};
    m_lab.setUp({shy});
    QCOMPARE(m_lab.instruments().size(), 0);
    QCOMPARE(m_lab.instruments().size(), 1);
    m_lab.setUp({});
    QCOMPARE(m_lab.instruments().size(), 0);
    m_lab.setUp({shy});
    QCOMPARE(m_lab.instruments().size(), 0);
}

void tst_Reader::brokenScenarioHasNoInstruments()
{
    m_lab.setUpOne("absorbance-96");
    QCOMPARE(m_lab.instruments().size(), 1);
    m_lab.write("{\"instruments\": [{\"model\": \"absorbance-96\"}, {\"model\": \"none\"}]}");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("instruments\\[1\\].model: expected one"));
    QVERIFY(m_lab.instruments().isEmpty());
    qputenv("QELDEVICES_SIMULATOR", "/nowhere/scenario.json");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("'/nowhere/scenario.json': cannot be read"));
    QVERIFY(m_lab.instruments().isEmpty());
}

QTEST_GUILESS_MAIN(tst_Reader)
#include "tst_reader.moc"
