#include "configurations.h"
#include "tour.h"

#include <qeldevices/deviceerrors.h>
#include <qelvalues/features.h>
#include <qelvalues/results.h>

#include <algorithm>
#include <iterator>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Execution";

// The runs with an allowed configuration; there must be some.
static QVector<Run> allowedRuns(Subject &subject)
{
    const QVector<Run> runs = subject.tour().allowed();
    if (runs.isEmpty())
        throw NotApplicable{QStringLiteral("no feature may be run")};
    return runs;
}

static QVector<Run> forbiddenRuns(Subject &subject)
{
    const QVector<Run> runs = subject.tour().forbidden();
    if (runs.isEmpty())
        throw NotApplicable{QStringLiteral("no feature that may be tried takes a configuration")};
    return runs;
}

static void checkOneEnding(Subject &subject)
{
    Offences offences;
    const auto runs = subject.tour().runs;
    for (const Run &run : runs) {
        int endings = 0;
        for (const Event &event : run.events) {
            if (event.kind != Event::Executed)
                continue;
            ++endings;
            if (event.feature != run.feature)
                offences.add(QStringLiteral("the ending names %1").arg(featureName(event.feature)),
                             run);
        }
        if (endings > 1)
            offences.add(QStringLiteral("%1 endings").arg(endings), run);
    }
    // What comes of answered requests is another rule's matter.
    offences.addStuck(subject, 601);
    offences.conclude();
    allowedRuns(subject);
}

static void checkEndingIsLast(Subject &subject)
{
    Offences offences;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        const int end = run.endingIndex();
        if (run.ending().isBusy)
            offences.add(QStringLiteral("the device is busy at the ending"), run);
        for (int i = end + 1; i < run.events.size(); ++i) {
            const Event &event = run.events.at(i);
            const bool isPlate =
                event.kind == Event::TransientValue && event.feature == Device::DF_PlateDetection;
            // Further endings are another rule's matter, and the device is idle in the end.
            const bool isIdle = event.kind == Event::BusyChanged && run.ending().isBusy;
            if (!isPlate && !isIdle && event.kind != Event::Executed)
                offences.add(QStringLiteral("a signal follows the ending"), run);
        }
    }
    offences.conclude();
}

static void checkBusy(Subject &subject)
{
    Offences offences;
    bool waited = false;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (run.endingIndex() < run.eventsWithin)
            continue;
        waited = true;
        bool isIdle = !run.isBusyOnReturn;
        for (int i = 0; i < run.endingIndex(); ++i) {
            const Event &event = run.events.at(i);
            const bool isWork =
                event.kind == Event::TransientValue || event.kind == Event::ActionRequired;
            isIdle |= isWork && event.feature != Device::DF_PlateDetection && !event.isBusy;
        }
        if (isIdle)
            offences.add(QStringLiteral("it is at work, and the device is not busy"), run);
    }
    offences.conclude();
    if (!waited)
        throw NotApplicable{QStringLiteral("every run ends before execute() returns")};
}

static void checkResults(Subject &subject)
{
    Offences offences;
    bool succeeded = false;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (!run.isSuccess())
            continue;
        succeeded = true;
        const QString fault = shapeFault(run);
        if (!fault.isEmpty())
            offences.add(fault, run);
        // An old error that stayed is another rule's matter.
        const int error = run.ending().errorCode;
        if (error != 0 && error != run.oldError)
            offences.add(QStringLiteral("success with error %1").arg(errorName(error)), run);
    }
    offences.conclude();
    if (!succeeded)
        throw NotApplicable{QStringLiteral("no run succeeded")};
}

static void checkWrongIsRefused(Subject &subject)
{
    Offences offences;
    const auto runs = forbiddenRuns(subject);
    for (const Run &run : runs) {
        if (run.ending().flag)
            offences.add(QStringLiteral("accepted"), run);
        else if (run.ending().errorCode != devices::ERROR_DEVICE_INVALID_CONFIGURATION)
            offences.add(
                QStringLiteral("refused with error %1").arg(errorName(run.ending().errorCode)),
                run);
        else if (!run.isOpenAfter || run.isBusyAfter)
            offences.add(QStringLiteral("the device is closed or busy afterwards"), run);
    }
    offences.conclude();
}

static void checkFailureHasNoResult(Subject &subject)
{
    Offences offences;
    const auto runs = subject.tour().allowed() + subject.tour().forbidden();
    for (const Run &run : runs) {
        if (!run.ending().flag && run.ending().value.isValid())
            offences.add(QStringLiteral("the failed run has a result"), run);
    }
    offences.conclude();
}

static void checkRunClearsError(Subject &subject)
{
    Offences offences;
    bool found = false;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (run.oldError == 0 || !run.isSuccess())
            continue;
        found = true;
        // The same error again could be one of its own.
        bool isOld = run.ending().errorCode == run.oldError;
        for (const Event &event : run.events)
            isOld |= event.kind == Event::TransientValue && event.errorCode == run.oldError;
        if (isOld)
            offences.add(QStringLiteral("the old error %1 stayed").arg(errorName(run.oldError)),
                         run);
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no run that succeeded began with an error")};
}

static void checkSettingsUntouched(Subject &subject)
{
    Offences offences;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (run.kind == Run::Changed)
            continue;
        const auto changed = [&](Event::Kind kind) {
            return std::any_of(run.events.cbegin(), run.events.cend(), [&](const Event &event) {
                return event.kind == kind && event.feature == run.feature;
            });
        };
        if (!isSame(run.configurationAfter, run.configuration)
            || changed(Event::ConfigurationChanged))
            offences.add(QStringLiteral("the run changed the configuration"), run);
        if (!isSame(run.descriptorAfter, run.descriptor) || changed(Event::DescriptorChanged))
            offences.add(QStringLiteral("the run changed the descriptor"), run);
    }
    offences.conclude();
}

static QString progressFault(const Run &run)
{
    double last = -1;
    for (int i = 0; i < run.endingIndex(); ++i) {
        const Event &event = run.events.at(i);
        if (event.kind != Event::TransientValue || event.feature != run.feature)
            continue;
        const auto problems = values::checkTransient(run.feature, event.value);
        if (!problems.isEmpty())
            return toString(problems);
        const double now = event.value.toHash().value(QStringLiteral("progress")).toDouble();
        if (now < last)
            return QStringLiteral("the progress falls from %1 to %2").arg(last).arg(now);
        last = now;
    }
    if (last < 0)
        return QStringLiteral("there is no progress");
    return last < 1 ? QStringLiteral("the last progress is %1").arg(last) : QString();
}

static void checkProgress(Subject &subject)
{
    Offences offences;
    bool found = false;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        // A run that was refused at once has no progress to show.
        if (!values::isMoving(run.feature) || !run.isSuccess())
            continue;
        found = true;
        const QString fault = progressFault(run);
        if (!fault.isEmpty())
            offences.add(fault, run);
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no run that shows progress succeeded")};
}

static void checkSecondRun(Subject &subject)
{
    Offences offences;
    const auto &overlap = subject.tour().overlap;
    if (overlap) {
        QVector<Event> endings;
        std::copy_if(overlap->events.cbegin(), overlap->events.cend(), std::back_inserter(endings),
                     [](const Event &event) { return event.kind == Event::Executed; });
        if (endings.size() != 2)
            offences.add(QStringLiteral("%1 endings").arg(endings.size()), *overlap);
        // A code that is none is another rule's matter.
        else if (endings.constFirst().flag
                 || (endings.constFirst().errorCode != devices::ERROR_DEVICE_NOT_READY
                     && endings.constFirst().errorCode <= devices::ERROR_DEVICE_API_TOO_NEW))
            offences.add(QStringLiteral("the first ending is not that of the second run, refused "
                                        "with ERROR_DEVICE_NOT_READY, but %1 with error %2")
                             .arg(endings.constFirst().flag ? QStringLiteral("a success")
                                                            : QStringLiteral("a failure"),
                                  errorName(endings.constFirst().errorCode)),
                         *overlap);
    }
    offences.addStuck(subject, 610);
    offences.conclude();
    if (!overlap)
        throw NotApplicable{QStringLiteral("every run ends before execute() returns")};
}

static void checkFailureSaysWhy(Subject &subject)
{
    Offences offences;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        // A run whose request was declined is none that failed by itself.
        if (run.isSuccess() || run.hasRequest())
            continue;
        const bool isSet = std::any_of(
            run.events.cbegin(), run.events.cbegin() + run.endingIndex(), [](const Event &event) {
                return event.kind == Event::ErrorChanged && event.errorCode;
            });
        if (run.ending().errorCode == 0)
            offences.add(QStringLiteral("the run fails without an error"), run);
        else if (!isSet)
            offences.add(QStringLiteral("the run fails with the error of an earlier one"), run);
    }
    offences.conclude();
}

static void checkProgressBegins(Subject &subject)
{
    Offences offences;
    bool found = false;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (!values::isMoving(run.feature) || !run.isSuccess())
            continue;
        const auto first =
            std::find_if(run.events.cbegin(), run.events.cend(), [&](const Event &event) {
                return event.kind == Event::TransientValue && event.feature == run.feature;
            });
        if (first == run.events.cend())
            continue;
        found = true;
        const double progress = first->value.toHash().value(QStringLiteral("progress")).toDouble();
        // What lies outside of 0 to 1, or falls, is another rule's matter.
        if (progress >= 0.5 && progress <= 1 && progressFault(run).isEmpty())
            offences.add(QStringLiteral("the first progress is %1").arg(progress), run);
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no run that shows progress succeeded")};
}

static void checkIdleIsSilent(Subject &subject)
{
    Offences offences;
    const Tour &tour = subject.tour();
    for (const Event &event : tour.idle) {
        if (event.kind == Event::TransientValue && event.feature != Device::DF_PlateDetection)
            offences.add(QStringLiteral("a transient value of %1").arg(featureName(event.feature)),
                         tour.idle);
    }
    offences.conclude();
}

static void checkFeatureStays(Subject &subject)
{
    Offences offences;
    const auto runs = allowedRuns(subject);
    for (const Run &run : runs) {
        if (run.isOpenAfter && !run.isOfferedAfter)
            offences.add(QStringLiteral("the feature is gone after the run"), run);
    }
    offences.conclude();
}

static int endingsOf(Subject &subject, Device::DeviceFeature feature)
{
    int endings = 0;
    const auto &runs = subject.tour().runs;
    for (const Run &run : runs) {
        if (run.feature != feature || run.kind != Run::Short)
            continue;
        for (const Event &event : run.events)
            endings += event.kind == Event::Executed ? 1 : 0;
    }
    return endings;
}

static void checkChain(Subject &subject)
{
    Offences offences;
    const auto chains = subject.tour().chains;
    for (const Run &run : chains) {
        int endings = 0;
        for (const Event &event : run.events)
            endings += event.kind == Event::Executed ? 1 : 0;
        // A run that has two endings by itself is another rule's matter.
        if (endings > 2 && endingsOf(subject, run.feature) == 1)
            offences.add(QStringLiteral("%1 endings").arg(endings), run);
    }
    offences.addStuck(subject, 615);
    offences.conclude();
    if (chains.isEmpty())
        throw NotApplicable{QStringLiteral("no feature may be run")};
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
         "A second execute() while the device is busy is refused with ERROR_DEVICE_NOT_READY and "
         "an "
         "ending of its own, and the first run keeps its ending.",
         "Two parts of an application may use one device; neither must wait in vain.",
         "Refuse the second with ERROR_DEVICE_NOT_READY and executed(feature, false); do not touch "
         "the run in progress.",
         checkSecondRun},
        {611, group, Severity::Failure, false, Needs::Open,
         "A run that fails by itself says why: it sets an error.",
         "Without one, or with that of an earlier run, nobody knows that the instrument needs "
         "help.",
         "Call setError() before an ending that is not ok, unless the user aborted the run.",
         checkFailureSaysWhy},
        {612, group, Severity::Failure, true, Needs::Open,
         "The first progress of a run is sent when it starts, and is less than a half.",
         "A bar that appears in the middle hides that the instrument did nothing until then.",
         "Emit a progress of 0 in executeImpl().", checkProgressBegins},
        {613, group, Severity::Failure, false, Needs::Open,
         "An idle device emits no transient values, except of plate detection.",
         "They are taken for values of the next run.",
         "Stop timers and subscriptions with the run they belong to.", checkIdleIsSilent},
        {614, group, Severity::Failure, false, Needs::Open,
         "A feature stays available when it has been run.",
         "Front ends drop its form, and what the user has set with it.",
         "Call removeFeature() only when the instrument has lost the feature.", checkFeatureStays},
        {615, group, Severity::Failure, false, Needs::Open,
         "A receiver of executed() may start the next run at once.",
         "Series of runs are made like that.",
         "Forget the run before emitting executed(), and touch nothing of it afterwards.",
         checkChain},
    };
}

} // namespace qel::conformance
