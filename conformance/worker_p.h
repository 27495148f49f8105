#ifndef QEL_CONFORMANCE_WORKER_P_H
#define QEL_CONFORMANCE_WORKER_P_H

#include <QtCore/QString>

// What checker and worker say to each other: one request, then one object a line as answers. An
// answer with a rule alone says that the rule is being judged; an empty one is a sign of life.
namespace qel::conformance {

constexpr char workerArgument[] = "--conformance-worker";

const QString keyFile = QStringLiteral("file");
const QString keyDriver = QStringLiteral("driver");
const QString keySerial = QStringLiteral("serial");
const QString keyUnsafe = QStringLiteral("unsafe");
const QString keyLimits = QStringLiteral("limits");
const QString keyRules = QStringLiteral("rules");

const QString keyRule = QStringLiteral("rule");
const QString keyOutcome = QStringLiteral("outcome");
const QString keySeen = QStringLiteral("seen");
const QString keySignals = QStringLiteral("signals");
const QString keyNeeds = QStringLiteral("needs");
const QString keySelection = QStringLiteral("selection");

const QString outcomePassed = QStringLiteral("passed");
const QString outcomeBroken = QStringLiteral("broken");
const QString outcomeNotApplicable = QStringLiteral("not applicable");
const QString outcomeNotRun = QStringLiteral("not run");

} // namespace qel::conformance

#endif
