#include "catalogues.h"
#include "tour.h"

#include <algorithm>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Requests for action";

// Whatever asks the user has been seen, and what does not go on after an answer with it.
static void concludeStuck(Subject &subject, int rule)
{
    subject.tour();
    Offences offences;
    offences.addStuck(subject, rule);
    offences.conclude();
}

// The text of a request that is about to be confirmed; for whoever cannot do what it asks for.
static void needPermission(Subject &subject, const QString &text)
{
    if (!subject.permits(text)) {
        throw Hindered{QStringLiteral("the request \"%1\" may not be confirmed: needs --yes, or a "
                                      "person at a terminal")
                           .arg(text)};
    }
}

static QString textOf(const ProbedDevice &instrument, int actionId)
{
    const auto events = instrument.seen().events();
    for (const Event &event : events) {
        if (event.kind == Event::ActionRequired && event.actionId == actionId)
            return event.action;
    }
    return {};
}

static void checkText(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    Device::DeviceFeature feature = Device::DF_None;
    const int id = instrument.startRequest(&feature);
    const int start = instrument.seen().count();
    instrument.abort(id);
    instrument.awaitEndings(start, 1, false);
    const QString fault = translationFault(textOf(instrument, id));
    if (!fault.isEmpty())
        throw Broken{fault};
}

static void checkConfirm(Subject &subject)
{
    concludeStuck(subject, 702);
    Offences offences;
    bool found = false;
    const auto runs = subject.tour().allowed();
    for (const Run &run : runs) {
        const bool isConfirmed =
            std::any_of(run.events.cbegin(), run.events.cend(),
                        [](const Event &event) { return event.kind == Event::ActionConfirmed; });
        found |= isConfirmed;
        int endings = 0;
        for (const Event &event : run.events)
            endings += event.kind == Event::Executed ? 1 : 0;
        if (isConfirmed && endings != 1)
            offences.add(QStringLiteral("%1 endings after the confirmation").arg(endings), run);
        if (run.hasRequest() && !isConfirmed)
            throw Hindered{
                QStringLiteral("requests are declined: needs --yes, or a person at a terminal")};
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no run asks the user for anything")};
}

static void checkAbort(Subject &subject)
{
    concludeStuck(subject, 703);
    ProbedDevice &instrument = subject.opened();
    Device::DeviceFeature feature = Device::DF_None;
    const int id = instrument.startRequest(&feature);
    const int start = instrument.seen().count();
    instrument.abort(id);
    instrument.awaitEndings(start, 1, false);
    subject.settle();
    int endings = 0;
    const auto events = instrument.seen().events(start);
    for (const Event &event : events) {
        if (event.kind != Event::Executed)
            continue;
        ++endings;
        if (event.flag || event.errorCode != 0)
            throw Broken{
                QStringLiteral("the aborted run of %1 ends with %2 and error %3")
                    .arg(featureName(feature),
                         event.flag ? QStringLiteral("success") : QStringLiteral("failure"),
                         errorName(event.errorCode))};
    }
    if (endings != 1 || instrument->isBusy())
        throw Broken{
            QStringLiteral("after the abort, %1 has %2 endings and the device is %3")
                .arg(featureName(feature))
                .arg(endings)
                .arg(instrument->isBusy() ? QStringLiteral("busy") : QStringLiteral("idle"))};
}

static void expectSilence(Subject &subject, ProbedDevice &instrument, const QString &what,
                          const std::function<void()> &answer)
{
    const int start = instrument.seen().count();
    answer();
    subject.settle();
    const auto events = instrument.seen().events(start);
    for (const Event &event : events) {
        // Sent by the library before the driver is asked.
        if (event.kind != Event::ActionConfirmed && event.kind != Event::TransientValue)
            throw Broken{QStringLiteral("%1 has an effect").arg(what)};
    }
}

static void checkStrayAnswers(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    Device::DeviceFeature feature = Device::DF_None;
    const int id = instrument.startRequest(&feature);
    const int unknown = id + 1000;
    expectSilence(subject, instrument, QStringLiteral("confirming an unknown request"),
                  [&] { instrument.confirm(unknown); });
    expectSilence(subject, instrument, QStringLiteral("aborting an unknown request"),
                  [&] { instrument.abort(unknown); });
    const int start = instrument.seen().count();
    instrument.abort(id);
    if (!instrument.awaitEndings(start, 1, false))
        throw Hindered{QStringLiteral("an aborted run does not end")};
    subject.settle();
    expectSilence(subject, instrument, QStringLiteral("confirming an answered request"),
                  [&] { instrument.confirm(id); });
    expectSilence(subject, instrument, QStringLiteral("aborting an answered request"),
                  [&] { instrument.abort(id); });
}

static void checkAnswerWithin(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    Device::DeviceFeature feature = Device::DF_None;
    const int probe = instrument.startRequest(&feature);
    const QString text = textOf(instrument, probe);
    int start = instrument.seen().count();
    instrument.abort(probe);
    if (!instrument.awaitEndings(start, 1, false))
        throw Hindered{QStringLiteral("an aborted run does not end")};
    subject.settle();
    for (const bool confirms : {false, true}) {
        if (confirms)
            needPermission(subject, text);
        instrument.setShortConfiguration(feature);
        instrument.recorder().setReaction([&](const Event &event) {
            if (event.kind == Event::ActionRequired && confirms)
                instrument.confirm(event.actionId);
            else if (event.kind == Event::ActionRequired)
                instrument.abort(event.actionId);
        });
        start = instrument.seen().count();
        instrument.callExecute(feature);
        subject.waitFor(subject.limits().run,
                        [&] { return instrument.seen().count(Event::Executed, start) > 0; });
        subject.settle();
        instrument.recorder().setReaction({});
        const int endings = instrument.seen().count(Event::Executed, start);
        if (endings != 1)
            throw Broken{
                QStringLiteral("%1 from within the signal, the run of %2 has %3 endings")
                    .arg(confirms ? QStringLiteral("confirmed") : QStringLiteral("aborted"),
                         featureName(feature))
                    .arg(endings)};
    }
}

static void checkForgottenRequest(Subject &subject)
{
    for (const bool closes : {false, true}) {
        ProbedDevice instrument(subject);
        instrument.open();
        Device::DeviceFeature feature = Device::DF_None;
        const int id = instrument.startRequest(&feature);
        const int start = instrument.seen().count();
        if (closes)
            instrument.callClose();
        else
            instrument.callReset();
        // That the run ends is another rule's matter.
        subject.waitFor(subject.limits().open, [&] {
            return instrument.seen().count(Event::Executed, start) > 0 && !instrument->isBusy()
                && instrument->isOpen() != closes;
        });
        subject.settle();
        expectSilence(subject, instrument,
                      QStringLiteral("confirming a request after %1")
                          .arg(closes ? QStringLiteral("close()") : QStringLiteral("reset()")),
                      [&] { instrument.confirm(id); });
        if (instrument->isBusy())
            throw Broken{QStringLiteral("the late confirmation made the device busy")};
    }
}

static void checkCalibrationAsks(Subject &subject)
{
    Offences offences;
    bool found = false;
    const auto runs = subject.tour().allowed();
    for (const Run &run : runs) {
        if (run.feature != Device::DF_Calibration || !run.isSuccess())
            continue;
        found = true;
        if (!run.hasRequest())
            offences.add(QStringLiteral("it succeeds, and nobody was asked to empty the slot"),
                         run);
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no calibration succeeded")};
}

QVector<Rule> actionRules()
{
    return {
        {701, group, Severity::Failure, true, Needs::Open,
         "The text of a request is a translation id that the plugin's catalogues resolve in "
         "English and German.",
         "The application shows it in the user's language.",
         "Pass an id to emitActionRequired() and translate it in plugin_en.ts and plugin_de.ts.",
         checkText},
        {702, group, Severity::Failure, true, Needs::Open,
         "A confirmed request lets the run go on to its one ending.",
         "The user has done what was asked and waits.",
         "Override confirmActionImpl() and go on from there.", checkConfirm},
        {703, group, Severity::Failure, true, Needs::Open,
         "An aborted request ends the run once, with executed(feature, false), no error and the "
         "device idle.",
         "The user's own decision is not a fault of the instrument.",
         "Override abortActionImpl() and end the run there without setError().", checkAbort},
        {704, group, Severity::Failure, true, Needs::Open,
         "An answer to an unknown or an already answered request has no effect.",
         "Several windows may show the same request, and each may answer.",
         "Compare the id with that of the open request, and forget it with the first answer.",
         checkStrayAnswers},
        {705, group, Severity::Failure, true, Needs::Open,
         "A request may be answered from within its signal.",
         "Scripts answer at once, before emitActionRequired() has returned the id.",
         "Learn the id from the signal actionRequired() itself, connected in the constructor, not "
         "from the returned value.",
         checkAnswerWithin},
        {706, group, Severity::Failure, true, Needs::Open,
         "An open request is forgotten by close() and reset(): a late answer starts nothing.",
         "The person comes back and confirms; parts move of an instrument that nobody uses.",
         "Forget the id of the request where the run is forgotten.", checkForgottenRequest},
        {707, group, Severity::Recommendation, true, Needs::Open,
         "A calibration asks for an empty slot before it starts.",
         "With a plate in the slot every later measurement is wrong.",
         "Call emitActionRequired() first, unless the instrument senses that its slot is empty.",
         checkCalibrationAsks},
    };
}

} // namespace qel::conformance
