#include "harness.h"

#include "../plugins/testdriver.h"

#include <plateview.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStatusBar>

#include <cerrno>
#include <csignal>

#include <sys/mount.h>
#include <sys/resource.h>

using namespace qelworkbench;
using qel::devices::Device;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

namespace {

QJsonObject fault(QJsonObject entries)
{
    if (!entries.contains(QStringLiteral("at"))) {
        entries.insert(QStringLiteral("at"), QStringLiteral("execute"));
        entries.insert(QStringLiteral("feature"), QStringLiteral("absorbance-measurement"));
    }
    return {{QStringLiteral("faults"), QJsonArray{entries}}};
}

// Blocks in each call, and takes down what stands in the window's status bar meanwhile.
class SlowDevice : public Device
{
public:
    using Device::Device;
    static QString painted; // what the window shows, as it was drawn last
    static QStringList shown;

    bool open() override
    {
        block();
        addFeature(DF_ReferenceNumber);
        setOpen(true);
        return true;
    }
    void close() override
    {
        block();
        setOpen(false);
    }
    void update() override { }
    void reset() override
    {
        block();
    }

protected:
    void executeImpl(DeviceFeature) override
    {
        block();
    }

private:
    static void block()
    {
        shown.append(painted);
        QThread::msleep(250);
    }
};

QString SlowDevice::painted;
QStringList SlowDevice::shown;

class SlowDriver : public TestDriver
{
public:
    SlowDriver()
        : TestDriver(QStringLiteral("slow"), QStringLiteral("slow"))
    { }
    Device *createDevice(const DeviceInfo &info) override
    {
        return new SlowDevice(info, nullptr);
    }
    QList<DeviceInfo> availableDevices() override
    {
        return isPluggedIn ? TestDriver::availableDevices() : QList<DeviceInfo>();
    }
    static bool isPluggedIn;
};

bool SlowDriver::isPluggedIn = true;

class PaintedMessage : public QObject
{
protected:
    bool eventFilter(QObject *bar, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            SlowDevice::painted = static_cast<QStatusBar *>(bar)->currentMessage();
        return false;
    }
};

// A disk of its own for a folder, which can be full. Where the process may not mount one, files
// that may not become longer stand for it.
class SmallDisk
{
public:
    explicit SmallDisk(QString folder)
        : m_folder(std::move(folder))
    {
        QDir().mkpath(m_folder);
        const QByteArray path = QFile::encodeName(m_folder);
        m_isMounted = mount("tmpfs", path.constData(), "tmpfs", 0, "size=512k") == 0;
    }
    ~SmallDisk()
    {
        clear();
        if (m_isMounted)
            umount2(QFile::encodeName(m_folder).constData(), MNT_DETACH);
    }
    void fill()
    {
        if (!m_isMounted) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit none{1, RLIM_INFINITY};
            setrlimit(RLIMIT_FSIZE, &none);
            return;
        }
        QFile filler(fillerPath());
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, '.')) == 4096) { }
    }
    void clear()
    {
        const rlimit all{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &all);
        QFile::remove(fillerPath());
    }
    QString reason() const
    {
        return qt_error_string(m_isMounted ? ENOSPC : EFBIG);
    }

private:
    QString fillerPath() const
    {
        return m_folder + QStringLiteral("/filler");
    }

    const QString m_folder;
    bool m_isMounted;
};

} // namespace

// What goes wrong on an operator's day.
class TestTrouble : public BenchTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void wrongInput();
    void actionConfirmedAndRefused();
    void cancelled();
    void slowDriverIsNamed();
    void unplugged();
    void faults_data();
    void faults();
    void fullDisk();
    void seriesKeepsEveryRun();
    void closedDuringARun();
};

void TestTrouble::initTestCase()
{
    startLibrary();
}

void TestTrouble::init()
{
    m_bench = std::make_unique<Bench>();
}

void TestTrouble::cleanup()
{
    m_bench.reset();
}

void TestTrouble::wrongInput()
{
    m_bench->setUpOne("luminescence-96");
    m_bench->open();
    auto *field = m_bench->find<QLineEdit>("integrationTime");
    auto *hint = m_bench->find<QLabel>("integrationTimeHint");
    const QString allowed = hint->text();
    QVERIFY2(allowed.contains("10000"), qPrintable(allowed));
    for (const char *wrong : {"15", "-5", "soon", "99999999"}) {
        field->selectAll();
        QTest::keyClicks(field, wrong);
        QVERIFY2(hint->text() != allowed, wrong);
        m_bench->click("start");
        QVERIFY(!m_bench->instrument()->isBusy());
        QVERIFY(field->hasFocus() || QApplication::focusWidget() == nullptr);
    }
    field->selectAll();
    QTest::keyClicks(field, "20");
    QCOMPARE(hint->text(), allowed);
    auto *wells = m_bench->find<QLineEdit>("selectedWells");
    QTest::keyClicks(wells, "A1:Z99");
    QVERIFY(m_bench->find<QLabel>("selectedWellsHint")->text().contains("Z99"));
    wells->clear();
    QTest::keyClicks(wells, "A1:B2");
    start();
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, patience);
    QTRY_VERIFY(m_bench->find<QLabel>("statistics")->text().startsWith("All 4 wells"));
}

void TestTrouble::actionConfirmedAndRefused()
{
    m_bench->setUpOne("absorbance-96", fault({{"do", "ask"}, {"text", "Close the lid."}}));
    m_bench->open();
    for (const char *answer : {"confirm", "refuse"}) {
        start();
        QTRY_COMPARE(banner(), "Close the lid.");
        m_bench->click(answer);
        QTRY_VERIFY(!m_bench->instrument()->isBusy());
        QCOMPARE(kept(), 1);
    }
    QVERIFY(banner().startsWith("Cancelled."));
}

void TestTrouble::cancelled()
{
    m_bench->setUpOne("absorbance-96", fault({{"do", "stall"}}));
    m_bench->open();
    start();
    m_bench->click("cancel");
    QTRY_VERIFY_WITH_TIMEOUT(!m_bench->instrument()->isBusy(), 20000);
    QVERIFY(banner().startsWith("Cancelled."));
    QCOMPARE(kept(), 0);
}

// While a driver does not come back, the window cannot say any more for whom it waits.
void TestTrouble::slowDriverIsNamed()
{
    m_bench->setUp({});
    DeviceBroker::addDriver(std::make_shared<SlowDriver>());
    PaintedMessage watcher;
    m_bench->open(false);
    m_bench->window()->statusBar()->installEventFilter(&watcher);
    QTRY_VERIFY_WITH_TIMEOUT(m_bench->find<QPushButton>("start")->isEnabled(), 20000);
    QTRY_VERIFY(SlowDevice::painted.isEmpty());
    start();
    QTRY_COMPARE(SlowDevice::shown.size(), 2);
    QTRY_VERIFY(SlowDevice::painted.isEmpty());
    m_bench->click("cancel");
    QTRY_VERIFY_WITH_TIMEOUT(!m_bench->instrument()->isBusy(), 20000);
    SlowDriver::isPluggedIn = false;
    const QString waiting = "Waiting for the driver “slow” …";
    // open(), execute(), reset(), which does not help, and close().
    QCOMPARE(SlowDevice::shown, QStringList({waiting, waiting, waiting, waiting}));
    QTRY_VERIFY(SlowDevice::painted.isEmpty());
}

void TestTrouble::unplugged()
{
    m_bench->setUpOne("absorbance-96", {{"serial", "A-1"}}, 1);
    m_bench->open();
    start();
    m_bench->setUp({});
    QTRY_VERIFY_WITH_TIMEOUT(!m_bench->instrument()->isBusy(), 20000);
    QVERIFY(!banner().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->instrument()->state(), Instrument::Gone, 20000);
    QVERIFY(!m_bench->find<QPushButton>("start")->isEnabled());
    // It comes back, and works.
    m_bench->setUpOne("absorbance-96", {{"serial", "A-1"}});
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->instrument()->state(), Instrument::Closed, 20000);
    m_bench->click("again");
    QTRY_VERIFY_WITH_TIMEOUT(m_bench->find<QPushButton>("start")->isEnabled(), 20000);
    start();
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, patience);
}

void TestTrouble::faults_data()
{
    QTest::addColumn<QJsonObject>("entries");
    QTest::addColumn<int>("delivered");
    QTest::newRow("error") << QJsonObject{{"do", "error"}, {"code", "ERROR_DEVICE_TIMEOUT"}} << 0;
    QTest::newRow("refused") << QJsonObject{{"do", "refuse"}} << 0;
    QTest::newRow("partial data") << QJsonObject{{"do", "partial-data"}} << 1;
    QTest::newRow("wrong type") << QJsonObject{{"do", "wrong-type"}} << 1;
    QTest::newRow("unplugged") << QJsonObject{{"do", "unplug"}} << 0;
}

void TestTrouble::faults()
{
    QFETCH(QJsonObject, entries);
    m_bench->setUpOne("absorbance-96", fault(entries));
    m_bench->open();
    start();
    QTRY_VERIFY_WITH_TIMEOUT(!m_bench->instrument()->isBusy(), 20000);
    QVERIFY(!banner().isEmpty());
    QCOMPARE(m_bench->window()->history()->rowCount(), 0);
    // What was delivered all the same is lost to nobody.
    const QStringList files = QDir(m_bench->folder()).entryList({"*.delivered.json"}, QDir::Files);
    QTEST(files.size(), "delivered");
    for (const QString &file : files)
        QVERIFY2(banner().contains(file), qPrintable(banner()));
}

void TestTrouble::fullDisk()
{
    m_bench->setUpOne("absorbance-96");
    SmallDisk disk(m_bench->folder());
    m_bench->open();
    m_bench->find<QSpinBox>("count")->setValue(3);
    m_bench->find<QDoubleSpinBox>("interval")->setValue(0);
    disk.fill();
    start();
    QTRY_VERIFY(!m_bench->instrument()->isBusy());
    QCOMPARE(m_bench->instrument()->unkeptCount(), 3);
    QVERIFY2(banner().contains("not on disk"), qPrintable(banner()));
    QVERIFY2(banner().contains(disk.reason()), qPrintable(banner()));
    QCOMPARE(kept(), 0); // not even a part
    m_bench->click("again");
    QCOMPARE(m_bench->instrument()->unkeptCount(), 3);
    disk.clear();
    m_bench->click("again");
    QCOMPARE(m_bench->instrument()->unkeptCount(), 0);
    QCOMPARE(kept(), 3);
    QCOMPARE(m_bench->window()->history()->runs(0).size(), 3);
    QVERIFY(m_bench->find<PlateView>("plate")->isVisible());
    m_bench->close();
}

void TestTrouble::seriesKeepsEveryRun()
{
    m_bench->setUpOne("absorbance-96",
                      fault({{"do", "error"}, {"code", "ERROR_DEVICE_TIMEOUT"}, {"nth", 3}}));
    m_bench->open();
    m_bench->find<QSpinBox>("count")->setValue(5);
    m_bench->find<QDoubleSpinBox>("interval")->setValue(0);
    start();
    QTRY_VERIFY_WITH_TIMEOUT(!m_bench->instrument()->isBusy(), 20000);
    QCOMPARE(kept(), 2);
    QVERIFY(!banner().isEmpty());
    QCOMPARE(m_bench->window()->history()->rowCount(), 1);
    QCOMPARE(m_bench->window()->history()->runs(0).size(), 2);
}

void TestTrouble::closedDuringARun()
{
    m_bench->setUpOne("absorbance-96", {}, 1);
    m_bench->open();
    start();
    int asked = 0;
    const auto answer = [&asked](bool stays) {
        QTimer::singleShot(0, qApp, [&asked, stays] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            ++asked;
            if (stays)
                box->reject();
            else
                QTest::mouseClick(box->buttons().constLast() == box->defaultButton()
                                      ? box->buttons().constFirst()
                                      : box->buttons().constLast(),
                                  Qt::LeftButton);
        });
    };
    answer(true);
    QVERIFY(!m_bench->window()->close());
    QVERIFY(m_bench->instrument()->isBusy());
    answer(false);
    QVERIFY(m_bench->window()->close());
    QCOMPARE(asked, 2);
}

QTEST_MAIN(TestTrouble)
#include "tst_trouble.moc"
