#include <qeldriver/builders.h>
#include <qeldriver/instrument.h>

#include <QtTest/QtTest>

#include <functional>

using namespace qel::devices;
using qel::driver::SettingBuilder;

// An instrument that does nothing by itself: the test says how it goes on.
class Puppet : public qel::driver::Instrument
{
public:
    Puppet()
        : Instrument({DeviceInfo::Serial, QStringLiteral("driver"), {}, {}, {}})
    {
        connect(this, &Device::openChanged, this,
                [this](bool open) { note(open ? "open" : "closed"); });
        connect(this, &Device::busyChanged, this,
                [this](bool busy) { note(busy ? "busy" : "idle"); });
        connect(this, &Device::errorChanged, this, [this] {
            note(errorCode() ? "error " + QByteArray::number(errorCode() - 0x8000) : "no error");
        });
        connect(this, &Device::executed, this,
                [this](DeviceFeature feature, bool ok, const QVariant &result) {
                    note("executed " + QByteArray::number(feature) + (ok ? " ok " : " not ok ")
                         + result.toByteArray());
                });
        connect(this, &Device::transientValue, this, [this](DeviceFeature, const QVariant &value) {
            note("progress " + value.toHash().value(QStringLiteral("progress")).toByteArray());
        });
        connect(this, &Device::actionRequired, this, [this](int id) { actionId = id; });
    }

    using Instrument::askUser;
    using Instrument::fail;
    using Instrument::finish;
    using Instrument::isOpening;
    using Instrument::lost;
    using Instrument::opened;
    using Instrument::openingFailed;
    using Instrument::reportProgress;
    using Instrument::running;
    using Instrument::setOpeningLimit;

    void note(const QByteArray &text)
    {
        m_notes << text;
    }
    QByteArray takeNotes()
    {
        return std::exchange(m_notes, {}).join("; ");
    }
    void openAtOnce()
    {
        open();
        if (isOpening())
            opened();
        m_notes.clear();
    }

    std::function<void()> onOpening = [] {};
    std::function<void(const QVariantHash &)> onRun = [](const QVariantHash &) {};
    int actionId = -1;

protected:
    void startOpening() override
    {
        setDescriptor(DF_Calibration, {});
        setDescriptor(
            DF_LuminescenceMeasurement,
            qel::driver::luminescenceDescriptor(
                {2, 3, 0, 100},
                SettingBuilder::optional(std::chrono::milliseconds(500)).range(10, 1000)));
        onOpening();
    }
    void startRun(DeviceFeature, const QVariantHash &configuration) override
    {
        onRun(configuration);
    }
    void stopWork() override
    {
        note("stop");
    }
    void disconnectInstrument() override
    {
        note("disconnect");
    }

private:
    QByteArrayList m_notes;
};

class tst_Instrument : public QObject
{
    Q_OBJECT

private slots:
    void opening_data();
    void opening();
    void openingTakesTooLong();
    void runs_data();
    void runs();
    void reportsAfterTheEnd();
    void secondRun();
    void requests();
    void answeredFromWithinTheRequest();
    void receiversActAtOnce();
    void configurations_data();
    void configurations();
};

using Act = void (*)(Puppet &);
Q_DECLARE_METATYPE(Act)

void tst_Instrument::opening_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QByteArray>("notes");
    const auto row = [](const char *name, Act act, const char *notes) {
        QTest::newRow(name) << act << QByteArray(notes);
    };
    row(
        "later",
        [](Puppet &p) {
            p.open();
            p.open();
            p.opened();
            p.open();
            p.opened();
        },
        "open");
    row(
        "at once",
        [](Puppet &p) {
            p.onOpening = [&p] { p.opened(); };
            QVERIFY(p.open());
        },
        "open");
    row(
        "refused at once",
        [](Puppet &p) {
            p.onOpening = [&p] { p.openingFailed(ERROR_DEVICE_CANT_OPEN); };
            QVERIFY(!p.open());
        },
        "stop; disconnect; error 2");
    row(
        "failed later",
        [](Puppet &p) {
            p.open();
            p.openingFailed(ERROR_DEVICE_TIMEOUT);
            p.opened();
        },
        "stop; disconnect; error 4");
    row(
        "closed meanwhile",
        [](Puppet &p) {
            p.open();
            p.close();
            p.opened();
            p.close();
        },
        "stop; disconnect");
    row(
        "reset meanwhile",
        [](Puppet &p) {
            p.open();
            p.reset();
            p.opened();
        },
        "open");
    row(
        "lost meanwhile",
        [](Puppet &p) {
            p.open();
            p.lost();
            p.opened();
        },
        "stop; disconnect; error 9");
    row(
        "asks",
        [](Puppet &p) {
            p.open();
            p.askUser("x", [&p] { p.opened(); });
            p.confirmAction(p.actionId);
        },
        "open");
    row(
        "asks in vain",
        [](Puppet &p) {
            p.open();
            p.askUser("x", [&p] { p.opened(); });
            p.abortAction(p.actionId);
            p.confirmAction(p.actionId);
        },
        "stop; disconnect; error 3");
    row(
        "after an error",
        [](Puppet &p) {
            p.open();
            p.openingFailed(ERROR_DEVICE_TIMEOUT);
            p.takeNotes();
            p.open();
            p.opened();
        },
        "no error; open");
}

void tst_Instrument::opening()
{
    QFETCH(Act, act);
    Puppet puppet;
    act(puppet);
    QTEST(puppet.takeNotes(), "notes");
}

void tst_Instrument::openingTakesTooLong()
{
    Puppet puppet;
    puppet.setOpeningLimit(std::chrono::milliseconds(1));
    QVERIFY(puppet.open());
    QTRY_VERIFY(!puppet.isOpening());
    QCOMPARE(puppet.takeNotes(), QByteArray("stop; disconnect; error 4"));
}

void tst_Instrument::runs_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QByteArray>("notes");
    const auto row = [](const char *name, Act act, const char *notes) {
        QTest::newRow(name) << act << QByteArray("busy; " + QByteArray(notes));
    };
    row(
        "finished", [](Puppet &p) { p.finish("r"); }, "stop; idle; executed 4 ok r");
    row(
        "failed", [](Puppet &p) { p.fail(ERROR_DEVICE_TIMEOUT); },
        "stop; error 4; idle; executed 4 not ok ");
    row(
        "progress only rises",
        [](Puppet &p) {
            p.reportProgress(0);
            p.reportProgress(0.5);
            p.reportProgress(0.25);
            p.finish("r");
        },
        "progress 0; progress 0.5; progress 1; stop; idle; executed 4 ok r");
    row(
        "closed", [](Puppet &p) { p.close(); },
        "stop; disconnect; closed; idle; executed 4 not ok ");
    row(
        "reset", [](Puppet &p) { p.reset(); }, "stop; idle; executed 4 not ok ");
    row(
        "lost", [](Puppet &p) { p.lost(); },
        "stop; disconnect; error 9; closed; idle; executed 4 not ok ");
}

void tst_Instrument::runs()
{
    QFETCH(Act, act);
    Puppet puppet;
    puppet.openAtOnce();
    puppet.execute(Device::DF_Calibration);
    act(puppet);
    QTEST(puppet.takeNotes(), "notes");
}

void tst_Instrument::reportsAfterTheEnd()
{
    Puppet puppet;
    puppet.openAtOnce();
    puppet.execute(Device::DF_Calibration);
    puppet.finish();
    puppet.takeNotes();
    puppet.finish();
    puppet.fail(ERROR_DEVICE_TIMEOUT);
    puppet.reportProgress(1);
    puppet.askUser("x", [] {});
    puppet.openingFailed(ERROR_DEVICE_TIMEOUT);
    QCOMPARE(puppet.takeNotes(), QByteArray());
}

void tst_Instrument::secondRun()
{
    Puppet puppet;
    puppet.openAtOnce();
    puppet.execute(Device::DF_Calibration);
    puppet.execute(Device::DF_LuminescenceMeasurement);
    QCOMPARE(puppet.takeNotes(), QByteArray("busy; error 3; executed 3 not ok "));
    puppet.finish("r");
    QCOMPARE(puppet.takeNotes(), QByteArray("stop; no error; idle; executed 4 ok r"));
}

void tst_Instrument::requests()
{
    Puppet puppet;
    puppet.openAtOnce();
    puppet.execute(Device::DF_Calibration);
    puppet.askUser("x", [&puppet] { puppet.note("confirmed"); });
    const int id = puppet.actionId;
    puppet.confirmAction(id + 1);
    puppet.abortAction(id + 1);
    puppet.takeNotes();
    puppet.confirmAction(id);
    puppet.confirmAction(id);
    puppet.abortAction(id);
    QCOMPARE(puppet.takeNotes(), QByteArray("confirmed"));
    puppet.askUser("x", [&puppet] { puppet.note("confirmed"); });
    puppet.abortAction(puppet.actionId);
    QCOMPARE(puppet.takeNotes(), QByteArray("stop; idle; executed 4 not ok "));

    // A request does not outlive its run.
    puppet.execute(Device::DF_Calibration);
    puppet.askUser("x", [&puppet] { puppet.note("confirmed"); });
    puppet.reset();
    puppet.takeNotes();
    puppet.confirmAction(puppet.actionId);
    QCOMPARE(puppet.takeNotes(), QByteArray());
}

void tst_Instrument::answeredFromWithinTheRequest()
{
    Puppet puppet;
    connect(&puppet, &Device::actionRequired, &puppet, &Device::confirmAction);
    puppet.openAtOnce();
    puppet.execute(Device::DF_Calibration);
    puppet.askUser("x", [&puppet] { puppet.finish("r"); });
    QCOMPARE(puppet.takeNotes(), QByteArray("busy; stop; idle; executed 4 ok r"));
}

// Whatever a signal tells, its receiver may close the device or begin the next run.
void tst_Instrument::receiversActAtOnce()
{
    Puppet puppet;
    puppet.openAtOnce();
    int left = 2;
    connect(&puppet, &Device::executed, &puppet, [&puppet, &left] {
        if (left-- > 0)
            puppet.execute(Device::DF_Calibration);
    });
    puppet.execute(Device::DF_Calibration);
    puppet.finish("r");
    QCOMPARE(puppet.takeNotes(), QByteArray("busy; stop; idle; executed 4 ok r; busy"));
    puppet.close(); // from whose ending nothing can be begun
    QCOMPARE(puppet.takeNotes(),
             QByteArray("stop; disconnect; closed; idle; executed 4 not ok ; executed 4 not ok "));

    connect(&puppet, &Device::busyChanged, &puppet, [&puppet](bool busy) {
        if (busy)
            puppet.close();
    });
    puppet.openAtOnce();
    puppet.onRun = [&puppet](const QVariantHash &) { puppet.note("begun"); };
    puppet.execute(Device::DF_Calibration);
    QCOMPARE(puppet.takeNotes(),
             QByteArray("busy; stop; disconnect; closed; idle; executed 4 not ok "));
}

void tst_Instrument::configurations_data()
{
    QTest::addColumn<QVariant>("configuration");
    QTest::addColumn<qint64>("time"); // that the run gets; 0: it is refused
    const auto row = [](const char *name, const QVariant &configuration, qint64 time) {
        QTest::newRow(name) << configuration << time;
    };
    const QString key = QStringLiteral("integrationTime");
    row("none", {}, 500);
    row("given", QVariantHash{{key, QVariant::fromValue(std::chrono::milliseconds(20))}}, 20);
    row("out of range", QVariantHash{{key, QVariant::fromValue(std::chrono::milliseconds(5))}}, 0);
    row("another type", QVariantHash{{key, 20}}, 0);
    row("no hash", 20, 0);
}

void tst_Instrument::configurations()
{
    QFETCH(QVariant, configuration);
    QFETCH(qint64, time);
    Puppet puppet;
    qint64 received = 0;
    puppet.onRun = [&](const QVariantHash &values) {
        received = values.value(QStringLiteral("integrationTime"))
                       .value<std::chrono::milliseconds>()
                       .count();
    };
    puppet.openAtOnce();
    puppet.setConfiguration(Device::DF_LuminescenceMeasurement, configuration);
    puppet.execute(Device::DF_LuminescenceMeasurement);
    QCOMPARE(received, time);
    QCOMPARE(puppet.takeNotes(), QByteArray(time ? "busy" : "error 7; executed 3 not ok "));
}

QTEST_GUILESS_MAIN(tst_Instrument)
#include "tst_instrument.moc"
