// Drivers in processes of their own, with real processes that are killed and stopped.
#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>
#include <qelvalues/valuecodec.h>

#include <QtTest/QtTest>

#include <csignal>
#include <functional>

using namespace qel::devices;

namespace {

// The processes that this one has started and that still run.
QList<pid_t> hosts()
{
    QList<pid_t> found;
    QFile children(QStringLiteral("/proc/self/task/%1/children").arg(getpid()));
    if (children.open(QIODevice::ReadOnly)) {
        const auto ids = children.readAll().split(' ');
        for (const QByteArray &id : ids) {
            if (!id.isEmpty())
                found.append(id.toInt());
        }
    }
    return found;
}

int openFiles()
{
    return QDir("/proc/self/fd")
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

class tst_DriverHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void listsTheSameInstrumentsAsDirectly();
    void measuresTheSameAsDirectly();
    void survivesTheEndOfTheHost_data();
    void survivesTheEndOfTheHost();
    void tellsWithinMomentsThatTheHostHasGone();
    void answersEnumerationWhileTheHostStands();
    void leavesNothingBehind();

private:
    void writeScenario(const QByteArray &instruments);
    static QList<DeviceInfo> instruments();
    static QByteArray measure(Device *device);

    QTemporaryDir m_folder;
    std::unique_ptr<Device> m_device;
};

void tst_DriverHost::writeScenario(const QByteArray &instruments)
{
    // The other process must not read half of it.
    QSaveFile file(m_folder.filePath("laboratory.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\"instruments\": [" + instruments + "]}");
    QVERIFY(file.commit());
}

// The answer comes from memory: the news is what counts here.
QList<DeviceInfo> tst_DriverHost::instruments()
{
    DeviceBroker::availableDevices();
    QTest::qWait(20);
    return DeviceBroker::availableDevices();
}

void tst_DriverHost::initTestCase()
{
    QLoggingCategory::setFilterRules("qel.devices*=false");
    qRegisterMetaType<Device::DeviceFeature>("DeviceFeature");
    QVERIFY(QDir(m_folder.path()).mkdir("isolated"));
    QVERIFY(QFile::link(SIMULATOR, m_folder.filePath("isolated/simulator.so")));
    qputenv("QELDEVICES_ISOLATED", m_folder.filePath("isolated").toLocal8Bit());
    qputenv("QELDEVICES_SIMULATOR", m_folder.filePath("laboratory.json").toLocal8Bit());
    writeScenario(R"({"model": "absorbance-96", "serial": "A-1", "seed": 7, "timeScale": 0})");
    QVERIFY(DeviceBroker::loadPlugin(ISOLATION));
    QTRY_COMPARE(DeviceBroker::availableDrivers(), QStringList{"simulator"});
    QCOMPARE(hosts().size(), 1);
}

void tst_DriverHost::init()
{
    writeScenario(R"({"model": "absorbance-96", "serial": "A-1", "seed": 7, "timeScale": 0})");
    // Not what was told of the scenario of another test.
    const DeviceInfo none{{}, {}, {}, {}, {}};
    QTRY_COMPARE_WITH_TIMEOUT(instruments().value(0, none).serial(), "A-1", 30000);
}

void tst_DriverHost::cleanup()
{
    m_device.reset();
}

QByteArray tst_DriverHost::measure(Device *device)
{
    if (!device->isOpen()) {
        device->open();
        if (!QTest::qWaitFor([&] { return device->isOpen(); }, 30000))
            return {};
    }
    QSignalSpy executed(device, &Device::executed);
    device->execute(Device::DF_AbsorbanceMeasurement);
    if (!QTest::qWaitFor([&] { return !executed.isEmpty(); }, 30000))
        return {};
    auto result = executed.at(0).at(2).toHash();
    result.remove("startedAt");
    return qel::values::jsonText(*qel::values::toJson(result, nullptr));
}

void tst_DriverHost::listsTheSameInstrumentsAsDirectly()
{
    const auto isolated = instruments();
    QVERIFY(isolated
            == (QList<DeviceInfo>{
                {DeviceInfo::Simulator, "simulator", "bench-1", isolated.at(0).name(), "A-1"}}));
    QVERIFY(!DeviceBroker::createDevice(
        {DeviceInfo::Simulator, "simulator", "nowhere", "Reader", "A-1"}));
    // Registered again, as a plugin folder that is scanned twice does.
    DeviceBroker::loadPlugin(ISOLATION);
    QCOMPARE(hosts().size(), 1);
    QVERIFY(instruments() == isolated);
}

void tst_DriverHost::measuresTheSameAsDirectly()
{
    m_device.reset(DeviceBroker::createDevice(instruments().at(0)));
    const QByteArray isolated = measure(m_device.get());
    const auto proxy = DeviceBroker::DRIVERS.value("simulator");
    QVERIFY(DeviceBroker::loadPlugin(SIMULATOR));
    std::unique_ptr<Device> direct(
        DeviceBroker::createDevice(DeviceBroker::availableDevices().at(0)));
    const QByteArray directly = measure(direct.get());
    DeviceBroker::addDriver(proxy);
    QVERIFY(isolated.size() > 500);
    QCOMPARE(isolated, directly);
}

void tst_DriverHost::survivesTheEndOfTheHost_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("moment");
    for (const auto &[name, signal] :
         {std::pair("killed", SIGKILL), std::pair("stopped", SIGSTOP)}) {
        for (const char *moment : {"open", "run", "request", "close"})
            QTest::addRow("%s at %s", name, moment) << signal << moment;
    }
}

void tst_DriverHost::survivesTheEndOfTheHost()
{
    QFETCH(int, signal);
    QFETCH(QString, moment);
    // In real time, and opening for half a minute, so that the signal comes before the end.
    const QByteArray reader = R"({"model": "absorbance-96", "serial": "A-2")";
    const QHash<QString, QByteArray> peculiarities{
        {"open", R"(, "timeScale": 100)"},
        {"request", R"(, "faults": [{"at": "execute", "do": "ask", "text": "Turn the plate."}])"}};
    writeScenario(reader + peculiarities.value(moment) + "}");
    QTRY_COMPARE_WITH_TIMEOUT(instruments().value(0, {{}, {}, {}, {}, {}}).serial(), "A-2", 30000);
    m_device.reset(DeviceBroker::createDevice(instruments().at(0)));
    QVERIFY(m_device);
    QSignalSpy opened(m_device.get(), &Device::openChanged);
    QSignalSpy executed(m_device.get(), &Device::executed);
    m_device->open();
    if (moment != "open") {
        QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), 30000);
        m_device->execute(Device::DF_AbsorbanceMeasurement);
        QSignalSpy progress(m_device.get(), &Device::transientValue);
        QSignalSpy requested(m_device.get(), &Device::actionRequired);
        QVERIFY(moment == "request" ? requested.wait(30000) : progress.wait(30000));
    }
    const auto victims = hosts();
    QCOMPARE(victims.size(), 1);
    const pid_t host = victims.at(0);
    if (moment == "close") {
        // In the middle of the call, that is.
        ::kill(host, SIGSTOP);
        m_device->close();
    }
    QCOMPARE(::kill(host, signal), 0);
    // The call of open() may have been answered, with the rest of opening to come.
    if (signal == SIGSTOP && moment != "close")
        m_device->update();

    QTRY_VERIFY_WITH_TIMEOUT(!m_device->isOpen() && (moment == "open" || executed.count() == 1),
                             30000);
    QTRY_COMPARE_WITH_TIMEOUT(m_device->errorCode(), int(ERROR_DEVICE_DISCONNECTED), 30000);
    QVERIFY(!m_device->isBusy());
    if (!executed.isEmpty())
        QCOMPARE(executed.at(0).at(1).toBool(), false);
    writeScenario(reader + "}");

    // The next one works, on the same device, with the driver in a new process.
    QTRY_VERIFY_WITH_TIMEOUT(hosts().size() == 1 && hosts().at(0) != host, 30000);
    QTRY_COMPARE_WITH_TIMEOUT(instruments().size(), 1, 30000);
    QVERIFY(m_device->open());
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), 30000);
    QCOMPARE(m_device->errorCode(), 0);
    QVERIFY(executed.count() <= 1);
}

void tst_DriverHost::tellsWithinMomentsThatTheHostHasGone()
{
    m_device.reset(DeviceBroker::createDevice(instruments().at(0)));
    m_device->open();
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), 30000);
    QElapsedTimer clock;
    clock.start();
    ::kill(hosts().at(0), SIGKILL);
    QSignalSpy opened(m_device.get(), &Device::openChanged);
    QVERIFY(opened.wait(30000));
    QVERIFY(!m_device->isOpen());
    qInfo("unplugged after %lld ms", static_cast<long long>(clock.elapsed()));
}

void tst_DriverHost::answersEnumerationWhileTheHostStands()
{
    const auto before = instruments();
    const pid_t host = hosts().at(0);
    ::kill(host, SIGSTOP);
    QVERIFY(DeviceBroker::availableDevices() == before);
    // One that does not answer is ended and started again.
    const auto isAnother = [&] {
        DeviceBroker::availableDevices();
        return hosts().size() == 1 && hosts().at(0) != host;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAnother(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(instruments() == before, 30000);
}

void tst_DriverHost::leavesNothingBehind()
{
    const auto live = [&] {
        m_device.reset(DeviceBroker::createDevice(instruments().at(0)));
        QVERIFY(!measure(m_device.get()).isEmpty());
        m_device.reset();
        QTest::qWait(20);
    };
    live();
    const int files = openFiles();
    for (int i = 0; i < 3; ++i)
        live();
    QCOMPARE(openFiles(), files);
}

QTEST_GUILESS_MAIN(tst_DriverHost)
#include "tst_driverhost.moc"
