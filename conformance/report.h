#ifndef QEL_CONFORMANCE_REPORT_H
#define QEL_CONFORMANCE_REPORT_H

#include "checker.h"

namespace qel::conformance {

/// One result as lines for people; a broken rule with what was seen, reason and remedy.
/// @param previous the result before, or null; a new group gets its title
QString toText(const Result &result, const Result *previous);

/// How many rules hold, and how many do not, what each feature did, and what was not judged and
/// why, as lines for people.
QString summary(const Report &report);

/// The report for programs.
QJsonObject toJson(const Report &report, const QString &fileName);

/// The report as a JUnit test suite, one test case a rule.
QByteArray toJUnit(const Report &report, const QString &fileName);

} // namespace qel::conformance

#endif
