#include "subject.h"

#include <algorithm>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Time and threads";

// Uses everything once.
static void tour(Subject &subject)
{
    Instrument instrument(subject);
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

// A machine that is busy delays everything now and then: what counts is what happens every time.
static QMap<QString, qint64> shortestOfTours(Subject &subject)
{
    QMap<QString, qint64> times;
    for (int i = 0; i < 3; ++i) {
        subject.takeTimes();
        tour(subject);
        const auto latest = subject.takeTimes();
        for (auto it = latest.cbegin(); it != latest.cend(); ++it) {
            if (i == 0 || times.value(it.key()) > it.value())
                times.insert(it.key(), it.value());
        }
        if (std::all_of(times.cbegin(), times.cend(),
                        [&](qint64 time) { return time <= subject.limits().call; }))
            break;
    }
    return times;
}

static void checkCalls(Subject &subject)
{
    const auto times = shortestOfTours(subject);
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
    const qint64 longest = shortestOfTours(subject).value(QString());
    if (longest > subject.limits().call)
        throw Broken{QStringLiteral("the event loop stood still for %1 ms").arg(longest)};
}

static void checkThread(Subject &subject)
{
    Instrument instrument(subject);
    instrument.open();
    const auto features = instrument.runnable();
    for (const auto feature : features)
        instrument.runShort(feature);
    try {
        instrument.startLongRun();
    } catch (const NotApplicable &) {
        // Then the short ones must do.
    }
    instrument.close();
    const auto events = instrument.seen().events();
    for (const Event &event : events) {
        if (!event.isOwnThread)
            throw Broken{event.toString().trimmed()};
    }
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
    };
}

} // namespace qel::conformance
