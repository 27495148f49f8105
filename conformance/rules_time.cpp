#include "tour.h"

#include <algorithm>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Time and threads";

// Uses everything once.
static void useAll(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.callUpdate();
    instrument.open();
    instrument.callUpdate();
    const auto features = instrument.runnable();
    for (const auto feature : features)
        instrument.runShort(feature);
    try {
        instrument.startLongRun();
        instrument.callReset();
        subject.settle();
        instrument.startLongRun();
        instrument.close();
    } catch (const NotApplicable &) {
        instrument.callReset();
        instrument.close();
    }
    instrument.open();
    instrument.destroy();
    subject.settle();
}

// What the rules before have measured, and what they have not used. A machine that is busy delays
// everything now and then: what counts is what happens every time.
static QMap<QString, qint64> shortestTimes(Subject &subject)
{
    subject.tour();
    if (!subject.hasTimeOf(QStringLiteral("update()"))
        || !subject.hasTimeOf(QStringLiteral("reset()")))
        useAll(subject);
    QMap<QString, qint64> times = subject.takeTimes();
    const auto areShort = [&] {
        return std::all_of(times.cbegin(), times.cend(),
                           [&](qint64 time) { return time <= subject.limits().call; });
    };
    for (int i = 0; i < 2 && !areShort(); ++i) {
        useAll(subject);
        const auto latest = subject.takeTimes();
        for (auto it = latest.cbegin(); it != latest.cend(); ++it)
            times.insert(it.key(), std::min(times.value(it.key(), it.value()), it.value()));
    }
    subject.returnTimes(times);
    return times;
}

static void checkCalls(Subject &subject)
{
    const auto times = shortestTimes(subject);
    QStringList seen;
    for (auto it = times.cbegin(); it != times.cend(); ++it) {
        if (!it.key().isEmpty() && it.value() > subject.limits().call)
            seen += QStringLiteral("%1 took %2 ms").arg(it.key()).arg(it.value());
    }
    if (!seen.isEmpty())
        throw Broken{seen.join(QStringLiteral(", "))};
}

static void checkEventLoop(Subject &subject)
{
    const qint64 longest = shortestTimes(subject).value(QString());
    if (longest > subject.limits().call)
        throw Broken{QStringLiteral("the event loop stood still for %1 ms").arg(longest)};
}

static void checkThread(Subject &subject)
{
    subject.tour();
    const QVector<Event> foreign = subject.foreignEvents();
    Offences offences;
    if (!foreign.isEmpty())
        offences.add(foreign.constFirst().toString().trimmed(), foreign);
    offences.conclude();
}

static void checkNoNestedLoop(Subject &subject)
{
    subject.tour();
    if (!subject.hasTimeOf(QStringLiteral("update()"))
        || !subject.hasTimeOf(QStringLiteral("reset()")))
        useAll(subject);
    if (!subject.nestedLoop().isEmpty())
        throw Broken{QStringLiteral("events were handled %1").arg(subject.nestedLoop()), {}, true};
}

QVector<Rule> timeRules()
{
    return {
        {1001, group, Severity::Failure, false, Needs::Open,
         "No call of a driver or a device takes longer than 200 ms.",
         "The calls come from the thread that draws the windows.",
         "Start the work and return; go on when the instrument's answer arrives.", checkCalls},
        {1002, group, Severity::Failure, false, Needs::Open,
         "Between calls the event loop is never held up longer than 200 ms.",
         "A slot that waits freezes every window and every other instrument.",
         "Split the work at the points where it waits; move computations to a thread.",
         checkEventLoop},
        {1003, group, Severity::Failure, false, Needs::Open,
         "Every signal is emitted from the thread that owns the device.",
         "Receivers connected directly would run in a thread that they do not expect.",
         "Bring results from other threads back with a queued call "
         "(QMetaObject::invokeMethod()) before emitting.",
         checkThread},
        {1004, group, Severity::Failure, false, Needs::Open,
         "A driver runs no event loop of its own inside a call or a slot, and does not call "
         "processEvents().",
         "What the user clicks meanwhile reaches the device in the middle of a step; it can be "
         "deleted there.",
         "Return, and go on when the answer arrives; work that must wait belongs in a thread.",
         checkNoNestedLoop},
    };
}

} // namespace qel::conformance
