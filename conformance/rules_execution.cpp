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
        for (const Event &event : run.events) {
            if (event.kind == Event::Executed && event.feature != run.feature)
                offences.add(QStringLiteral("the ending names %1").arg(featureName(event.feature)),
                             run);
        }
        if (run.endingCount() > 1)
            offences.add(QStringLiteral("%1 endings").arg(run.endingCount()), run);
    }
    // What comes of answered requests is another rule's matter.
    offences.addStuck(subject, 601);
    offences.conclude();
    allowedRuns(subject);
}

static void checkEndingIsLast(Subject &subject)
{
    judge(allowedRuns(subject), [](const Run &run) {
        QStringList faults;
        if (run.ending().isBusy)
            faults += QStringLiteral("the device is busy at the ending");
        for (int i = run.endingIndex() + 1; i < run.events.size(); ++i) {
            const Event &event = run.events.at(i);
            const bool isPlate =
                event.kind == Event::TransientValue && event.feature == Device::DF_PlateDetection;
            // Further endings are another rule's matter, and the device is idle in the end.
            const bool isIdle = event.kind == Event::BusyChanged && run.ending().isBusy;
            if (!isPlate && !isIdle && event.kind != Event::Executed)
                faults += QStringLiteral("a signal follows the ending");
        }
        return faults;
    });
}

static void checkBusy(Subject &subject)
{
    const auto lasts = [](const Run &run) { return run.endingIndex() >= run.eventsWithin; };
    const auto runs = only(allowedRuns(subject), lasts,
                           QStringLiteral("every run ends before execute() returns"));
    judge(runs, [](const Run &run) {
        bool isIdle = !run.isBusyOnReturn;
        for (int i = 0; i < run.endingIndex(); ++i) {
            const Event &event = run.events.at(i);
            const bool isWork =
                event.kind == Event::TransientValue || event.kind == Event::ActionRequired;
            isIdle |= isWork && event.feature != Device::DF_PlateDetection && !event.isBusy;
        }
        return isIdle ? QStringList(QStringLiteral("it is at work, and the device is not busy"))
                      : QStringList();
    });
}

static void checkResults(Subject &subject)
{
    const auto succeeds = [](const Run &run) { return run.isSuccess(); };
    judge(only(allowedRuns(subject), succeeds, QStringLiteral("no run succeeded")),
          [](const Run &run) {
              QStringList faults;
              const QString fault = shapeFault(run);
              if (!fault.isEmpty())
                  faults += fault;
              // An old error that stayed is another rule's matter.
              const int error = run.ending().errorCode;
              if (error != 0 && error != run.oldError)
                  faults += QStringLiteral("success with error %1").arg(errorName(error));
              return faults;
          });
}

static void checkWrongIsRefused(Subject &subject)
{
    judge(forbiddenRuns(subject), [](const Run &run) -> QStringList {
        if (run.ending().flag)
            return {QStringLiteral("accepted")};
        const int error = run.ending().errorCode;
        if (error != devices::ERROR_DEVICE_INVALID_CONFIGURATION)
            return {QStringLiteral("refused with error %1").arg(errorName(error))};
        if (!run.isOpenAfter || run.isBusyAfter)
            return {QStringLiteral("the device is closed or busy afterwards")};
        return {};
    });
}

static void checkFailureHasNoResult(Subject &subject)
{
    const Tour &tour = subject.tour();
    judge(tour.allowed() + tour.forbidden(), [](const Run &run) -> QStringList {
        if (!run.ending().flag && run.ending().value.isValid())
            return {QStringLiteral("the failed run has a result")};
        return {};
    });
}

static void checkRunClearsError(Subject &subject)
{
    const auto isMeant = [](const Run &run) { return run.oldError != 0 && run.isSuccess(); };
    const auto runs = only(allowedRuns(subject), isMeant,
                           QStringLiteral("no run that succeeded began with an error"));
    judge(runs, [](const Run &run) -> QStringList {
        // The same error again could be one of its own.
        bool isOld = run.ending().errorCode == run.oldError;
        for (const Event &event : run.events)
            isOld |= event.kind == Event::TransientValue && event.errorCode == run.oldError;
        if (isOld)
            return {QStringLiteral("the old error %1 stayed").arg(errorName(run.oldError))};
        return {};
    });
}

static void checkSettingsUntouched(Subject &subject)
{
    judge(allowedRuns(subject), [](const Run &run) {
        QStringList faults;
        if (run.kind == Run::Changed)
            return faults;
        const auto changed = [&](Event::Kind kind) {
            return std::any_of(run.events.cbegin(), run.events.cend(), [&](const Event &event) {
                return event.kind == kind && event.feature == run.feature;
            });
        };
        if (!isSame(run.configurationAfter, run.configuration)
            || changed(Event::ConfigurationChanged))
            faults += QStringLiteral("the run changed the configuration");
        if (!isSame(run.descriptorAfter, run.descriptor) || changed(Event::DescriptorChanged))
            faults += QStringLiteral("the run changed the descriptor");
        return faults;
    });
}

// The runs that have progress to show; one that was refused at once has none.
static QVector<Run> runsWithProgress(Subject &subject)
{
    return only(
        allowedRuns(subject),
        [](const Run &run) { return values::isMoving(run.feature) && run.isSuccess(); },
        QStringLiteral("no run that shows progress succeeded"));
}

static QVector<double> progressOf(const Run &run)
{
    QVector<double> all;
    for (int i = 0; i < run.endingIndex(); ++i) {
        const Event &event = run.events.at(i);
        if (event.kind == Event::TransientValue && event.feature == run.feature)
            all += event.value.toHash().value(QStringLiteral("progress")).toDouble();
    }
    return all;
}

static QStringList progressFaults(const Run &run)
{
    for (int i = 0; i < run.endingIndex(); ++i) {
        const Event &event = run.events.at(i);
        if (event.kind != Event::TransientValue || event.feature != run.feature)
            continue;
        const auto problems = values::checkTransient(run.feature, event.value);
        if (!problems.isEmpty())
            return {toString(problems)};
    }
    const QVector<double> progress = progressOf(run);
    const auto fall =
        std::adjacent_find(progress.cbegin(), progress.cend(), std::greater<double>());
    if (fall != progress.cend())
        return {QStringLiteral("the progress falls from %1 to %2").arg(fall[0]).arg(fall[1])};
    if (progress.isEmpty())
        return {QStringLiteral("there is no progress")};
    if (progress.constLast() < 1)
        return {QStringLiteral("the last progress is %1").arg(progress.constLast())};
    return {};
}

static void checkProgress(Subject &subject)
{
    judge(runsWithProgress(subject), progressFaults);
}

static void checkProgressBegins(Subject &subject)
{
    judge(runsWithProgress(subject), [](const Run &run) -> QStringList {
        const QVector<double> progress = progressOf(run);
        // What lies outside of 0 to 1, falls, or is missing is another rule's matter.
        if (progressFaults(run).isEmpty() && progress.constFirst() >= 0.5)
            return {QStringLiteral("the first progress is %1").arg(progress.constFirst())};
        return {};
    });
}

static void checkSecondRun(Subject &subject)
{
    Offences offences;
    const auto &overlap = subject.tour().overlap;
    if (overlap && overlap->endingCount() != 2) {
        offences.add(QStringLiteral("%1 endings").arg(overlap->endingCount()), *overlap);
    } else if (overlap) {
        const Event &first = overlap->ending();
        // A code that is none is another rule's matter.
        const bool isOtherError = first.errorCode != devices::ERROR_DEVICE_NOT_READY
            && first.errorCode <= devices::ERROR_DEVICE_API_TOO_NEW;
        if (first.flag || isOtherError)
            offences.add(
                QStringLiteral("the first ending is not that of the second run, refused "
                               "with ERROR_DEVICE_NOT_READY, but %1 with error %2")
                    .arg(first.flag ? QStringLiteral("a success") : QStringLiteral("a failure"),
                         errorName(first.errorCode)),
                *overlap);
    }
    offences.addStuck(subject, 610);
    offences.conclude();
    if (!overlap)
        throw NotApplicable{QStringLiteral("every run ends before execute() returns")};
}

static void checkFailureSaysWhy(Subject &subject)
{
    judge(allowedRuns(subject), [](const Run &run) -> QStringList {
        // A run whose request was declined is none that failed by itself.
        if (run.isSuccess() || run.hasRequest())
            return {};
        if (run.ending().errorCode == 0)
            return {QStringLiteral("the run fails without an error")};
        const bool isSet = std::any_of(
            run.events.cbegin(), run.events.cbegin() + run.endingIndex(), [](const Event &event) {
                return event.kind == Event::ErrorChanged && event.errorCode;
            });
        if (!isSet)
            return {QStringLiteral("the run fails with the error of an earlier one")};
        return {};
    });
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
    judge(allowedRuns(subject), [](const Run &run) -> QStringList {
        if (run.isOpenAfter && !run.isOfferedAfter)
            return {QStringLiteral("the feature is gone after the run")};
        return {};
    });
}

static void checkChain(Subject &subject)
{
    Offences offences;
    const Tour &tour = subject.tour();
    for (const Run &run : tour.chains) {
        // A run that has two endings by itself is another rule's matter.
        const bool isOneByItself =
            std::none_of(tour.runs.cbegin(), tour.runs.cend(), [&](const Run &other) {
                return other.feature == run.feature && other.kind == Run::Short
                    && other.endingCount() != 1;
            });
        if (run.endingCount() > 2 && isOneByItself)
            offences.add(QStringLiteral("%1 endings").arg(run.endingCount()), run);
    }
    offences.addStuck(subject, 615);
    offences.conclude();
    if (tour.chains.isEmpty())
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
         "start and 1 before the ending; with Qel::Driver, call reportProgress().",
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
