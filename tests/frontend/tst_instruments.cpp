// Instruments that come and go while somebody looks, and devices that are closed.
#include "fakedevice.h"

#include <qelfrontend/closing.h>
#include <qelfrontend/instrumentwatch.h>

#include <qeldevices/devicebroker.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

using namespace qel::devices;
using namespace qel::frontend;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(FakeDevice::Action)

static DeviceInfo instrument(const char *driver, const char *location, const char *serial)
{
    return {DeviceInfo::Serial, QString::fromLatin1(driver), QString::fromLatin1(location),
            QStringLiteral("Reader"), QString::fromLatin1(serial)};
}

class BenchDriver : public DeviceDriver
{
public:
    explicit BenchDriver(const char *name)
        : m_name(QString::fromLatin1(name))
    { }
    QString name() override
    {
        return m_name;
    }
    Device *createDevice(const DeviceInfo &) override
    {
        return nullptr;
    }
    QList<DeviceInfo> availableDevices() override
    {
        ++questions;
        if (whenAsked)
            whenAsked();
        return devices;
    }

    QList<DeviceInfo> devices;
    std::function<void()> whenAsked;
    int questions = 0;

private:
    const QString m_name;
};

class InstrumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tellsWhatIsNew();
    void asksOneDriverAtATime();
    void asksOnlyTheseDrivers();
    void searchesAgainWhenAskedInTheMiddle();
    void stops();
    void mayBeDeletedByWhomItTells();
    void closes_data();
    void closes();

private:
    std::shared_ptr<BenchDriver> m_first;
    std::shared_ptr<BenchDriver> m_second;
};

void InstrumentsTest::init()
{
    m_first = std::make_shared<BenchDriver>("first");
    m_second = std::make_shared<BenchDriver>("second");
    DeviceBroker::addDriver(m_first);
    DeviceBroker::addDriver(m_second);
}

void InstrumentsTest::cleanup()
{
    DeviceBroker::DRIVERS.clear();
}

// One search, and what it has told.
static QStringList news(InstrumentWatch *watch)
{
    QStringList told;
    const QObject scope;
    const auto place = [](const DeviceInfo &info) {
        return info.driver() + u'/' + info.location();
    };
    QObject::connect(watch, &InstrumentWatch::arrived, &scope,
                     [&](const DeviceInfo &info) { told += u'+' + place(info); });
    QObject::connect(watch, &InstrumentWatch::left, &scope,
                     [&](const DeviceInfo &info) { told += u'-' + place(info); });
    QObject::connect(watch, &InstrumentWatch::changed, &scope,
                     [&](const DeviceInfo &before, const DeviceInfo &now) {
                         told += place(before) + u'>' + place(now);
                     });
    QSignalSpy searched(watch, &InstrumentWatch::searched);
    watch->refresh();
    return searched.wait() ? told : QStringList{QStringLiteral("no search")};
}

void InstrumentsTest::tellsWhatIsNew()
{
    InstrumentWatch watch;
    m_second->devices = {instrument("second", "1", "A")};
    QCOMPARE(news(&watch), QStringList{"+second/1"});
    QCOMPARE(news(&watch), QStringList());
    m_first->devices = {instrument("first", "7", "B")};
    m_second->devices = {instrument("second", "2", "A")};
    QCOMPARE(news(&watch), (QStringList{"+first/7", "second/1>second/2"}));
    QCOMPARE(watch.instruments(), m_first->devices + m_second->devices);
    DeviceBroker::DRIVERS.remove(QStringLiteral("second"));
    QCOMPARE(news(&watch), QStringList{"-second/2"});
    QCOMPARE(watch.instruments(), m_first->devices);
}

void InstrumentsTest::asksOneDriverAtATime()
{
    InstrumentWatch watch;
    bool breathed = false;
    m_first->whenAsked = [&] { QTimer::singleShot(0, &watch, [&] { breathed = true; }); };
    m_second->whenAsked = [&] { QVERIFY(breathed); };
    news(&watch);
    QCOMPARE(m_second->questions, 1);
}

void InstrumentsTest::asksOnlyTheseDrivers()
{
    InstrumentWatch watch({QStringLiteral("second"), QStringLiteral("unknown")});
    m_first->devices = {instrument("first", "1", "A")};
    m_second->devices = {instrument("second", "1", "A")};
    QCOMPARE(news(&watch), QStringList{"+second/1"});
    QCOMPARE(m_first->questions, 0);
}

void InstrumentsTest::searchesAgainWhenAskedInTheMiddle()
{
    InstrumentWatch watch;
    QSignalSpy searched(&watch, &InstrumentWatch::searched);
    m_second->whenAsked = [&] {
        if (m_second->questions == 1)
            watch.refresh();
    };
    watch.refresh();
    QTRY_COMPARE(searched.count(), 2);
    QCOMPARE(m_first->questions, 2);
}

void InstrumentsTest::stops()
{
    InstrumentWatch watch;
    QSignalSpy searched(&watch, &InstrumentWatch::searched);
    watch.start(0ms);
    QTRY_VERIFY(searched.count() > 2);
    bool stopped = false;
    m_first->whenAsked = [&] {
        watch.stop();
        stopped = true;
    };
    QTRY_VERIFY(stopped);
    const int questions = m_first->questions;
    QTest::qWait(10);
    QCOMPARE(m_first->questions, questions);
    m_first->whenAsked = nullptr;
    watch.start(0ms);
    QTRY_VERIFY(m_first->questions > questions + 1);
}

void InstrumentsTest::mayBeDeletedByWhomItTells()
{
    auto *watch = new InstrumentWatch;
    int told = 0;
    connect(watch, &InstrumentWatch::arrived, this, [&] {
        ++told;
        delete watch;
    });
    m_first->devices = {instrument("first", "1", "A"), instrument("first", "2", "B")};
    watch->start();
    QTRY_COMPARE(told, 1);
    QCOMPARE(m_second->questions, 0);
}

void InstrumentsTest::closes_data()
{
    QTest::addColumn<FakeDevice::Action>("onClose");
    QTest::addColumn<bool>("isClosed");
    const auto row = [](const char *name, const FakeDevice::Action &onClose, bool isClosed) {
        QTest::newRow(name) << onClose << isClosed;
    };
    row(
        "at once", [](FakeDevice *device) { device->setOpen(false); }, true);
    row(
        "later", [](FakeDevice *device) { device->later([device] { device->setOpen(false); }); },
        true);
    row(
        "gone", [](FakeDevice *device) { device->deleteLater(); }, true);
    row(
        "gone at once", [](FakeDevice *device) { delete device; }, true);
    row(
        "never", [](FakeDevice *) {}, false);
}

void InstrumentsTest::closes()
{
    QFETCH(const FakeDevice::Action, onClose);
    QFETCH(const bool, isClosed);
    const QPointer<FakeDevice> device(new FakeDevice);
    device->open();
    device->onClose = onClose;
    QList<bool> answers;
    closeDevice(device, isClosed ? 10s : 20ms, this, [&](bool closed) { answers += closed; });
    QVERIFY(answers.isEmpty());
    QTRY_COMPARE(answers, QList<bool>{isClosed});
    delete device;
    QCoreApplication::processEvents();
    QCOMPARE(answers.size(), 1);
}

QTEST_GUILESS_MAIN(InstrumentsTest)
#include "tst_instruments.moc"
