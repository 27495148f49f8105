#include "lab.h"

#include <qeldevices/deviceerrors.h>

#include <QtTest/QtTest>

using namespace qel::devices;

namespace {

QByteArray firmware(const QByteArray &code, quint16 sumError = 0)
{
    QByteArray image = "QELSIM 3.1.4\n" + code;
    const quint16 sum = qChecksum(image.constData(), uint(image.size())) ^ sumError;
    return image + char(sum >> 8) + char(sum & 0xff);
}

// What a run of `feature` needs to succeed.
void prepare(Device *device, Device::DeviceFeature feature)
{
    if (feature == Device::DF_FirmwareUpdate)
        device->setConfiguration(feature, QVariantHash{{"image", firmware("code")}});
}

QJsonObject instrumentFor(Device::DeviceFeature feature, const QJsonArray &faults)
{
    QJsonObject instrument{{"faults", faults}};
    if (feature == Device::DF_Calibration)
        instrument.insert("plate", QJsonValue::Null);
    return instrument;
}

QString kebab(Device::DeviceFeature feature)
{
    QString name = QVariant::fromValue(feature).toString().mid(3);
    name.replace(QRegularExpression("(?<!^)([A-Z])"), "-\\1");
    return name.toLower();
}

} // namespace

class tst_Faults : public QObject
{
    Q_OBJECT

private slots:
    void everyFeatureMeetsEveryFault_data();
    void everyFeatureMeetsEveryFault();
    void openingMeetsEveryFault_data();
    void openingMeetsEveryFault();
    void everyCodeIsReachable_data();
    void everyCodeIsReachable();
    void timedFaults();
    void probabilityFollowsTheSeed();
    void slowEnumeration();

private:
    void usableAgain(Device *device, Device::DeviceFeature feature);

    Lab m_lab;
};

void tst_Faults::everyFeatureMeetsEveryFault_data()
{
    QTest::addColumn<int>("feature");
    QTest::addColumn<QString>("fault");
    const QStringList faults{"none",       "refuse",      "error",         "delay",
                             "stall",      "drop-ending", "double-ending", "partial-data",
                             "wrong-type", "ask",         "ask, abort",    "unplug"};
    for (int feature = Device::DF_AmbientTemperature; feature <= Device::DF_LedBarEffect;
         ++feature) {
        for (const QString &fault : faults) {
            QTest::addRow("%s, %s", qPrintable(kebab(Device::DeviceFeature(feature))),
                          qPrintable(fault))
                << feature << fault;
        }
    }
}

// Every fault strikes the first run only: whatever it did, the next one must succeed.
void tst_Faults::usableAgain(Device *device, Device::DeviceFeature feature)
{
    if (!device->isOpen()) {
        QVERIFY(!m_lab.instruments().isEmpty() || !m_lab.instruments().isEmpty());
        QVERIFY(device->open());
        QVERIFY(waitFor([&] { return device->isOpen(); }));
    }
    prepare(device, feature);
    Recorder again(device);
    device->execute(feature);
    QVERIFY(waitFor([&] { return !again.endings.isEmpty(); }));
    QCOMPARE(again.endings, QVector<bool>{true});
    QCOMPARE(device->errorCode(), int(NO_DEVICE_ERROR));
    QVERIFY(!device->isBusy());
}

void tst_Faults::everyFeatureMeetsEveryFault()
{
    QFETCH(int, feature);
    QFETCH(QString, fault);
    const auto f = Device::DeviceFeature(feature);
    const QString action = fault.section(',', 0, 0);
    QJsonObject script{{"at", "execute"}, {"feature", kebab(f)}, {"nth", 1}, {"do", action}};
    if (action == "error")
        script.insert("code", "ERROR_DEVICE_TIMEOUT");
    if (action == "delay")
        script.insert("delay", 60);
    if (action == "unplug")
        script.insert("absentFor", 1);
    m_lab.setUpOne("combined-384",
                   instrumentFor(f, action == "none" ? QJsonArray() : QJsonArray{script}));
    const auto device = m_lab.openDevice();
    prepare(device.get(), f);
    Recorder seen(device.get());
    QElapsedTimer clock;
    clock.start();
    device->execute(f);
    if (action == "ask") {
        QVERIFY(waitFor([&] { return seen.actionId >= 0; }));
        QVERIFY(device->isBusy());
        device->confirmAction(seen.actionId + 1); // another one's
        if (fault.endsWith("abort"))
            device->abortAction(seen.actionId);
        else
            device->confirmAction(seen.actionId);
    }
    const bool endless = action == "stall" || action == "drop-ending";
    const bool ok = !QStringList{"refuse", "error", "unplug", "ask, abort"}.contains(fault);
    const int endings = endless ? 0 : action == "double-ending" ? 2 : 1;
    QVERIFY(waitFor([&] { return seen.endings.size() >= endings; }));
    if (action == "drop-ending")
        QVERIFY(waitFor([&] { return !device->isBusy(); }));
    settle(); // for what must not come
    QCOMPARE(seen.endings, QVector<bool>(endings, ok));
    QCOMPARE(device->isBusy(), action == "stall");
    QCOMPARE(device->isOpen(), action != "unplug");
    const int code = action == "refuse" ? ERROR_DEVICE_NOT_READY
        : action == "error"             ? ERROR_DEVICE_TIMEOUT
        : action == "unplug"            ? ERROR_DEVICE_DISCONNECTED
                                        : NO_DEVICE_ERROR;
    QCOMPARE(device->errorCode(), code);
    if (action == "delay")
        QVERIFY(clock.elapsed() >= 60);
    if (action == "stall") {
        device->reset();
        QCOMPARE(seen.endings, QVector<bool>{false});
    }

    const QVariant spoiled = seen.results.value(0);
    Recorder sound(device.get());
    usableAgain(device.get(), f);
    if (QTest::currentTestFailed())
        return;
    prepare(device.get(), f);
    device->execute(f);
    QVERIFY(waitFor([&] { return sound.results.size() == 2; }));
    const QVariant whole = sound.results.constLast();
    if (action == "wrong-type")
        QVERIFY(spoiled.userType() != whole.userType());
    if (action == "partial-data" && whole.isValid()) {
        // The same in every process: half of the wells, or all but the last key.
        QStringList keys = whole.toHash().keys();
        std::sort(keys.begin(), keys.end());
        if (!keys.isEmpty() && !keys.contains("values"))
            keys.removeLast();
        QStringList left = spoiled.toHash().keys();
        std::sort(left.begin(), left.end());
        QCOMPARE(left, keys);
        QVERIFY(spoiled != whole);
    }
    if (action == "none")
        QCOMPARE(spoiled.userType(), whole.userType());
}

void tst_Faults::openingMeetsEveryFault_data()
{
    QTest::addColumn<QJsonObject>("fault");
    QTest::addColumn<QStringList>("signalsSeen");
    QTest::newRow("refuse") << QJsonObject{{"do", "refuse"}} << QStringList{"error 8002"};
    QTest::newRow("error") << QJsonObject{{"do", "error"}, {"code", "ERROR_DEVICE_BOOT_FAIL"}}
                           << QStringList{"error 800a"};
    QTest::newRow("delay") << QJsonObject{{"do", "delay"}, {"delay", 20}} << QStringList{"open 1"};
    QTest::newRow("stall") << QJsonObject{{"do", "stall"}} << QStringList{};
    QTest::newRow("ask") << QJsonObject{{"do", "ask"}} << QStringList{"asked"};
    QTest::newRow("unplug") << QJsonObject{{"do", "unplug"}, {"absentFor", 1}}
                            << QStringList{"error 8009"};
}

void tst_Faults::openingMeetsEveryFault()
{
    QFETCH(QJsonObject, fault);
    QFETCH(QStringList, signalsSeen);
    fault.insert("at", "open");
    fault.insert("nth", 1);
    m_lab.setUpOne("absorbance-96", {{"faults", QJsonArray{fault}}});
    const auto device = m_lab.device();
    Recorder seen(device.get());
    QCOMPARE(device->open(), fault.value("do") != "refuse");
    settle();
    if (fault.value("do") == "delay")
        QVERIFY(waitFor([&] { return device->isOpen(); }));
    QCOMPARE(seen.signalsSeen, signalsSeen);
    device->close();
    QVERIFY(m_lab.instruments().isEmpty() == (fault.value("do") == "unplug"));
    usableAgain(device.get(), Device::DF_ReferenceNumber);
}

void tst_Faults::everyCodeIsReachable_data()
{
    QTest::addColumn<int>("code");
    for (int code = ERROR_DEVICE_UNKNOWN; code <= ERROR_DEVICE_API_TOO_NEW; ++code)
        QTest::addRow("0x%x", code) << code;
}

void tst_Faults::everyCodeIsReachable()
{
    QFETCH(int, code);
    static const QStringList names{
        "UNKNOWN",        "VENDOR_SPECIFIC", "CANT_OPEN",         "NOT_READY",
        "TIMEOUT",        "CANT_WRITE",      "CHECKSUM_MISMATCH", "INVALID_CONFIGURATION",
        "NOT_CALIBRATED", "DISCONNECTED",    "BOOT_FAIL",         "API_TOO_NEW"};
    const QString id = "ERROR_DEVICE_" + names.at(code - ERROR_DEVICE_UNKNOWN);
    m_lab.setUpOne(
        "luminescence-96",
        {{"faults",
          QJsonArray{QJsonObject{
              {"at", "execute"}, {"do", "error"}, {"code", id}, {"info", "my-driver-details"}}}}});
    const auto device = m_lab.openDevice();
    Recorder seen(device.get());
    device->execute(Device::DF_AmbientTemperature);
    QVERIFY(waitFor([&] { return !seen.endings.isEmpty(); }));
    QCOMPARE(seen.endings, QVector<bool>{false});
    QCOMPARE(device->errorCode(), code);
    QCOMPARE(device->errorTrId(), "libqeldevices-" + id);
    QCOMPARE(device->errorAdditionalInfoTrId(), QStringLiteral("my-driver-details"));
}

void tst_Faults::timedFaults()
{
    m_lab.setUpOne("absorbance-96",
                   {{"faults",
                     QJsonArray{QJsonObject{{"at", "time"}, {"after", 150}, {"do", "remove-plate"}},
                                QJsonObject{{"at", "time"}, {"after", 200}, {"do", "insert-plate"}},
                                QJsonObject{{"at", "time"},
                                            {"after", 450},
                                            {"do", "error"},
                                            {"code", "ERROR_DEVICE_TIMEOUT"}},
                                QJsonObject{{"at", "time"}, {"after", 600}, {"do", "unplug"}},
                                QJsonObject{{"at", "execute"}, {"do", "stall"}}}}});
    const auto device = m_lab.openDevice();
    Recorder seen(device.get());
    QVERIFY(waitFor([&] { return seen.signalsSeen.size() == 2; }));
    device->execute(Device::DF_AmbientTemperature);
    QVERIFY(waitFor([&] { return !device->isOpen(); }));
    QCOMPARE(seen.signalsSeen,
             (QStringList{"transient 5", "transient 5", "busy 1", "error 8004", "busy 0",
                          "executed 1 0", "error 8009", "open 0"}));
    QVERIFY(m_lab.instruments().isEmpty());
}

void tst_Faults::probabilityFollowsTheSeed()
{
    const auto failures = [this](int seed) {
        m_lab.setUpOne(
            "absorbance-96",
            {{"seed", seed},
             {"faults",
              QJsonArray{QJsonObject{{"at", "execute"}, {"do", "refuse"}, {"probability", 0.3}}}}});
        const auto device = m_lab.openDevice();
        Recorder seen(device.get());
        for (int i = 0; i < 200; ++i)
            device->execute(Device::DF_ReferenceNumber);
        return seen.endings;
    };
    const auto first = failures(7);
    QCOMPARE(first.size(), 200);
    QVERIFY(qAbs(first.count(false) - 60) < 26); // four standard deviations
    QCOMPARE(failures(7), first);
    QVERIFY(failures(8) != first);
}

void tst_Faults::slowEnumeration()
{
    m_lab.setUpOne("identity-only",
                   {{"faults",
                     QJsonArray{QJsonObject{
                         {"at", "enumerate"}, {"nth", 2}, {"do", "delay"}, {"delay", 80}}}}});
    QElapsedTimer clock;
    clock.start();
    m_lab.instruments();
    QVERIFY(clock.restart() < 80);
    QCOMPARE(m_lab.instruments().size(), 1);
    QVERIFY(clock.elapsed() >= 80);
}

QTEST_GUILESS_MAIN(tst_Faults)
#include "tst_faults.moc"
