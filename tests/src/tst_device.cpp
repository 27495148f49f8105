#include "testdevice.h"

#include <qeldevices/devicebroker.h>

#include <QtTest/QtTest>

using namespace qel::devices;

class tst_Device : public QObject
{
    Q_OBJECT

private slots:
    void metaObjects();
    void startsEmpty();
    void identity();
    void status_data();
    void status();
    void parentDeletes();
};

// What a meta-object declares beyond its base, a line for each member.
static QStringList describe(const QMetaObject &meta)
{
    static const char *const types[] = {"method", "signal", "slot", "constructor"};
    const QMetaObject *base = meta.superClass();
    QStringList lines{
        QStringLiteral("%1 : %2").arg(meta.className(), base ? base->className() : "-")};
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QStringList parameters;
        for (int j = 0; j < method.parameterCount(); ++j)
            parameters << method.parameterTypes().at(j) + ' ' + method.parameterNames().at(j);
        lines << QStringLiteral("%1%2 %3 %4(%5)")
                     .arg(method.access() != QMetaMethod::Public          ? "hidden "
                              : method.attributes() & QMetaMethod::Cloned ? "cloned "
                                                                          : "",
                          types[method.methodType()], method.typeName(), method.name(),
                          parameters.join(", "));
    }
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const bool defaults = property.isReadable() && property.isDesignable()
            && property.isScriptable() && property.isStored() && !property.isResettable()
            && !property.isUser() && !property.isFinal();
        lines << QStringLiteral("%1%2%3property %4 %5 %6")
                     .arg(defaults ? "" : "unusual ", property.isWritable() ? "writable " : "",
                          property.isConstant() ? "constant " : "", property.typeName(),
                          property.name(),
                          property.hasNotifySignal() ? property.notifySignal().name() : "-");
    }
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i) {
        const QMetaEnum type = meta.enumerator(i);
        lines << QStringLiteral("%1%2 %3::%4")
                     .arg(type.isScoped() ? "scoped " : "", type.isFlag() ? "flags" : "enumeration",
                          type.scope(), type.name());
        for (int j = 0; j < type.keyCount(); ++j)
            lines << QStringLiteral("  %1 = %2").arg(type.key(j)).arg(type.value(j));
    }
    for (int i = 0; i < meta.constructorCount() + meta.classInfoCount(); ++i)
        lines << "constructor or class information";
    return lines;
}

void tst_Device::metaObjects()
{
    QFile file(QFINDTESTDATA("expected/metaobjects.txt"));
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(describe(Device::staticMetaObject) + describe(DeviceBroker::staticMetaObject)
                 + describe(qel::devices::staticMetaObject),
             QString::fromUtf8(file.readAll().trimmed()).split('\n'));
    QVERIFY((std::is_same_v<std::underlying_type_t<Device::DeviceFeature>, qint32>));
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
