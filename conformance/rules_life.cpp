#include "tour.h"

#include <QtCore/QThreadPool>

#include <algorithm>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Life cycle";

// Where no run lasts, being open must do.
static void startRunIfPossible(ProbedDevice &instrument)
{
    try {
        instrument.startLongRun();
    } catch (const NotApplicable &) { }
}

// What must hold of the ending of a run that was cut short after event `start`.
static void expectCutShort(const ProbedDevice &instrument, int start, Device::DeviceFeature feature)
{
    const QVector<Event> events = instrument.seen().events(start);
    int endings = 0;
    for (const Event &event : events) {
        if (event.kind != Event::Executed)
            continue;
        ++endings;
        if (event.flag || event.value.isValid())
            throw Broken{QStringLiteral("the run of %1 ends with success or a result")
                             .arg(featureName(feature))};
        if (event.isBusy)
            throw Broken{QStringLiteral("the device is still busy at the ending of %1")
                             .arg(featureName(feature))};
    }
    if (endings != 1)
        throw Broken{
            QStringLiteral("the run of %1 has %2 endings").arg(featureName(feature)).arg(endings)};
}

static void checkCloseInRun(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const auto feature = instrument.startLongRun();
    const int error = instrument->errorCode();
    const int start = instrument.seen().count();
    instrument.callClose();
    if (!instrument.awaitClosed())
        throw Broken{QStringLiteral("the device is still open or busy")};
    subject.settle();
    expectCutShort(instrument, start, feature);
    const QVector<Event> events = instrument.seen().events(start);
    for (const Event &event : events) {
        if (event.kind == Event::Executed && event.isOpen)
            throw Broken{QStringLiteral("the device is still open at the ending of %1")
                             .arg(featureName(feature))};
    }
    if (events.constLast().kind != Event::Executed)
        throw Broken{QStringLiteral("a signal follows the ending")};
    if (instrument->errorCode() != error)
        throw Broken{
            QStringLiteral("close() set error %1").arg(errorName(instrument->errorCode()))};
}

static void checkResetInRun(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const auto feature = instrument.startLongRun();
    const int start = instrument.seen().count();
    instrument.callReset();
    subject.waitFor(subject.limits().open,
                    [&] { return instrument.seen().count(Event::Executed, start) > 0; });
    subject.settle();
    expectCutShort(instrument, start, feature);
    if (!instrument->isOpen() || instrument->isBusy() || instrument->errorCode() != 0)
        throw Broken{QStringLiteral("the device is not open, idle and without error")};
    try {
        instrument.runShort(feature);
    } catch (const Hindered &) {
        throw Broken{QStringLiteral("%1 cannot be run any more").arg(featureName(feature))};
    }
}

// Otherwise there is none to clear.
static void provokeErrorIfPossible(ProbedDevice &instrument)
{
    try {
        instrument.provokeError();
    } catch (const NotApplicable &) { }
}

static void checkResetIdle(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    provokeErrorIfPossible(instrument);
    const int start = instrument.seen().count();
    instrument.callReset();
    subject.waitFor(subject.limits().open, [&] { return instrument->errorCode() == 0; });
    subject.settle();
    if (!instrument->isOpen() || instrument->isBusy() || instrument->errorCode() != 0)
        throw Broken{QStringLiteral("the device is not open, idle and without error")};
    if (instrument.seen().count(Event::Executed, start) > 0
        || instrument.seen().count(Event::OpenChanged, start) > 0)
        throw Broken{QStringLiteral("reset() ended a run or closed the device")};
}

static void checkResetClosed(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    provokeErrorIfPossible(instrument);
    instrument.close();
    const int start = instrument.seen().count();
    instrument.callReset();
    subject.settle();
    if (instrument->isOpen() || instrument->isBusy() || instrument->errorCode() != 0)
        throw Broken{QStringLiteral("the device is not closed, idle and without error")};
    const auto events = instrument.seen().events(start);
    for (const Event &event : events) {
        if (event.kind != Event::ErrorChanged)
            throw Broken{QStringLiteral("reset() of a closed device emitted more than "
                                        "errorChanged()")};
    }
}

static void checkUpdate(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    const int start = instrument.seen().count();
    instrument.callUpdate();
    subject.settle();
    if (!instrument->isOpen())
        throw Broken{QStringLiteral("update() closed the device")};
    if (instrument.seen().count(Event::Executed, start) > 0)
        throw Broken{QStringLiteral("update() emitted executed()")};
}

namespace {

struct Stage
{
    const char *name;
    void (*reach)(Subject &subject, ProbedDevice &instrument);
};

} // namespace

static const Stage stages[] = {
    {"closed", [](Subject &, ProbedDevice &) {}},
    {"opening", [](Subject &, ProbedDevice &instrument) { instrument.callOpen(); }},
    {"open", [](Subject &, ProbedDevice &instrument) { instrument.open(); }},
    {"at work",
     [](Subject &, ProbedDevice &instrument) {
         instrument.open();
         instrument.startLongRun();
     }},
    {"waiting for the user",
     [](Subject &subject, ProbedDevice &instrument) {
         if (!subject.isUnsafe())
             throw NotApplicable{};
         instrument.open();
         Device::DeviceFeature feature = Device::DF_None;
         instrument.startRequest(&feature);
     }},
    {"closed again",
     [](Subject &, ProbedDevice &instrument) {
         instrument.open();
         instrument.close();
     }},
};

static void checkDeletion(Subject &subject)
{
    for (const Stage &stage : stages) {
        ProbedDevice instrument(subject);
        try {
            stage.reach(subject, instrument);
        } catch (const NotApplicable &) {
            continue;
        }
        const int start = instrument.seen().count();
        instrument.destroy();
        subject.settle();
        if (instrument.seen().count() != start)
            throw Broken{QStringLiteral("deleted while %1, the device emitted a signal")
                             .arg(QLatin1String(stage.name))};
    }
}

static void checkDeletionWithin(Subject &subject)
{
    for (const Event::Kind kind : {Event::OpenChanged, Event::FeaturesChanged, Event::BusyChanged,
                                   Event::TransientValue, Event::ActionRequired, Event::Executed}) {
        ProbedDevice instrument(subject);
        bool isArmed = kind == Event::OpenChanged || kind == Event::FeaturesChanged;
        instrument.recorder().setReaction([&](const Event &event) {
            if (isArmed && event.kind == kind && instrument.device())
                instrument->deleteLater();
        });
        instrument.callOpen();
        subject.waitFor(subject.limits().open, [&] {
            return !instrument.device() || instrument->isOpen() || instrument->errorCode() != 0;
        });
        subject.settle();
        isArmed = true;
        const int enough = 3;
        for (int i = 0; instrument.device() && i < enough; ++i) {
            const auto features = instrument.runnable();
            if (i >= features.size())
                break;
            // From the last one: what takes long stands in front.
            instrument.callExecute(features.at(features.size() - 1 - i));
            subject.settle();
        }
        if (instrument.device() && instrument->isOpen() && kind != Event::OpenChanged) {
            startRunIfPossible(instrument);
            subject.settle();
        }
        subject.settle();
    }
}

// One life of a device, closed at its end or deleted in the middle of a run.
static void live(Subject &subject, bool isClosed)
{
    {
        ProbedDevice instrument(subject);
        instrument.open();
        startRunIfPossible(instrument);
        if (isClosed)
            instrument.close();
        else
            instrument.destroy();
    }
    subject.settle();
}

static void checkLeftovers(Subject &subject)
{
    // Threads of the pool that come and go belong to nobody.
    QThreadPool::globalInstance()->setExpiryTimeout(1);
    // What the first life builds for all later ones is no leftover.
    live(subject, true);
    live(subject, false);
    const int threads = threadCount();
    const int files = openFileCount();
    if (threads == 0)
        throw NotApplicable{QStringLiteral("this system does not tell threads and open files")};
    for (int i = 0; i < 2; ++i) {
        live(subject, true);
        live(subject, false);
    }
    const int moreThreads = threadCount() - threads;
    const int moreFiles = openFileCount() - files;
    if (moreThreads > 0 || moreFiles > 0)
        throw Broken{QStringLiteral("four more lives left %1 threads and %2 open files")
                         .arg(moreThreads)
                         .arg(moreFiles)};
}

static void checkUpdateInRun(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    try {
        const int error = instrument.provokeError();
        instrument.callUpdate();
        subject.settle();
        if (instrument->errorCode() != error)
            throw Broken{QStringLiteral("update() changed the error from %1 to %2")
                             .arg(errorName(error), errorName(instrument->errorCode()))};
    } catch (const NotApplicable &) {
        // Then there is none to change.
    }
    const auto feature = instrument.startLongRun();
    const int before = instrument.seen().count();
    instrument.callUpdate();
    if (instrument.seen().count(Event::Executed, before) > 0)
        throw Broken{QStringLiteral("update() ended a run of %1").arg(featureName(feature))};
    instrument.awaitRun(feature, instrument.runStart(), true);
    subject.settle();
    const int endings = instrument.seen().count(Event::Executed, instrument.runStart());
    if (endings != 1)
        throw Broken{QStringLiteral("with update(), a run of %1 has %2 endings")
                         .arg(featureName(feature))
                         .arg(endings)};
}

// Long enough for what a run that was cut short would still have delivered.
static int longestRun(Subject &subject)
{
    qint64 longest = 0;
    const auto runs = subject.tour().runs;
    for (const Run &run : runs)
        longest = std::max(longest, run.startedAt.msecsTo(run.endedAt));
    return int(std::min(longest, qint64(subject.limits().run)));
}

static void checkLongSilence(Subject &subject)
{
    const int patience = longestRun(subject) + subject.limits().late + 5 * subject.limits().quiet;
    ProbedDevice idle(subject);
    idle.open();
    idle.close();
    ProbedDevice busy(subject);
    busy.open();
    startRunIfPossible(busy);
    busy.close();
    const int idleStart = idle.seen().count();
    const int busyStart = busy.seen().count();
    subject.waitFor(patience, [&] {
        return idle.seen().count() > idleStart || busy.seen().count() > busyStart;
    });
    if (idle.seen().count() > idleStart)
        throw Broken{QStringLiteral("a device that was closed when idle emitted a signal")};
    if (busy.seen().count() > busyStart)
        throw Broken{QStringLiteral("a device that was closed during a run emitted a signal")};
}

static void checkExit(Subject &subject)
{
    try {
        live(subject, true);
    } catch (const Unmet &) {
        // The drivers are destroyed all the same.
    }
}

QVector<Rule> lifeRules()
{
    return {
        {901, group, Severity::Failure, false, Needs::Open,
         "close() during a run ends it once with executed(feature, false), after the flags have "
         "been cleared, without an error, and nothing follows.",
         "A receiver of the ending that executes again must be refused, not start a run on a "
         "device that is closing.",
         "In close(): stop the work, forget the run, setStatus({}), then emit executed().",
         checkCloseInRun},
        {902, group, Severity::Failure, false, Needs::Open,
         "reset() during a run ends it once with executed(feature, false) and leaves the device "
         "open, idle, without error and usable.",
         "It is the way out of a run that is stuck.",
         "In reset(): stop the work, forget the run, setBusy(false), clear the error, then emit "
         "executed().",
         checkResetInRun},
        {903, group, Severity::Failure, false, Needs::Open,
         "reset() of an idle open device clears the error, leaves it open and ends nothing.",
         "An ending without a run is taken for that of the next one.",
         "Emit executed() in reset() only when a run is in progress.", checkResetIdle},
        {904, group, Severity::Failure, false, Needs::Open,
         "reset() of a closed device clears the error and does nothing else.",
         "A closed device has nothing else to bring back.",
         "Return early in reset() unless the device is open.", checkResetClosed},
        {905, group, Severity::Failure, false, Needs::Open,
         "update() of an open device leaves it open and emits no executed().",
         "Nobody has started a run.", "Report what update() finds through setters.", checkUpdate},
        {906, group, Severity::Failure, false, Needs::Instrument,
         "A device can be deleted at every stage, and emits nothing when it is.",
         "The user may end the program at any time; receivers of the signals may be half gone.",
         "Give timers, sockets and lambdas the device as parent or context, declare a connection "
         "before the members that listen to it, and do not call close() in the destructor.",
         checkDeletion},
        {907, group, Severity::Failure, false, Needs::Instrument,
         "A receiver may ask for the deletion of the device from within any of its signals.",
         "That is how an application reacts to an ending or an error.",
         "After emitting, touch the device only through things that die with it (its own timers, "
         "QPointer).",
         checkDeletionWithin},
        {908, group, Severity::Failure, false, Needs::Open,
         "A deleted device leaves no thread and no open file behind.",
         "A program that runs for weeks opens and closes an instrument thousands of times.",
         "Let the device own what it opens; end and wait for its threads in the destructor.",
         checkLeftovers},
        {909, group, Severity::Failure, false, Needs::Plugin,
         "The process ends cleanly with the plugin loaded.",
         "Drivers are destroyed after main(), when the application object has gone.",
         "Use neither qApp nor an event loop nor statics in a driver's destructor: neither those "
         "of "
         "other libraries nor those of the plugin's own files, which are gone by then.",
         checkExit, true},
        {910, group, Severity::Failure, false, Needs::Open,
         "update() leaves a run in progress and the error alone.",
         "Front ends update what they show at any time.",
         "Read what update() asks for from a queue behind the run, or not at all during one.",
         checkUpdateInRun},
        {911, group, Severity::Failure, false, Needs::Open,
         "A closed device is silent, however long one listens.",
         "The answer of the instrument to what was cut short comes seconds later, and is taken for "
         "something else.",
         "Drop the connection in close(), or the answers that come over it.", checkLongSilence},
    };
}

} // namespace qel::conformance
