#include "testdevice.h"

#include <qeldevices/devicebroker.h>

#include <QtTest/QtTest>

#include <cstring>

using namespace qel::devices;

class tst_Device : public QObject
{
    Q_OBJECT

private slots:
    void methods();
    void properties();
    void enumerations();
    void brokerMetaObject();
    void virtualSlots();
    void startsEmpty();
    void identity();
    void status_data();
    void status();
    void driverOperations();
    void parentDeletes();
};

static QString describe(const QMetaMethod &method)
{
    static const char *const types[] = {"method", "signal", "slot", "constructor"};
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i)
        parameters << method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i);
    return QStringLiteral("%1 %2 %3 %4(%5)%6")
        .arg(method.access() == QMetaMethod::Public ? "public" : "other",
             types[method.methodType()], method.typeName(), method.name(), parameters.join(", "),
             method.attributes() & QMetaMethod::Cloned ? " cloned" : "");
}

void tst_Device::methods()
{
    const QMetaObject &meta = Device::staticMetaObject;
    QCOMPARE(meta.className(), "qel::devices::Device");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.classInfoCount() + meta.constructorCount(), 0);
    QStringList actual;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        actual << describe(meta.method(i));
    const QStringList expected{
        "public signal void openChanged(bool open)",
        "public signal void busyChanged(bool isBusy)",
        "public signal void transientValue(DeviceFeature feature, QVariant value)",
        "public signal void executed(DeviceFeature feature, bool ok, QVariant result)",
        "public signal void executed(DeviceFeature feature, bool ok) cloned",
        "public signal void nameChanged()",
        "public signal void serialChanged()",
        "public signal void descriptorChanged(DeviceFeature feature)",
        "public signal void configurationChanged(DeviceFeature feature)",
        "public signal void featuresChanged()",
        "public signal void errorChanged()",
        "public signal void actionRequired(int actionId, QString action)",
        "public signal void actionConfirmed(int actionId)",
        "public slot bool open()",
        "public slot void close()",
        "public slot void update()",
        "public slot void reset()",
        "public slot void execute(DeviceFeature feature)",
        "public slot void confirmAction(int actionId)",
        "public slot void abortAction(int actionId)",
        "public method bool hasFeature(DeviceFeature feature)",
        "public method QVariant descriptor(DeviceFeature feature)",
        "public method QVariant configuration(DeviceFeature feature)",
        "public method void setConfiguration(DeviceFeature feature, QVariant configuration)",
    };
    QCOMPARE(actual, expected);
}

void tst_Device::properties()
{
    const QMetaObject &meta = Device::staticMetaObject;
    QStringList actual;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QVERIFY(property.isReadable() && property.isDesignable() && property.isScriptable()
                && property.isStored() && !property.isUser() && !property.isFinal()
                && !property.isResettable());
        actual << QStringLiteral("%1 %2%3%4 %5")
                      .arg(property.typeName(), property.name(),
                           property.isWritable() ? " writable" : "",
                           property.isConstant() ? " constant" : "",
                           property.notifySignal().name());
    }
    const QStringList expected{"bool isOpen openChanged",
                               "bool isBusy busyChanged",
                               "QString name writable nameChanged",
                               "QString serial serialChanged",
                               "QString location constant ",
                               "QString driver constant ",
                               "int errorCode errorChanged",
                               "QString errorTrId errorChanged",
                               "QString errorAdditionalInfoTrId errorChanged"};
    QCOMPARE(actual, expected);
}

static QString describe(const QMetaEnum &enumeration)
{
    QString text =
        QStringLiteral("%1::%2%3%4:")
            .arg(enumeration.scope(), enumeration.name(), enumeration.isFlag() ? " flag" : "",
                 enumeration.isScoped() ? " scoped" : "");
    for (int i = 0; i < enumeration.keyCount(); ++i)
        text += QStringLiteral(" %1=%2").arg(enumeration.key(i)).arg(enumeration.value(i));
    return text;
}

void tst_Device::enumerations()
{
    const QMetaObject &meta = Device::staticMetaObject;
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
    QCOMPARE(describe(meta.enumerator(meta.enumeratorOffset())),
             "qel::devices::Device::DeviceFeature: DF_None=0 DF_AmbientTemperature=1 "
             "DF_AbsorbanceMeasurement=2 DF_LuminescenceMeasurement=3 DF_Calibration=4 "
             "DF_PlateDetection=5 DF_FirmwareInfo=6 DF_FirmwareUpdate=7 DF_ReferenceNumber=8 "
             "DF_Orientation=9 DF_PartsAligned=10 DF_LedBarEffect=11");
    QVERIFY((std::is_same_v<std::underlying_type_t<Device::DeviceFeature>, qint32>));

    const QMetaObject &space = qel::devices::staticMetaObject;
    QCOMPARE(space.className(), "qel::devices");
    QVERIFY(!space.superClass());
    QCOMPARE(space.methodCount() + space.propertyCount() + space.classInfoCount()
                 + space.constructorCount(),
             0);
    QCOMPARE(space.enumeratorCount(), 2);
    QCOMPARE(describe(space.enumerator(0)),
             "qel::devices::LedBarEffect_Effect scoped: Solid=0 Progress=1 Cylon=2 Rainbow=3 "
             "Blinking=4 Breathing=5");
    QCOMPARE(describe(space.enumerator(1)),
             "qel::devices::SlotStatus scoped: Empty=0 Occupied=1 Unknown=2");
}

void tst_Device::brokerMetaObject()
{
    const QMetaObject &meta = DeviceBroker::staticMetaObject;
    QCOMPARE(meta.className(), "qel::devices::DeviceBroker");
    QCOMPARE(meta.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(meta.propertyCount(), QObject::staticMetaObject.propertyCount());
    QCOMPARE(meta.enumeratorCount(), QObject::staticMetaObject.enumeratorCount());
}

// Where a pointer to a virtual member function points in the table of virtual functions.
template<typename Member>
static int slot(Member member)
{
    qptrdiff words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    return int((words[0] & ~qptrdiff(1)) / qptrdiff(sizeof(void *)));
}

// Drivers are built elsewhere: a moved slot would make old ones call the wrong function.
void tst_Device::virtualSlots()
{
    struct Opened : Device
    {
        using Device::abortActionImpl;
        using Device::confirmActionImpl;
        using Device::disconnectNotify;
        using Device::executeImpl;
    };
    const int last = slot(&Opened::disconnectNotify);
    const QList<int> own{slot(&Device::open),           slot(&Device::close),
                         slot(&Device::update),         slot(&Device::reset),
                         slot(&Opened::executeImpl),    slot(&Opened::confirmActionImpl),
                         slot(&Opened::abortActionImpl)};
    for (int i = 0; i < own.size(); ++i)
        QCOMPARE(own[i], last + 1 + i);
    // Two entries of the destructor come first.
    QCOMPARE(slot(&DeviceDriver::name), 2);
    QCOMPARE(slot(&DeviceDriver::createDevice), 3);
    QCOMPARE(slot(&DeviceDriver::availableDevices), 4);
    QCOMPARE(slot(&DevicePlugin::registerDrivers), 2);
}

void tst_Device::startsEmpty()
{
    Journal journal;
    const TestDevice device;
    QVERIFY(!device.isOpen() && !device.isBusy());
    QCOMPARE(device.errorCode(), 0);
    QVERIFY(device.errorAdditionalInfoTrId().isNull());
    QCOMPARE(journal.take(), QStringList());
}

void tst_Device::identity()
{
    Journal journal;
    TestDevice device({DeviceInfo::Network, "driver", "location", {}, "serial"});
    device.setName("");
    device.setSerial("serial");
    QVERIFY(device.setProperty("name", ""));
    QVERIFY(device.name().isNull());
    QCOMPARE(journal.take(), QStringList());

    connect(&device, &Device::nameChanged, &device, [&] { Journal::note(device.name()); });
    connect(&device, &Device::serialChanged, &device, [&] { Journal::note(device.serial()); });
    device.setName("Name");
    device.setSerial("s2");
    QVERIFY(device.setProperty("name", "third"));
    QVERIFY(!device.setProperty("serial", "s3"));
    QCOMPARE(
        journal.take(),
        QStringList({"nameChanged |", "Name", "serialChanged |", "s2", "nameChanged |", "third"}));
    QVERIFY(device.deviceInfo()
            == DeviceInfo(DeviceInfo::Network, "driver", "location", "third", "s2"));
    QCOMPARE(device.property("driver").toString(), "driver");
    QCOMPARE(device.property("location").toString(), "location");
}

void tst_Device::status_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<QStringList>("notes");
    QTest::newRow("both on") << 0 << 3
                             << QStringList{"openChanged true | open",
                                            "busyChanged true | open busy"};
    QTest::newRow("both off") << 3 << 0
                              << QStringList{"openChanged false | busy", "busyChanged false |"};
    QTest::newRow("swapped") << 1 << 2
                             << QStringList{"openChanged false |", "busyChanged true | busy"};
    QTest::newRow("busy alone") << 0 << 2 << QStringList{"busyChanged true | busy"};
    QTest::newRow("only undefined bits") << 0 << 0x4 << QStringList{};
    QTest::newRow("undefined bits too") << 1 << 0x7c << QStringList{"openChanged false |"};
}

void tst_Device::status()
{
    QFETCH(int, before);
    QFETCH(int, after);
    TestDevice device;
    device.setOpen(before & Device::SF_Open);
    device.setBusy(before & Device::SF_Busy);
    Journal journal;
    device.setStatus(QFlags<Device::StatusFlag>(QFlag(after)));
    QTEST(journal.take(), "notes");
    device.setStatus(QFlags<Device::StatusFlag>(QFlag(after)));
    device.setOpen(after & Device::SF_Open);
    device.setBusy(after & Device::SF_Busy);
    QCOMPARE(journal.take(), QStringList());
}

void tst_Device::driverOperations()
{
    Journal journal;
    TestDevice device;
    bool opened = false;
    QVERIFY(QMetaObject::invokeMethod(&device, "open", Q_RETURN_ARG(bool, opened)));
    QVERIFY(opened && !device.isOpen());
    for (const char *slot : {"close", "update", "reset"})
        QVERIFY(QMetaObject::invokeMethod(&device, slot));
    QCOMPARE(journal.take(), QStringList({"open()", "close()", "update()", "reset()"}));
}

void tst_Device::parentDeletes()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<Device> device(
        new TestDevice({DeviceInfo::Serial, {}, {}, {}, {}}, parent.get()));
    parent.reset();
    QVERIFY(!device);
}

QTEST_APPLESS_MAIN(tst_Device)
#include "tst_device.moc"
