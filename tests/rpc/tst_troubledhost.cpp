// A driver in a process of its own that crashes, hangs or dawdles, beside one that does not.
#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtTest/QtTest>

#include <csignal>
#include <functional>

using namespace qel::devices;

namespace {

QStringList &warnings()
{
    static QStringList all;
    return all;
}

void keepWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg)
        warnings().append(text);
}

// The process of a plugin; 0 when there is none.
pid_t hostOf(const char *plugin)
{
    QFile children(QStringLiteral("/proc/self/task/%1/children").arg(getpid()));
    if (!children.open(QIODevice::ReadOnly))
        return 0;
    const auto ids = children.readAll().split(' ');
    for (const QByteArray &id : ids) {
        QFile line(QStringLiteral("/proc/%1/cmdline").arg(id.constData()));
        if (!id.isEmpty() && line.open(QIODevice::ReadOnly) && line.readAll().contains(plugin))
            return id.toInt();
    }
    return 0;
}

void signalTo(const char *plugin, int signal)
{
    const pid_t host = hostOf(plugin);
    QVERIFY(host != 0);
    ::kill(host, signal);
}

const QString rogueName = QStringLiteral("rogue");

QList<DeviceInfo> instrumentsOf(const QString &driver)
{
    auto all = DeviceBroker::availableDevices();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const DeviceInfo &info) { return info.driver() != driver; }),
              all.end());
    return all;
}

} // namespace

class tst_TroubledHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void tellsWhatItWasDoing_data();
    void tellsWhatItWasDoing();
    void waitsForABusyApplication();
    void holdsNobodyUpByDawdling();

private:
    static void restartAs(const char *behaviour);
    void open();

    QTemporaryDir m_folder;
    std::unique_ptr<Device> m_device;
};

void tst_TroubledHost::initTestCase()
{
    QLoggingCategory::setFilterRules("qel.devices*=false\nqel.devices.warning=true");
    qRegisterMetaType<Device::DeviceFeature>("DeviceFeature");
    QVERIFY(QDir(m_folder.path()).mkdir("isolated"));
    QVERIFY(QFile::copy(SIMULATOR, m_folder.filePath("isolated/simulator.so")));
    QVERIFY(QFile::copy(ROGUE, m_folder.filePath("isolated/rogue.so")));
    qputenv("QELDEVICES_ISOLATED", m_folder.filePath("isolated").toLocal8Bit());
    qInstallMessageHandler(&keepWarning);
    QVERIFY(DeviceBroker::loadPlugin(ISOLATION));
    QTRY_COMPARE_WITH_TIMEOUT(DeviceBroker::availableDrivers().size(), 2, 30000);
}

void tst_TroubledHost::cleanup()
{
    m_device.reset();
}

void tst_TroubledHost::restartAs(const char *behaviour)
{
    // Not in the pause after what the former test has done to it.
    QTRY_VERIFY_WITH_TIMEOUT(!instrumentsOf(rogueName).isEmpty(), 30000);
    const pid_t former = hostOf("rogue.so");
    qputenv("ROGUE", behaviour);
    signalTo("rogue.so", SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(instrumentsOf(rogueName).isEmpty(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(!instrumentsOf(rogueName).isEmpty(), 30000);
    QVERIFY(hostOf("rogue.so") != former);
    warnings().clear();
}

void tst_TroubledHost::open()
{
    m_device.reset(DeviceBroker::createDevice(instrumentsOf(rogueName).at(0)));
    QVERIFY(m_device && m_device->open());
}

void tst_TroubledHost::tellsWhatItWasDoing_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<QString>("end");
    // A process that has not lived long is started again after a pause: long lives in between.
    QTest::newRow("crash in a call")
        << QByteArray("open crash") << "signal 11 (Segmentation fault), in rogue: open()";
    QTest::newRow("endless call") << QByteArray("open hang")
                                  << "did not come back, in rogue: open()";
    QTest::newRow("exit in a run")
        << QByteArray("execute exit") << "exit(0), in rogue: execute(DF_ReferenceNumber)";
    QTest::newRow("standstill between calls")
        << QByteArray("later hang") << "did not come back, after rogue: open()";
    QTest::newRow("crash between calls")
        << QByteArray("later abort") << "signal 6 (Aborted), after rogue: open()";
    QTest::newRow("stopped while nothing is asked")
        << QByteArray() << "did not come back, after rogue: open()";
}

void tst_TroubledHost::tellsWhatItWasDoing()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(QString, end);
    restartAs(behaviour.constData());
    open();
    const bool opens = behaviour.isEmpty() || behaviour.startsWith("execute");
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen() || !opens, 30000);
    if (behaviour.isEmpty())
        signalTo("rogue.so", SIGSTOP);
    for (int i = 0; behaviour.startsWith("execute") && i < 3; ++i)
        m_device->execute(Device::DF_ReferenceNumber);
    // Nothing more is asked of it.
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE_WITH_TIMEOUT(m_device->errorCode(), int(ERROR_DEVICE_DISCONNECTED), 30000);
    QVERIFY(!m_device->isOpen());
    QVERIFY2(clock.elapsed() < 15000, qPrintable(QString::number(clock.elapsed())));
    const auto isTold = [&] {
        return !warnings().filter("has ended").filter("rogue.so").filter(end).isEmpty();
    };
    QVERIFY2(QTest::qWaitFor(isTold, 30000), qPrintable(warnings().join('\n')));
}

void tst_TroubledHost::waitsForABusyApplication()
{
    restartAs("");
    const pid_t host = hostOf("rogue.so");
    open();
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), 30000);
    QThread::sleep(8);
    QTest::qWait(1500);
    QVERIFY(m_device->isOpen());
    QCOMPARE(hostOf("rogue.so"), host);
}

void tst_TroubledHost::holdsNobodyUpByDawdling()
{
    restartAs("enumerate dawdle");
    DeviceBroker::availableDevices();
    QTest::qWait(100);
    qint64 longest = 0;
    const auto asked = [&](const QString &driver) {
        QElapsedTimer clock;
        clock.start();
        const auto found = instrumentsOf(driver);
        longest = qMax(longest, clock.elapsed());
        return found;
    };
    const auto before = asked("simulator");
    QCOMPARE(asked(rogueName).size(), 1);

    // The other one is found again, in a new process, before this one has answered.
    QElapsedTimer clock;
    clock.start();
    signalTo("simulator.so", SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(asked("simulator").isEmpty(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(asked("simulator") == before, 30000);
    QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
    qInfo("listed again after %lld ms, no list took longer than %lld ms",
          static_cast<long long>(clock.elapsed()), static_cast<long long>(longest));
}

QTEST_GUILESS_MAIN(tst_TroubledHost)
#include "tst_troubledhost.moc"
