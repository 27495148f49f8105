#ifndef QEL_CONFORMANCE_WORKER_P_H
#define QEL_CONFORMANCE_WORKER_P_H

#include <QtCore/QString>

// What checker and worker say to each other: one Assignment, then JSON objects as answers, each of
// one kind:
//  - a rule alone says that the rule is being judged, with an outcome that it has been, with an end
//    that the plugin's own process has ended meanwhile;
//  - a call says that the plugin is being called, "returned" that the call has ended;
//  - "stuck" names a feature whose run has no end;
//  - "ask" has a person do something; the worker waits for the message "yes" or "no";
//  - "reserve" names the instrument that the worker is about to use, before it is used for the
//  first
//    time; the worker waits for the message who else uses it, which is empty when nobody does;
//  - in a soak, "steps" is the sequence that begins, "fault" what the last one has shown, and
//    "unmet" why none can be tried;
//  - an empty one is a sign of life.
namespace qel::conformance {

constexpr char workerArgument[] = "--conformance-worker";

const QString keyRule = QStringLiteral("rule");
const QString keyOutcome = QStringLiteral("outcome");
const QString keySeen = QStringLiteral("seen");
const QString keySignals = QStringLiteral("signals");
const QString keyNeeds = QStringLiteral("needs");
const QString keySelection = QStringLiteral("selection");
const QString keyEnd = QStringLiteral("end");
const QString keyTally = QStringLiteral("tally");
const QString keyOffered = QStringLiteral("offered");
const QString keyEndings = QStringLiteral("endings");

const QString keyCall = QStringLiteral("call");
const QString keyFeature = QStringLiteral("feature");
const QString keyReturned = QStringLiteral("returned");
const QString keyStuck = QStringLiteral("stuck");
const QString keySteps = QStringLiteral("steps");
const QString keyFault = QStringLiteral("fault");
const QString keyUnmet = QStringLiteral("unmet");
const QString keyAsk = QStringLiteral("ask");
const QString keyReserve = QStringLiteral("reserve");

// How a worker ends whose answers nobody can hear.
constexpr int exitUnheard = 97;

const QString outcomePassed = QStringLiteral("passed");
const QString outcomeBroken = QStringLiteral("broken");
const QString outcomeNotApplicable = QStringLiteral("not applicable");
const QString outcomeNotRun = QStringLiteral("not run");

} // namespace qel::conformance

#endif
