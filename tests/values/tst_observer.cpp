#include <qelvalues/observer.h>

#include <qeldevices/deviceerrors.h>

#include <QtCore/QMetaMethod>
#include <QtTest/QTest>

#include <memory>

using namespace qel::devices;
using namespace qel::values;

class PlainDevice : public Device
{
    Q_OBJECT

public:
    PlainDevice()
        : Device({DeviceInfo::Simulator, QStringLiteral("d"), QStringLiteral("1"), {}, {}}, nullptr)
    { }
    bool open() override
    {
        return false;
    }
    void close() override { }
    void update() override { }
    void reset() override { }

protected:
    void executeImpl(DeviceFeature) override { }
};

class ObserverTest : public QObject
{
    Q_OBJECT

private slots:
    void everySignalIsAnEvent();
    void eventsHoldTheStateOfTheirMoment();
    void endsWithItsContext();
};

static QString lineOf(const Event &event)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6")
        .arg(QLatin1String(signalName(event.kind)))
        .arg(event.feature)
        .arg(event.flag)
        .arg(event.value.toString())
        .arg(event.actionId)
        .arg(event.action);
}

void ObserverTest::everySignalIsAnEvent()
{
    PlainDevice device;
    QStringList seen;
    observe(&device, &device, [&](const Event &event) { seen += lineOf(event); });

    device.setOpen(true);
    device.setBusy(true);
    emit device.transientValue(Device::DF_Calibration, 0.5);
    emit device.executed(Device::DF_PartsAligned, true, false);
    device.setName(QStringLiteral("N"));
    device.setSerial(QStringLiteral("S"));
    device.setDescriptor(Device::DF_Orientation, 7);
    device.setConfiguration(Device::DF_Orientation, 8);
    device.addFeature(Device::DF_Orientation);
    device.setError(ERROR_DEVICE_TIMEOUT, QString());
    const int id = device.emitActionRequired(QStringLiteral("a"));
    device.confirmAction(id);
    QCOMPARE(seen,
             (QStringList{
                 QStringLiteral("openChanged 0 1  -1 "),
                 QStringLiteral("busyChanged 0 1  -1 "),
                 QStringLiteral("transientValue 4 0 0.5 -1 "),
                 QStringLiteral("executed 10 1 false -1 "),
                 QStringLiteral("nameChanged 0 0 N -1 "),
                 QStringLiteral("serialChanged 0 0 S -1 "),
                 QStringLiteral("descriptorChanged 9 0 7 -1 "),
                 QStringLiteral("configurationChanged 9 0 8 -1 "),
                 QStringLiteral("featuresChanged 0 0  -1 "),
                 QStringLiteral("errorChanged 0 0  -1 "),
                 QStringLiteral("actionRequired 0 0  %1 a").arg(id),
                 QStringLiteral("actionConfirmed 0 0  %1 ").arg(id),
             }));

    // No signal of the class is left out.
    const QMetaObject &meta = Device::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const auto isCalled = [&](const QString &line) {
            return line.startsWith(QLatin1String(method.name()) + u' ');
        };
        QVERIFY2(!isSignal || std::any_of(seen.begin(), seen.end(), isCalled),
                 method.name().constData());
    }
}

void ObserverTest::eventsHoldTheStateOfTheirMoment()
{
    PlainDevice device;
    QVector<Event> seen;
    observe(&device, &device, [&](const Event &event) { seen += event; });
    device.setStatus(Device::SF_Open | Device::SF_Busy);
    device.setError(ERROR_DEVICE_TIMEOUT, QStringLiteral("more"));
    QCOMPARE(seen.size(), 3);
    QVERIFY(seen[0].isOpen && !seen[0].isBusy && seen[0].isOwnThread);
    QVERIFY(seen[1].isOpen && seen[1].isBusy && seen[1].errorCode == 0);
    QCOMPARE(seen[2].errorCode, int(ERROR_DEVICE_TIMEOUT));
    QCOMPARE(seen[2].errorTrId, device.errorTrId());
    QCOMPARE(seen[2].additionalInfoTrId, QStringLiteral("more"));
}

void ObserverTest::endsWithItsContext()
{
    PlainDevice device;
    int count = 0;
    auto context = std::make_unique<QObject>();
    observe(&device, context.get(), [&](const Event &) { ++count; });
    device.setOpen(true);
    context.reset();
    device.setOpen(false);
    QCOMPARE(count, 1);
}

QTEST_GUILESS_MAIN(ObserverTest)
#include "tst_observer.moc"
