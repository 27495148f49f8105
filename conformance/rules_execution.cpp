#include "subject.h"
#include "values.h"

#include <qeldevices/deviceerrors.h>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Execution";

// Runs every feature with its shortest configuration and hands all events of each run, those of a
// quiet moment afterwards included, to `judge`; whether any run succeeded.
static bool runEach(
    Subject &subject,
    const std::function<void(Instrument &, Device::DeviceFeature, const QVector<Event> &)> &judge,
    bool confirms = true)
{
    Instrument instrument(subject);
    instrument.open();
    const auto features = instrument.runnable();
    if (features.isEmpty())
        throw NotApplicable{QStringLiteral("no feature may be run")};
    bool succeeded = false;
    for (const auto feature : features) {
        const int start = instrument.seen().count();
        succeeded |= instrument.runShort(feature, confirms).flag;
        subject.settle();
        judge(instrument, feature, instrument.seen().events(start));
    }
    return succeeded;
}

static int endingIndex(const QVector<Event> &events)
{
    for (int i = 0; i < events.size(); ++i) {
        if (events.at(i).kind == Event::Executed)
            return i;
    }
    return -1;
}

static void expectOneEnding(Instrument &, Device::DeviceFeature feature,
                            const QVector<Event> &events)
{
    int endings = 0;
    for (const Event &event : events) {
        if (event.kind != Event::Executed)
            continue;
        ++endings;
        if (event.feature != feature) {
            throw Broken{QStringLiteral("the ending of %1 names %2")
                             .arg(featureName(feature), featureName(event.feature))};
        }
    }
    if (endings != 1) {
        throw Broken{
            QStringLiteral("the run of %1 has %2 endings").arg(featureName(feature)).arg(endings)};
    }
}

static void checkOneEnding(Subject &subject)
{
    try {
        // What comes of confirmed requests is another rule's matter.
        runEach(subject, expectOneEnding, false);
    } catch (const Hindered &hindered) {
        throw Broken{hindered.why};
    }
}

static void checkEndingIsLast(Subject &subject)
{
    runEach(subject, [](Instrument &, Device::DeviceFeature feature, const QVector<Event> &events) {
        const int end = endingIndex(events);
        if (events.at(end).isBusy)
            throw Broken{
                QStringLiteral("the device is busy at the ending of %1").arg(featureName(feature))};
        for (int i = end + 1; i < events.size(); ++i) {
            const Event &event = events.at(i);
            const bool isPlate =
                event.kind == Event::TransientValue && event.feature == Device::DF_PlateDetection;
            // Further endings are another rule's matter.
            if (!isPlate && event.kind != Event::Executed)
                throw Broken{
                    QStringLiteral("a signal follows the ending of %1").arg(featureName(feature))};
        }
    });
}

static void checkBusy(Subject &subject)
{
    Instrument instrument(subject);
    instrument.open();
    bool waited = false;
    const auto features = instrument.runnable();
    for (const auto feature : features) {
        instrument->setConfiguration(feature,
                                     shortConfiguration(feature, instrument->descriptor(feature)));
        const int start = instrument.seen().count();
        instrument.callExecute(feature);
        if (instrument.seen().count(Event::Executed, start) > 0)
            continue;
        waited = true;
        if (!instrument->isBusy())
            throw Broken{QStringLiteral("%1 is at work, and the device is not busy")
                             .arg(featureName(feature))};
        if (!instrument.awaitEndings(start, 1, false))
            throw Hindered{QStringLiteral("a run of %1 has no end").arg(featureName(feature))};
        const QVector<Event> events = instrument.seen().events(start);
        for (int i = 0; i < endingIndex(events); ++i) {
            const bool isWork = events.at(i).kind == Event::TransientValue
                || events.at(i).kind == Event::ActionRequired;
            if (isWork && events.at(i).feature != Device::DF_PlateDetection && !events.at(i).isBusy)
                throw Broken{QStringLiteral("%1 is at work, and the device is not busy")
                                 .arg(featureName(feature))};
        }
    }
    if (!waited)
        throw NotApplicable{QStringLiteral("every run ends before execute() returns")};
}

static void checkResults(Subject &subject)
{
    const bool succeeded = runEach(
        subject, [](Instrument &, Device::DeviceFeature feature, const QVector<Event> &events) {
            const Event &ending = events.at(endingIndex(events));
            if (!ending.flag)
                return;
            const QString fault = resultFault(feature, ending.value);
            if (!fault.isEmpty())
                throw Broken{QStringLiteral("%1: %2").arg(featureName(feature), fault)};
            if (ending.errorCode != 0)
                throw Broken{QStringLiteral("%1 succeeds with error %2")
                                 .arg(featureName(feature), errorName(ending.errorCode))};
        });
    if (!succeeded)
        throw NotApplicable{QStringLiteral("no run succeeded")};
}

// Runs every feature with every wrong configuration there is.
static void runWrong(Subject &subject,
                     const std::function<void(Instrument &, const QString &, const Event &)> &judge)
{
    Instrument instrument(subject);
    instrument.open();
    bool found = false;
    const auto features = instrument.configurable();
    for (const auto feature : features) {
        const auto wrong = wrongConfigurations(feature, instrument->descriptor(feature));
        for (const WrongConfiguration &configuration : wrong) {
            found = true;
            instrument->setConfiguration(feature, configuration.value);
            const Event ending = instrument.run(feature);
            instrument->setConfiguration(feature, QVariant());
            judge(instrument,
                  QStringLiteral("%1, %2").arg(featureName(feature), configuration.what), ending);
        }
    }
    if (!found)
        throw NotApplicable{QStringLiteral("no feature that may be tried takes a configuration")};
}

static void checkWrongIsRefused(Subject &subject)
{
    runWrong(subject, [](Instrument &instrument, const QString &what, const Event &ending) {
        if (ending.flag)
            throw Broken{QStringLiteral("accepted: %1").arg(what)};
        if (ending.errorCode != devices::ERROR_DEVICE_INVALID_CONFIGURATION)
            throw Broken{
                QStringLiteral("%1: refused with error %2").arg(what, errorName(ending.errorCode))};
        if (!instrument->isOpen() || instrument->isBusy())
            throw Broken{QStringLiteral("%1: the device is closed or busy afterwards").arg(what)};
    });
}

static void checkFailureHasNoResult(Subject &subject)
{
    runWrong(subject, [](Instrument &, const QString &what, const Event &ending) {
        if (!ending.flag && ending.value.isValid())
            throw Broken{QStringLiteral("%1: the failed run has a result").arg(what)};
    });
}

static void checkRunClearsError(Subject &subject)
{
    Instrument instrument(subject);
    instrument.open();
    const auto features = instrument.runnable();
    for (const auto feature : features) {
        instrument.provokeError();
        const int start = instrument.seen().count();
        const Event ending = instrument.runShort(feature);
        if (!ending.flag)
            continue;
        if (ending.errorCode != 0)
            throw Broken{QStringLiteral("%1 succeeded, the old error %2 stayed")
                             .arg(featureName(feature), errorName(ending.errorCode))};
        const QVector<Event> events = instrument.seen().events(start);
        for (const Event &event : events) {
            if (event.kind == Event::TransientValue && event.errorCode != 0)
                throw Broken{QStringLiteral("%1 was at work with the old error %2")
                                 .arg(featureName(feature), errorName(event.errorCode))};
        }
        return;
    }
    throw NotApplicable{QStringLiteral("no run succeeded")};
}

static void checkSettingsUntouched(Subject &subject)
{
    Instrument instrument(subject);
    instrument.open();
    const auto features = instrument.runnable();
    for (const auto feature : features) {
        const QVariant descriptor = instrument->descriptor(feature);
        const QVariant configuration = shortConfiguration(feature, descriptor);
        instrument->setConfiguration(feature, configuration);
        const int start = instrument.seen().count();
        instrument.run(feature);
        if (instrument.seen().count(Event::ConfigurationChanged, start) > 0
            || instrument->configuration(feature) != configuration)
            throw Broken{QStringLiteral("the run changed the configuration of %1")
                             .arg(featureName(feature))};
        if (instrument.seen().count(Event::DescriptorChanged, start) > 0
            || instrument->descriptor(feature) != descriptor)
            throw Broken{
                QStringLiteral("the run changed the descriptor of %1").arg(featureName(feature))};
    }
}

static QString progressFault(const QVector<Event> &events, Device::DeviceFeature feature)
{
    double last = -1;
    for (const Event &event : events) {
        if (event.kind == Event::Executed)
            break;
        if (event.kind != Event::TransientValue || event.feature != feature)
            continue;
        const QVariant progress = event.value.toHash().value(QStringLiteral("progress"));
        if (progress.userType() != QMetaType::Double)
            return QStringLiteral("a transient value holds no 'progress' of type double");
        const double now = progress.toDouble();
        if (!(now >= 0 && now <= 1))
            return QStringLiteral("a progress of %1").arg(now);
        if (now < last)
            return QStringLiteral("the progress falls from %1 to %2").arg(last).arg(now);
        last = now;
    }
    if (last < 0)
        return QStringLiteral("there is no progress");
    if (events.at(endingIndex(events)).flag && last < 1)
        return QStringLiteral("the last progress is %1").arg(last);
    return {};
}

static void checkProgress(Subject &subject)
{
    bool found = false;
    runEach(subject,
            [&](Instrument &, Device::DeviceFeature feature, const QVector<Event> &events) {
                // A run that was refused at once has no progress to show.
                if (!isMoving(feature) || !events.at(endingIndex(events)).flag)
                    return;
                found = true;
                const QString fault = progressFault(events, feature);
                if (!fault.isEmpty())
                    throw Broken{QStringLiteral("%1: %2").arg(featureName(feature), fault)};
            });
    if (!found)
        throw NotApplicable{QStringLiteral("no run that shows progress succeeded")};
}

static void checkSecondRun(Subject &subject)
{
    Instrument instrument(subject);
    instrument.open();
    const int start = instrument.seen().count();
    const auto feature = instrument.startLongRun();
    const int before = instrument.seen().count(Event::Executed, start);
    instrument.callExecute(feature);
    instrument.awaitEndings(start, before + 2, true);
    subject.settle();
    const int endings = instrument.seen().count(Event::Executed, start) - before;
    if (endings != 2)
        throw Broken{QStringLiteral("two runs of %1 have %2 endings")
                         .arg(featureName(feature))
                         .arg(endings)};
}

QVector<Rule> executionRules()
{
    return {
        {601, group, Severity::Failure, false, Needs::Open,
         "Each execute() has exactly one ending, which names its feature.",
         "An application waits for it; with none it hangs, and a second one is taken for the "
         "ending of the next run.",
         "Let every way out of a run go through one function that forgets the run and emits "
         "executed(); guard the run with a timer.",
         checkOneEnding},
        {602, group, Severity::Failure, false, Needs::Open,
         "The ending is the last thing a run does: the device is idle and nothing follows.",
         "A receiver of executed() starts the next run at once.",
         "Order: setBusy(false), setError(), emit executed().", checkEndingIsLast},
        {603, group, Severity::Failure, false, Needs::Open,
         "A run that goes on after execute() keeps the device busy.",
         "Front ends lock their controls by the busy flag.",
         "Call setBusy(true) in executeImpl() for all that does not end there.", checkBusy},
        {604, group, Severity::Failure, false, Needs::Open,
         "A run that succeeds has a result of the documented type and leaves no error.",
         "Results are shown, stored and converted without knowing the driver.",
         "See docs/feature-values.md; mind the exact types (int is not double).", checkResults},
        {605, group, Severity::Failure, false, Needs::Open, "A run that fails has no result.",
         "A value beside a failure is taken for a measurement.",
         "Emit executed(feature, false, QVariant()).", checkFailureHasNoResult},
        {606, group, Severity::Failure, false, Needs::Open,
         "A configuration that the descriptor forbids is refused with "
         "ERROR_DEVICE_INVALID_CONFIGURATION, and the device stays usable.",
         "A value that is silently rounded, clamped or ignored gives a measurement that nobody "
         "asked for.",
         "Compare type (QVariant::userType()), limits and choices before the run starts.",
         checkWrongIsRefused},
        {607, group, Severity::Failure, false, Needs::Open, "Starting a run clears an older error.",
         "The error shown must be that of the last run.",
         "Call setError(NO_DEVICE_ERROR, {}) first in executeImpl().", checkRunClearsError},
        {608, group, Severity::Failure, false, Needs::Open,
         "A run leaves the stored configuration and the descriptor as they are.",
         "The configuration belongs to the application, which compares it with its form.",
         "Work on a copy of configuration(feature).", checkSettingsUntouched},
        {609, group, Severity::Failure, true, Needs::Open,
         "Measurements and calibration report a progress from 0 to 1 that never falls and is 1 "
         "before a success.",
         "A bar that jumps back or stops short looks like a fault.",
         "Emit transientValue(feature, QVariantHash{{\"progress\", p}}) with a double, 0 at the "
         "start and 1 before the ending.",
         checkProgress},
        {610, group, Severity::Failure, false, Needs::Open,
         "A second execute() while the device is busy has an ending of its own, and the first run "
         "keeps its ending.",
         "Two parts of an application may use one device; neither must wait in vain.",
         "Refuse the second with ERROR_DEVICE_NOT_READY and executed(feature, false), or queue "
         "it; do not touch the run in progress.",
         checkSecondRun},
    };
}

} // namespace qel::conformance
