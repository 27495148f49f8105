#include "testdevice.h"

#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtTest/QtTest>

using namespace qel::devices;

// Handles the answers to its requests.
class AnsweringDevice : public TestDevice
{
protected:
    void confirmActionImpl(int id) override
    {
        Journal::note(QStringLiteral("confirm %1").arg(id));
    }
    void abortActionImpl(int id) override
    {
        Journal::note(QStringLiteral("abort %1").arg(id));
    }
};

class tst_Execution : public QObject
{
    Q_OBJECT

private slots:
    void actionIds(); // the first, for it sees the process's first request
    void execute_data();
    void execute();
    void queuedByName();
    void answers();
    void errorState();
    void errorCodes_data();
    void errorCodes();
    void rules();
};

void tst_Execution::actionIds()
{
    Journal journal;
    TestDevice first;
    TestDevice second;
    // A receiver that makes a request of its own while it hears of the first one.
    connect(&first, &Device::actionRequired, &first, [&second](int id) {
        if (id == 0)
            QCOMPARE(second.emitActionRequired("nested"), 1);
    });
    QCOMPARE(first.emitActionRequired("insert \"A\""), 0);
    QCOMPARE(second.emitActionRequired({}), 2);
    QCOMPARE(first.emitActionRequired("b"), 3);
    QCOMPARE(
        journal.take(),
        QStringList(
            {R"(debug qel.devices: Driver requested action: "insert \"A\"")",
             "actionRequired 0 insert \"A\" |",
             R"(debug qel.devices: Driver requested action: "nested")", "actionRequired 1 nested |",
             R"(debug qel.devices: Driver requested action: "")", "actionRequired 2  |",
             R"(debug qel.devices: Driver requested action: "b")", "actionRequired 3 b |"}));
}

void tst_Execution::execute_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("feature");
    QTest::addColumn<QStringList>("notes");
    const auto row = [](const char *name, int status, int feature, const QStringList &notes) {
        QTest::newRow(name) << status << feature << notes;
    };
    const QString requested = "info qel.devices: Feature execution requested: ";
    const QString closed = "warning qel.devices.driver: Device is not open.";
    const QString unavailable = "warning qel.devices.driver: Feature not available: ";
    // The device has feature 9, had feature 4, and has never heard of the others.
    row("available", 1, 9, {requested + "DF_Orientation", "executeImpl(9)"});
    row("busy", 3, 9, {requested + "DF_Orientation", "executeImpl(9)"});
    row("closed", 2, 9,
        {requested + "DF_Orientation", closed, "executed 9 false invalid | busy 9"});
    row("closed, unknown", 0, 0, {requested + "DF_None", closed, "executed 0 false invalid | 9"});
    row("removed", 1, 4,
        {requested + "DF_Calibration", unavailable + "DF_Calibration",
         "executed 4 false invalid | open 9"});
    row("no enumerator", 1, 99, {requested, unavailable, "executed 99 false invalid | open 9"});
}

void tst_Execution::execute()
{
    QFETCH(int, status);
    QFETCH(int, feature);
    TestDevice device;
    device.addFeature({Device::DF_Orientation, Device::DF_Calibration});
    device.removeFeature(Device::DF_Calibration);
    device.setStatus(QFlags<Device::StatusFlag>(QFlag(status)));
    Journal journal;
    device.execute(Device::DeviceFeature(feature));
    QTEST(journal.take(), "notes");
}

// What generic front ends need for queued calls: the unqualified name, registered by them.
void tst_Execution::queuedByName()
{
    using DeviceFeature = Device::DeviceFeature;
    qRegisterMetaType<DeviceFeature>("DeviceFeature");
    TestDevice device;
    device.setOpen(true);
    device.addFeature(Device::DF_Orientation);
    Journal journal;
    QVERIFY(QMetaObject::invokeMethod(&device, "execute", Qt::QueuedConnection,
                                      Q_ARG(DeviceFeature, Device::DF_Orientation)));
    QCOMPARE(journal.take(), QStringList());
    QCoreApplication::sendPostedEvents(&device);
    QCOMPARE(journal.take().constLast(), "executeImpl(9)");

    QSignalSpy spy(&device, SIGNAL(executed(DeviceFeature, bool)));
    device.execute(Device::DF_None);
    QCOMPARE(spy.count(), 1);
}

void tst_Execution::answers()
{
    Journal journal;
    TestDevice plain;
    plain.confirmAction(42);
    plain.abortAction(42);
    QCOMPARE(journal.take(),
             QStringList({"actionConfirmed 42 |",
                          "warning qel.devices: Action confirmed, but not handled: 42"}));

    AnsweringDevice answering;
    for (const int id : {-1, 7, 7}) {
        answering.confirmAction(id);
        answering.abortAction(id);
    }
    QCOMPARE(journal.take(),
             QStringList({"actionConfirmed -1 |", "confirm -1", "abort -1", "actionConfirmed 7 |",
                          "confirm 7", "abort 7", "actionConfirmed 7 |", "confirm 7", "abort 7"}));

    // An answer from within the request arrives before its id.
    connect(&answering, &Device::actionRequired, &answering, &Device::abortAction);
    const int id = answering.emitActionRequired("now");
    QCOMPARE(journal.take().constLast(), QStringLiteral("abort %1").arg(id));
}

void tst_Execution::errorState()
{
    Journal journal;
    TestDevice device;
    connect(&device, &Device::errorChanged, &device, [&device] {
        Journal::note(QStringLiteral("%1 \"%2\"")
                          .arg(device.errorCode())
                          .arg(device.property("errorAdditionalInfoTrId").toString()));
    });
    device.setError(0, {});
    device.setError(0, "");
    QCOMPARE(journal.take(), QStringList());
    device.setError(0, "x");
    device.setError(0, {});
    QCOMPARE(journal.take(),
             QStringList({"errorChanged |", "0 \"x\"", "errorChanged |", "0 \"\""}));

    // The message comes before the change.
    journal.onMessage = [&device] { Journal::note(QString::number(device.errorCode())); };
    device.setError(ERROR_DEVICE_TIMEOUT, {});
    journal.onMessage = {};
    device.setError(ERROR_DEVICE_TIMEOUT, "");
    QVERIFY(device.errorAdditionalInfoTrId().isNull());
    device.setError(ERROR_DEVICE_TIMEOUT, "a \"b\"");
    device.setError(NO_DEVICE_ERROR, {});
    const QString message = "warning qel.devices: Device error: 0x8004 \n\t "
                            "\"libqeldevices-ERROR_DEVICE_TIMEOUT\" \n\t \"%1\"";
    QCOMPARE(journal.take(),
             QStringList({message.arg(""), "0", "errorChanged |", "32772 \"\"",
                          message.arg("a \\\"b\\\""), "errorChanged |", "32772 \"a \"b\"\"",
                          "errorChanged |", "0 \"\""}));
}

void tst_Execution::errorCodes_data()
{
    QTest::addColumn<int>("code");
    int code = 0x8000;
    for (const char *name : {"UNKNOWN", "VENDOR_SPECIFIC", "CANT_OPEN", "NOT_READY", "TIMEOUT",
                             "CANT_WRITE", "CHECKSUM_MISMATCH", "INVALID_CONFIGURATION",
                             "NOT_CALIBRATED", "DISCONNECTED", "BOOT_FAIL", "API_TOO_NEW"})
        QTest::newRow(name) << code++;
    for (const int unlisted : {1, -1, 5, 0x7fff, 0x800c, 0xffff})
        QTest::addRow("UNKNOWN %d", unlisted) << unlisted;
}

void tst_Execution::errorCodes()
{
    QFETCH(int, code);
    const QString name = QString(QTest::currentDataTag()).section(' ', 0, 0);
    TestDevice device;
    QCOMPARE(device.errorTrId(), "libqeldevices-NO_DEVICE_ERROR");
    Journal journal;
    device.setError(code, {});
    QCOMPARE(device.property("errorCode").toInt(), code);
    QCOMPARE(device.property("errorTrId").toString(), "libqeldevices-ERROR_DEVICE_" + name);
    QCOMPARE(journal.take().constFirst().section("\n\t", 0, 1),
             QStringLiteral("warning qel.devices: Device error: 0x%1 \n\t \"%2\" ")
                 .arg(QString::number(code, 16), device.errorTrId()));
}

void tst_Execution::rules()
{
    QCOMPARE(&LogCDevices(), &LogCDevices());
    const auto reset = qScopeGuard([] { QLoggingCategory::setFilterRules({}); });
    Journal journal;
    TestDevice device;
    QLoggingCategory::setFilterRules("qel.devices.info=false");
    device.execute(Device::DF_None);
    device.setError(ERROR_DEVICE_UNKNOWN, {});
    qCInfo(LogCDriver) << "a driver's own";
    const QStringList notes = journal.take();
    QCOMPARE(notes.size(), 5);
    QCOMPARE(notes.mid(0, 2),
             QStringList({"warning qel.devices.driver: Device is not open.",
                          "executed 0 false invalid |"}));
    QVERIFY(notes.at(2).startsWith("warning qel.devices: Device error: 0x8000"));
    QCOMPARE(notes.at(4), "info qel.devices.driver: a driver's own");

    QLoggingCategory::setFilterRules("qel.*=false");
    device.execute(Device::DF_None);
    device.setError(5, "x");
    device.confirmAction(device.emitActionRequired("y"));
    const QStringList silent = journal.take();
    QCOMPARE(silent.filter("qel."), QStringList());
    QCOMPARE(silent.size(), 4);
}

QTEST_GUILESS_MAIN(tst_Execution)
#include "tst_execution.moc"
