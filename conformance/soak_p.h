#ifndef QEL_CONFORMANCE_SOAK_P_H
#define QEL_CONFORMANCE_SOAK_P_H

#include "subject.h"

namespace qel::conformance {

/// The worker's side of a soak: tries the sequence of the assignment, or random ones until the time
/// has run out or one shows a fault.
void soakInWorker(Subject &subject, const Assignment &assignment,
                  const std::function<void(const QJsonObject &)> &tell);

} // namespace qel::conformance

#endif
