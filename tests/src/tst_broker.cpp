#include "testdevice.h"

#include <qeldevices/devicebroker.h>

#include <QtTest/QtTest>

#include <functional>

using namespace qel::devices;

// A driver made of data: its name, its instruments, and what happens when it creates a device.
class TestDriver : public DeviceDriver
{
public:
    explicit TestDriver(const QString &name, const QList<DeviceInfo> &instruments = {})
        : m_name(name)
        , m_instruments(instruments)
    { }

    QString name() override
    {
        return m_name;
    }
    QList<DeviceInfo> availableDevices() override
    {
        return m_instruments;
    }
    Device *createDevice(const DeviceInfo &info) override
    {
        onCreate();
        return info.location() == "nowhere" ? nullptr : new TestDevice(info);
    }

    std::function<void()> onCreate = [] {};

private:
    const QString m_name;
    const QList<DeviceInfo> m_instruments;
};

class tst_Broker : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        DeviceBroker::DRIVERS.clear();
    }
    void names();
    void createDevice_data();
    void createDevice();
    void replacedWhileCreating();
    void enumeration();
};

static DeviceInfo record(const QString &driver, const QString &location = "bench",
                         DeviceInfo::Interface interface = DeviceInfo::Serial)
{
    return {interface, driver, location, "name", "serial"};
}

void tst_Broker::names()
{
    Journal journal;
    QCOMPARE(DeviceBroker::availableDrivers(), QStringList());
    QCOMPARE(&DeviceBroker::DRIVERS, &DeviceBroker::DRIVERS_RELEASE);
    const auto first = std::make_shared<TestDriver>("a");
    DeviceBroker::addDriver(first);
    DeviceBroker::addDriver(std::make_shared<TestDriver>("A"));
    QCOMPARE(first.use_count(), 2);
    DeviceBroker::addDriver(std::make_shared<TestDriver>("a"));
    QCOMPARE(first.use_count(), 1);
    QStringList names = DeviceBroker::availableDrivers();
    names.sort();
    QCOMPARE(names, QStringList({"A", "a"}));
    QCOMPARE(journal.take(), QStringList());
}

void tst_Broker::createDevice_data()
{
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QStringList>("notes");
    const QString creating = "info qel.devices: Creating device: \"name\" @ \"%1\" [ Serial ]";
    const QString unknown = "warning qel.devices: Unknown driver: \"%1\"";
    const QString failed = "warning qel.devices: Driver \"%1\" failed to create a device.";
    QTest::newRow("created") << "a"
                             << "bench" << QStringList{creating.arg("bench")};
    QTest::newRow("refused") << "a"
                             << "nowhere" << QStringList{creating.arg("nowhere"), failed.arg("a")};
    QTest::newRow("letter case") << "A"
                                 << "bench"
                                 << QStringList{creating.arg("bench"), unknown.arg("A"),
                                                failed.arg("A")};
    QTest::newRow("no driver") << ""
                               << "bench"
                               << QStringList{creating.arg("bench"), unknown.arg(""),
                                              failed.arg("")};
}

void tst_Broker::createDevice()
{
    QFETCH(QString, driver);
    QFETCH(QString, location);
    QFETCH(QStringList, notes);
    Journal journal;
    int reached = 0;
    DeviceBroker::addDriver(std::make_shared<TestDriver>("a"));
    const auto second = std::make_shared<TestDriver>("a");
    second->onCreate = [&reached] { ++reached; };
    DeviceBroker::addDriver(second);
    const std::unique_ptr<Device> device(DeviceBroker::createDevice(record(driver, location)));
    QCOMPARE(journal.take(), notes);
    QCOMPARE(reached, driver == "a" ? 1 : 0);
    QCOMPARE(second.use_count(), 2);
    QCOMPARE(bool(device), notes.size() == 1);
    QVERIFY(!device || (!device->parent() && device->deviceInfo() == record(driver, location)));
}

// The broker's own reference keeps a driver alive that loses its place while it works.
void tst_Broker::replacedWhileCreating()
{
    Journal journal;
    auto driver = std::make_shared<TestDriver>("");
    const std::weak_ptr<TestDriver> watched = driver;
    bool alive = false;
    driver->onCreate = [&watched, &alive] {
        DeviceBroker::addDriver(std::make_shared<TestDriver>(""));
        alive = !watched.expired();
    };
    DeviceBroker::addDriver(std::move(driver));
    const std::unique_ptr<Device> device(DeviceBroker::createDevice(record("")));
    QVERIFY(device && alive && watched.expired());
}

void tst_Broker::enumeration()
{
    Journal journal;
    QCOMPARE(DeviceBroker::availableDevices(), QList<DeviceInfo>());
    const DeviceInfo shared = record("shared");
    const DeviceInfo simulated = record("z", "bench", DeviceInfo::Simulator);
    const DeviceInfo networked = record("a", "bench", DeviceInfo::Network);
    const auto add = [](const QString &name, const QList<DeviceInfo> &instruments) {
        DeviceBroker::addDriver(std::make_shared<TestDriver>(name, instruments));
    };
    add("a", {networked, shared, record("a", "b")});
    add("idle", {});
    add("z", {record("a", "c"), shared, simulated});
    const QList<DeviceInfo> sorted{simulated, record("a", "b"), record("a", "c"),
                                   shared,    shared,           networked};
    QCOMPARE(DeviceBroker::availableDevices(), sorted);
    add("a", {});
    QCOMPARE(DeviceBroker::availableDevices().size(), 3);
    QCOMPARE(journal.take(), QStringList());
}

QTEST_APPLESS_MAIN(tst_Broker)
#include "tst_broker.moc"
