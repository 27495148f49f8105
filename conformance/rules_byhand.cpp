#include "unplugging.h"

#include <qeldevices/deviceerrors.h>

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::SlotStatus;

static const char group[] = "By hand";

static QString nameOf(SlotStatus status)
{
    return status == SlotStatus::Empty   ? QStringLiteral("empty")
        : status == SlotStatus::Occupied ? QStringLiteral("occupied")
                                         : QStringLiteral("unknown");
}

// What is told on request must be what is the case.
static void expectSlot(ProbedDevice &instrument, SlotStatus expected)
{
    const Event ending = instrument.run(Device::DF_PlateDetection);
    if (!ending.flag)
        throw Hindered{
            QStringLiteral("plate detection fails with error %1").arg(errorName(ending.errorCode))};
    const auto status = ending.value.value<SlotStatus>();
    if (status != expected)
        throw Broken{QStringLiteral("the slot is %1, and plate detection calls it %2")
                         .arg(nameOf(expected), nameOf(status))};
}

static void checkPlateDetection(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    if (!instrument->hasFeature(Device::DF_PlateDetection))
        throw NotApplicable{QStringLiteral("the instrument does not detect plates")};
    subject.ask("Take the plate out of the instrument, if there is one.");
    expectSlot(instrument, SlotStatus::Empty);
    const int start = instrument.seen().count();
    subject.ask("Put a plate into the instrument.");
    const bool isTold = subject.waitFor(subject.limits().late, [&] {
        const auto events = instrument.seen().events(start);
        return std::any_of(events.cbegin(), events.cend(), [](const Event &event) {
            return event.kind == Event::TransientValue && event.feature == Device::DF_PlateDetection
                && event.value.value<SlotStatus>() == SlotStatus::Occupied;
        });
    });
    if (!isTold)
        throw Broken{QStringLiteral("no transient value has told of the plate")};
    expectSlot(instrument, SlotStatus::Occupied);
}

static Broken brokenBy(const Unplugging &seen, const QString &what)
{
    return Broken{what, toLines(seen.events), true};
}

static void checkUnpluggedCloses(Subject &subject)
{
    const Unplugging &seen = subject.unplugging();
    const auto endings = seen.endings();
    if (!seen.isClosed && !endings.isEmpty()
        && endings.constLast().errorCode == devices::ERROR_DEVICE_TIMEOUT)
        throw NotApplicable{QStringLiteral("the link does not tell: the run ends with %1")
                                .arg(errorName(devices::ERROR_DEVICE_TIMEOUT))};
    if (!seen.isClosed)
        throw brokenBy(seen,
                       QStringLiteral("the device is still open or busy after %1 ms")
                           .arg(subject.limits().open));
    int closings = 0;
    for (const Event &event : seen.events) {
        if (event.kind != Event::OpenChanged || event.flag)
            continue;
        ++closings;
        if (event.errorCode != devices::ERROR_DEVICE_DISCONNECTED)
            throw brokenBy(seen,
                           QStringLiteral("openChanged(false) comes with error %1")
                               .arg(errorName(event.errorCode)));
    }
    if (closings != 1)
        throw brokenBy(seen, QStringLiteral("openChanged(false) comes %1 times").arg(closings));
    if (seen.errorCode != devices::ERROR_DEVICE_DISCONNECTED)
        throw brokenBy(seen,
                       QStringLiteral("the error is %1 afterwards").arg(errorName(seen.errorCode)));
}

static void checkUnpluggedEndsRun(Subject &subject)
{
    const Unplugging &seen = subject.unplugging();
    if (seen.feature == Device::DF_None)
        throw NotApplicable{QStringLiteral("no run that may be tried lasts")};
    const auto endings = seen.endings();
    if (endings.size() == 1 && endings.constFirst().flag && endings.constFirst().isOpen)
        throw Hindered{QStringLiteral("the instrument was lost between two runs; try again")};
    if (endings.size() != 1)
        throw brokenBy(seen,
                       QStringLiteral("the run of %1 has %2 endings")
                           .arg(featureName(seen.feature))
                           .arg(endings.size()));
    const Event &ending = endings.constFirst();
    if (ending.flag || ending.value.isValid())
        throw brokenBy(seen,
                       QStringLiteral("the run of %1 ends with success or a result")
                           .arg(featureName(seen.feature)));
    if (ending.feature != seen.feature)
        throw brokenBy(seen,
                       QStringLiteral("the ending names %1").arg(featureName(ending.feature)));
    // That it closes at all is another rule's matter.
    if (ending.isOpen && ending.errorCode != devices::ERROR_DEVICE_DISCONNECTED)
        throw NotApplicable{QStringLiteral("the run ended with %1 before the loss was noticed")
                                .arg(errorName(ending.errorCode))};
    if (seen.isClosed && (ending.isOpen || ending.isBusy))
        throw brokenBy(seen,
                       QStringLiteral("the device is open or busy at the ending of %1")
                           .arg(featureName(seen.feature)));
}

static void checkUnpluggedIsGone(Subject &subject)
{
    const Unplugging &seen = subject.unplugging();
    if (seen.interface == devices::DeviceInfo::Network)
        throw NotApplicable{QStringLiteral("an instrument in the network is listed where it is "
                                           "configured")};
    if (seen.isListed)
        throw Broken{QStringLiteral("it is still listed"), {}, true};
}

static void checkPluggedInIsBack(Subject &subject)
{
    const Unplugging &seen = subject.unplugging();
    if (!seen.isListedAgain)
        throw Broken{
            QStringLiteral("it is not listed within %1 ms").arg(subject.limits().open), {}, true};
    if (!seen.isOpenedAgain)
        throw Broken{seen.reopening, {}, true};
}

QVector<Rule> byHandRules()
{
    QVector<Rule> rules{
        {1401, group, Severity::Failure, false, Needs::Open,
         "Plate detection tells whether there is a plate, when it is asked and when one comes.",
         "Front ends show the slot, and warn of a measurement without a plate.",
         "Emit transientValue(DF_PlateDetection, ...) with the SlotStatus whenever it changes.",
         checkPlateDetection},
        {1402, group, Severity::Failure, false, Needs::Open,
         "The device of an instrument that is unplugged during a run closes within 10 s, with "
         "ERROR_DEVICE_DISCONNECTED.",
         "Nobody else can tell the user that the cable is loose.",
         "On an error of the connection, or when the instrument stops answering: "
         "setError(ERROR_DEVICE_DISCONNECTED, ...), then setStatus({}).",
         checkUnpluggedCloses},
        {1403, group, Severity::Failure, false, Needs::Open,
         "A run that is cut short by unplugging ends once with executed(feature, false), after the "
         "device is closed and idle.",
         "Whoever waits for the ending would wait for ever, or take it for a measurement.",
         "Forget the run, and emit executed(feature, false) for it last.", checkUnpluggedEndsRun},
        {1404, group, Severity::Recommendation, false, Needs::Open,
         "An instrument that is unplugged is not listed.",
         "A user who chooses it gets nothing but an error.",
         "Ask the system for what is connected each time availableDevices() is called.",
         checkUnpluggedIsGone},
        {1405, group, Severity::Failure, false, Needs::Open,
         "An instrument that is plugged in again is listed again, and opens.",
         "A loose cable must not cost a restart.",
         "Let go of the port and of everything that was remembered when the connection is lost.",
         checkPluggedInIsBack},
    };
    for (Rule &rule : rules)
        rule.needsPerson = true;
    return rules;
}

} // namespace qel::conformance
