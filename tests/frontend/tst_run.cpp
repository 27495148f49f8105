#include "fakedevice.h"
#include <qelfrontend/frontend.h>
#include <qelfrontend/run.h>

#include <qeldevices/deviceerrors.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

using namespace qel::devices;
using namespace qel::frontend;
using namespace std::chrono_literals;

using Prepare = std::function<void(FakeDevice *)>;
Q_DECLARE_METATYPE(Prepare)

// Runs DF_AmbientTemperature on a fake device whose behaviour a test changes.
class Bench
{
public:
    Bench()
        : device(new FakeDevice)
    {
        request.feature = Device::DF_AmbientTemperature;
        request.deadline = 400ms;
        request.grace = 40ms;
    }
    ~Bench()
    {
        delete device;
    }

    // Waits for the end, and for what may wrongly come after it.
    Outcome runToEnd()
    {
        if (!run)
            start();
        for (QElapsedTimer clock = started(); outcomes.isEmpty() && clock.elapsed() < 5000;)
            QTest::qWait(1);
        QTest::qWait(60);
        ends = outcomes.size();
        return outcomes.value(0);
    }

    void start()
    {
        run = std::make_unique<Run>(device, request);
        QObject::connect(run.get(), &Run::finished, run.get(),
                         [this](const Outcome &outcome) { outcomes += outcome; });
        run->start();
    }

    static QElapsedTimer started()
    {
        QElapsedTimer clock;
        clock.start();
        return clock;
    }

    QPointer<FakeDevice> device;
    RunRequest request;
    std::unique_ptr<Run> run;
    QList<Outcome> outcomes;
    int ends = 0;
};

class RunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void endsOnce_data();
    void endsOnce();
    void earlierErrorIsNotTheRuns_data();
    void earlierErrorIsNotTheRuns();
    void cancelClimbsTheLadder_data();
    void cancelClimbsTheLadder();
    void losesNothingThatCameTooLate();
    void busyDeviceIsLeftAlone();
    void waitsForTheBusyDevice();
    void asksTheUser();
    void forwardsProgressAndValues();
    void configures();
    void refusesAWrongConfiguration();
    void onlyOpens();
    void staysQuietWhenDeletedMidRun();
    void mayBeDeletedAtTheEnd();
};

void RunTest::initTestCase()
{
    registerMetaTypes();
    QLoggingCategory::setFilterRules(QStringLiteral("qel.*=false"));
}

static void endLater(FakeDevice *device, bool ok, int code, int ms = 5)
{
    device->later(
        [=] {
            device->setError(code, QString());
            emit device->executed(Device::DF_AmbientTemperature, ok,
                                  ok ? QVariant(42.0) : QVariant());
        },
        ms);
}

void RunTest::endsOnce_data()
{
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("code");

    const auto row = [](const char *name, Outcome::Kind kind, int code, const Prepare &prepare) {
        QTest::newRow(name) << prepare << int(kind) << code;
    };
    const auto onExecute = [row](const char *name, Outcome::Kind kind, int code,
                                 const FakeDevice::Action &execute) {
        row(name, kind, code, [execute](FakeDevice *device) { device->onExecute = execute; });
    };

    row("a good device", Outcome::Result, 0, [](FakeDevice *) {});
    row("already open", Outcome::Result, 0, [](FakeDevice *device) {
        device->onOpen(device);
        device->onOpen = [](FakeDevice *) { return false; };
    });
    row("opens later, describes later still", Outcome::Result, 0, [](FakeDevice *device) {
        device->onOpen = [](FakeDevice *d) {
            d->later([d] { d->setOpen(true); });
            d->later([d] { d->setDescriptor(Device::DF_AmbientTemperature, 1); }, 20);
            return true;
        };
    });
    row("offers the feature without a word", Outcome::Result, 0, [](FakeDevice *device) {
        device->onOpen = [](FakeDevice *d) {
            d->setOpen(true);
            d->later([d] { d->setDescriptor(Device::DF_AmbientTemperature, QVariant()); }, 20);
            // Nothing announces the feature; it is looked up when the time is over.
            return true;
        };
    });
    row("lacks the feature", Outcome::Refused, 0, [](FakeDevice *device) {
        device->onOpen = [](FakeDevice *d) {
            d->setOpen(true);
            return true;
        };
    });
    row("cannot open", Outcome::CannotOpen, ERROR_DEVICE_CANT_OPEN, [](FakeDevice *device) {
        device->onOpen = [](FakeDevice *d) {
            d->setError(ERROR_DEVICE_CANT_OPEN, QString());
            return false;
        };
    });
    row("cannot open, gives no reason", Outcome::CannotOpen, 0,
        [](FakeDevice *device) { device->onOpen = [](FakeDevice *) { return false; }; });
    row("finds out later that it cannot open", Outcome::CannotOpen, ERROR_DEVICE_API_TOO_NEW,
        [](FakeDevice *device) {
            device->onOpen = [](FakeDevice *d) {
                d->later([d] { d->setError(ERROR_DEVICE_API_TOO_NEW, QString()); });
                return true;
            };
        });
    row("never opens", Outcome::TimedOut, 0,
        [](FakeDevice *device) { device->onOpen = [](FakeDevice *) { return true; }; });
    row("deleted while opening", Outcome::DeviceGone, 0, [](FakeDevice *device) {
        device->onOpen = [](FakeDevice *d) {
            d->later([d] { delete d; });
            return true;
        };
    });
    row("deleted before it starts", Outcome::DeviceGone, 0,
        [](FakeDevice *device) { device->later([device] { delete device; }, 0); });

    onExecute("answers at once", Outcome::Result, 0,
              [](FakeDevice *d) { emit d->executed(Device::DF_AmbientTemperature, true, 42.0); });
    onExecute("answers twice", Outcome::Result, 0, [](FakeDevice *d) {
        endLater(d, true, 0);
        endLater(d, false, ERROR_DEVICE_TIMEOUT);
    });
    onExecute("answers with what is no result", Outcome::Failed, 0,
              [](FakeDevice *d) { emit d->executed(Device::DF_AmbientTemperature, true, 42); });
    onExecute("answers for another feature", Outcome::TimedOut, 0,
              [](FakeDevice *d) { emit d->executed(Device::DF_PartsAligned, true, 1); });
    onExecute("never answers", Outcome::TimedOut, 0, [](FakeDevice *) {});
    onExecute("answers when it is too late", Outcome::TimedOut, 0,
              [](FakeDevice *d) { endLater(d, true, 0, 600); });
    onExecute("refuses at once", Outcome::Refused, 0,
              [](FakeDevice *d) { emit d->executed(Device::DF_AmbientTemperature, false); });
    onExecute("refuses at once with a reason", Outcome::Failed, ERROR_DEVICE_INVALID_CONFIGURATION,
              [](FakeDevice *d) {
                  d->setError(ERROR_DEVICE_INVALID_CONFIGURATION, QString());
                  emit d->executed(Device::DF_AmbientTemperature, false);
              });
    onExecute("fails", Outcome::Failed, ERROR_DEVICE_CHECKSUM_MISMATCH,
              [](FakeDevice *d) { endLater(d, false, ERROR_DEVICE_CHECKSUM_MISMATCH); });
    onExecute("fails, gives no reason", Outcome::Failed, 0,
              [](FakeDevice *d) { endLater(d, false, 0); });
    onExecute("gives the reason after the end", Outcome::Failed, ERROR_DEVICE_NOT_READY,
              [](FakeDevice *d) {
                  d->later([d] {
                      emit d->executed(Device::DF_AmbientTemperature, false);
                      d->setError(ERROR_DEVICE_NOT_READY, QString());
                  });
              });
    onExecute("overcomes an error, fails later", Outcome::Failed, 0, [](FakeDevice *d) {
        d->setError(ERROR_DEVICE_NOT_READY, QString());
        d->setError(NO_DEVICE_ERROR, QString());
        endLater(d, false, 0);
    });
    onExecute("closes by itself", Outcome::DeviceGone, 0,
              [](FakeDevice *d) { d->later([d] { d->setOpen(false); }); });
    onExecute("closes by itself, then says why", Outcome::DeviceGone, ERROR_DEVICE_DISCONNECTED,
              [](FakeDevice *d) {
                  d->later([d] { d->setOpen(false); });
                  endLater(d, false, ERROR_DEVICE_DISCONNECTED, 15);
              });
    onExecute("closes by itself, but has the result", Outcome::Result, 0, [](FakeDevice *d) {
        d->later([d] { d->setOpen(false); });
        endLater(d, true, 0, 15);
    });
    onExecute("unplugged, never ends the run", Outcome::DeviceGone, ERROR_DEVICE_DISCONNECTED,
              [](FakeDevice *d) { d->setError(ERROR_DEVICE_DISCONNECTED, QString()); });
    onExecute("deletes itself", Outcome::DeviceGone, 0, [](FakeDevice *d) { delete d; });
    onExecute("deleted in the middle", Outcome::DeviceGone, 0,
              [](FakeDevice *d) { d->later([d] { delete d; }); });
    onExecute("deleted right after the answer", Outcome::Result, 0, [](FakeDevice *d) {
        d->later([d] {
            emit d->executed(Device::DF_AmbientTemperature, true, 42.0);
            delete d;
        });
    });
}

void RunTest::endsOnce()
{
    QFETCH(Prepare, prepare);
    QFETCH(int, kind);
    QFETCH(int, code);
    Bench bench;
    prepare(bench.device);
    const Outcome outcome = bench.runToEnd();

    QCOMPARE(bench.ends, 1);
    QCOMPARE(int(outcome.kind), kind);
    QCOMPARE(outcome.code, code);
    QCOMPARE(outcome.trId.isEmpty(), code == 0);
    QCOMPARE(outcome.result, kind == Outcome::Result ? QVariant(42.0) : QVariant());
    QCOMPARE(outcome.sentence.isEmpty(), kind == Outcome::Result);
    QVERIFY2(!outcome.sentence.contains(QLatin1String("qelfrontend-"))
                 && !outcome.sentence.contains(u'%'),
             qPrintable(outcome.sentence));
    QVERIFY(outcome.elapsed >= 0ms && outcome.elapsed < 5000ms);
    // An answer after the end changes nothing.
    if (bench.device) {
        emit bench.device->executed(Device::DF_AmbientTemperature, true, 43.0);
        QTest::qWait(5);
        QCOMPARE(bench.outcomes.size(), 1);
        QCOMPARE(bench.run->outcome().result, outcome.result);
    }
}

void RunTest::earlierErrorIsNotTheRuns_data()
{
    QTest::addColumn<bool>("opens");
    QTest::addColumn<int>("repeated");
    QTest::newRow("run fails without a word") << true << 0;
    QTest::newRow("run fails with the same error") << true << int(ERROR_DEVICE_TIMEOUT);
    QTest::newRow("opening fails without a word") << false << 0;
}

void RunTest::earlierErrorIsNotTheRuns()
{
    QFETCH(bool, opens);
    QFETCH(int, repeated);
    Bench bench;
    bench.device->setError(ERROR_DEVICE_TIMEOUT, QString());
    if (!opens)
        bench.device->onOpen = [](FakeDevice *) { return false; };
    bench.device->onExecute = [repeated](FakeDevice *d) {
        d->later([d, repeated] {
            if (repeated)
                d->setError(repeated, QString());
            emit d->executed(Device::DF_AmbientTemperature, false);
        });
    };
    const Outcome outcome = bench.runToEnd();
    QCOMPARE(outcome.kind, opens ? Outcome::Failed : Outcome::CannotOpen);
    QCOMPARE(outcome.code, 0);
    // It may be the reason, so it is mentioned.
    QVERIFY(outcome.sentence.contains(QLatin1String("did not respond")));
}

void RunTest::cancelClimbsTheLadder_data()
{
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<int>("kind");

    const auto row = [](const char *name, const char *calls, const Prepare &prepare,
                        Outcome::Kind kind = Outcome::AbortedByUser) {
        QTest::newRow(name) << prepare << QString::fromLatin1(calls).split(u' ', Qt::SkipEmptyParts)
                            << int(kind);
    };
    const auto never = [](FakeDevice *) {};
    const auto ask = [](FakeDevice *d) { d->emitActionRequired(QStringLiteral("do-it")); };
    const auto obey = [](FakeDevice *d) { emit d->executed(Device::DF_AmbientTemperature, false); };

    row("obeys a reset", "open execute reset", [=](FakeDevice *device) {
        device->onExecute = never;
        device->onReset = obey;
    });
    row("has its result ready by then", "open execute reset", [=](FakeDevice *device) {
        device->onExecute = never;
        device->onReset = [](FakeDevice *d) {
            emit d->executed(Device::DF_AmbientTemperature, true, 42.0);
        };
    });
    row("obeys a close", "open execute reset close",
        [=](FakeDevice *device) { device->onExecute = never; });
    row("obeys nothing", "open execute reset close", [=](FakeDevice *device) {
        device->onExecute = never;
        device->onClose = never;
    });
    row("obeys an abort", "open execute abort", [=](FakeDevice *device) {
        device->onExecute = ask;
        device->onAbort = obey;
    });
    row("does not obey an abort", "open execute abort reset close",
        [=](FakeDevice *device) { device->onExecute = ask; });
    row("asks again", "open execute abort abort reset close", [=](FakeDevice *device) {
        device->onExecute = ask;
        device->onAbort = [asked = false, ask](FakeDevice *d) mutable {
            if (!std::exchange(asked, true))
                ask(d);
        };
    });
    row(
        "deleted by a reset", "",
        [=](FakeDevice *device) {
            device->onExecute = never;
            device->onReset = [](FakeDevice *d) { delete d; };
        },
        Outcome::DeviceGone);
    row("is opening", "open close",
        [=](FakeDevice *device) { device->onOpen = [](FakeDevice *) { return true; }; });
}

void RunTest::cancelClimbsTheLadder()
{
    QFETCH(Prepare, prepare);
    QFETCH(QStringList, calls);
    QFETCH(int, kind);
    for (const bool byDeadline : {false, true}) {
        Bench bench;
        bench.request.deadline = byDeadline ? 50ms : 0ms;
        prepare(bench.device);
        bench.start();
        if (!byDeadline) {
            QTest::qWait(20);
            bench.run->cancel();
            bench.run->cancel();
        }
        const Outcome outcome = bench.runToEnd();
        QCOMPARE(bench.ends, 1);
        const bool isOwn = byDeadline && kind == Outcome::AbortedByUser;
        QCOMPARE(int(outcome.kind), isOwn ? int(Outcome::TimedOut) : kind);
        QVERIFY(!outcome.result.isValid());
        if (bench.device)
            QCOMPARE(bench.device->calls, calls);
    }
}

void RunTest::losesNothingThatCameTooLate()
{
    Bench bench;
    bench.device->onExecute = [](FakeDevice *) {};
    bench.device->onReset = [](FakeDevice *device) {
        emit device->executed(Device::DF_AmbientTemperature, true, 42.0);
    };
    bench.request.deadline = 20ms;
    const Outcome outcome = bench.runToEnd();
    QCOMPARE(outcome.kind, Outcome::TimedOut);
    QVERIFY(!outcome.result.isValid());
    QCOMPARE(outcome.delivered, QVariant(42.0));
}

void RunTest::busyDeviceIsLeftAlone()
{
    Bench bench;
    bench.device->onOpen(bench.device);
    bench.device->setBusy(true);
    bench.request.deadline = 50ms;
    QCOMPARE(bench.runToEnd().kind, Outcome::TimedOut);
    QCOMPARE(bench.device->calls, QStringList());
    QVERIFY(bench.device->isOpen());
}

void RunTest::waitsForTheBusyDevice()
{
    Bench bench;
    bench.device->onOpen(bench.device);
    bench.device->setBusy(true);
    bench.device->later([&bench] {
        bench.device->setBusy(false);
        // The end of what it did before.
        emit bench.device->executed(Device::DF_AmbientTemperature, true, 1.0);
    });
    QCOMPARE(bench.runToEnd().result, QVariant(42.0));
}

void RunTest::asksTheUser()
{
    for (const bool agrees : {true, false}) {
        Bench bench;
        bench.device->onExecute = [](FakeDevice *d) {
            d->emitActionRequired(QStringLiteral("empty-the-slot"));
        };
        bench.device->onConfirm = [](FakeDevice *d) { endLater(d, true, 0); };
        bench.device->onAbort = [](FakeDevice *d) { endLater(d, false, 0); };
        bench.start();
        QString asked;
        connect(bench.run.get(), &Run::actionRequired, this, [&](int id, const QString &text) {
            asked = text;
            bench.run->confirmAction(id + 1);
            bench.run->abortAction(id + 1);
            if (agrees)
                bench.run->confirmAction(id);
            else
                bench.run->abortAction(id);
            bench.run->confirmAction(id);
        });
        const Outcome outcome = bench.runToEnd();
        QCOMPARE(outcome.kind, agrees ? Outcome::Result : Outcome::AbortedByUser);
        QCOMPARE(asked, QStringLiteral("empty-the-slot"));
        QCOMPARE(bench.device->calls.mid(2),
                 QStringList(agrees ? QStringLiteral("confirm") : QStringLiteral("abort")));
    }
}

void RunTest::forwardsProgressAndValues()
{
    Bench bench;
    bench.device->onExecute = [](FakeDevice *d) {
        const QVariant sent[] = {0.0, 0.5, 0.25, 1.5, qQNaN(), 0.5, 1.0, QStringLiteral("soon")};
        for (const QVariant &value : sent)
            emit d->transientValue(Device::DF_AmbientTemperature,
                                   QVariantHash{{QStringLiteral("progress"), value}});
        emit d->transientValue(Device::DF_PlateDetection, 7);
        endLater(d, true, 0);
    };
    bench.start();
    QSignalSpy progress(bench.run.get(), &Run::progressChanged);
    QSignalSpy values(bench.run.get(), &Run::transientValue);
    QSignalSpy states(bench.run.get(), &Run::stateChanged);
    bench.runToEnd();
    QCOMPARE(progress, (QList<QVariantList>{{0.0}, {0.5}, {1.0}}));
    QCOMPARE(values.size(), 2);
    QCOMPARE(values[1][1], QVariant(7));
    QList<int> seen;
    for (const auto &state : std::as_const(states))
        seen += state[0].toInt();
    QCOMPARE(seen,
             (QList<int>{Run::Opening, Run::Preparing, Run::Starting, Run::Executing, Run::Ending,
                         Run::Finished}));
}

void RunTest::configures()
{
    Bench bench;
    bench.device->onOpen = [](FakeDevice *d) {
        d->setOpen(true);
        d->setDescriptor(Device::DF_AmbientTemperature, 20.0);
        return true;
    };
    bench.device->onExecute = [](FakeDevice *d) {
        emit d->executed(Device::DF_AmbientTemperature, true,
                         d->configuration(Device::DF_AmbientTemperature));
    };
    bench.request.configure = [](const QVariant &descriptor, QString *) {
        return std::make_optional(QVariant(descriptor.toDouble() + 1));
    };
    // What ends before the run has begun is something else.
    connect(bench.device, &Device::configurationChanged, this,
            [&bench] { emit bench.device->executed(Device::DF_AmbientTemperature, true, 1.0); });
    QCOMPARE(bench.runToEnd().result, QVariant(21.0));
}

void RunTest::refusesAWrongConfiguration()
{
    Bench bench;
    bench.request.configure = [](const QVariant &, QString *problem) -> std::optional<QVariant> {
        *problem = QStringLiteral("not like this");
        return {};
    };
    const Outcome outcome = bench.runToEnd();
    QCOMPARE(outcome.kind, Outcome::Refused);
    QCOMPARE(outcome.sentence, QStringLiteral("not like this"));
    QCOMPARE(bench.device->calls, QStringList(QStringLiteral("open")));
}

void RunTest::onlyOpens()
{
    Bench bench;
    bench.request.feature.reset();
    QCOMPARE(bench.runToEnd().kind, Outcome::Result);
    QCOMPARE(bench.device->calls, QStringList(QStringLiteral("open")));
    QVERIFY(bench.device->isOpen());
}

void RunTest::staysQuietWhenDeletedMidRun()
{
    Bench bench;
    bench.start();
    connect(bench.run.get(), &Run::stateChanged, this, [&](Run::State state) {
        if (state == Run::Executing)
            QTimer::singleShot(1, this, [&] { bench.run.reset(); });
    });
    QTRY_VERIFY(!bench.run);
    QTest::qWait(30);
    QCOMPARE(bench.outcomes.size(), 0);
    QCOMPARE(bench.device->calls.last(), QStringLiteral("execute"));
}

void RunTest::mayBeDeletedAtTheEnd()
{
    Bench bench;
    bench.device->onExecute = [](FakeDevice *d) {
        emit d->executed(Device::DF_AmbientTemperature, true, 42.0);
        // Would be a use of freed memory if the end were reported from in here.
        d->calls += QStringLiteral("returned");
    };
    bench.start();
    connect(bench.run.get(), &Run::finished, this, [&] {
        delete bench.device;
        bench.run.release()->deleteLater();
    });
    QTRY_VERIFY(!bench.device);
    QTest::qWait(10);
    QCOMPARE(bench.outcomes.size(), 1);
}

QTEST_GUILESS_MAIN(RunTest)
#include "tst_run.moc"
