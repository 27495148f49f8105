#ifndef QEL_CONFORMANCE_SOAK_H
#define QEL_CONFORMANCE_SOAK_H

#include "checker.h"

namespace qel::conformance {

/// What came out of a soak.
struct SoakReport
{
    quint32 seed = 0;        ///< the same seed makes the same sequences again
    int sequences = 0;       ///< how many have been tried
    QString fault;           ///< what must hold at any time and did not; empty when all did
    QStringList steps;       ///< the shortest sequence found that still shows the fault
    QStringList signalsSeen; ///< the device's signals in that sequence
    QString error;           ///< why nothing could be tried; empty otherwise
};

/// Calls a device in random sequences that are allowed, for `seconds`, and holds what it does to
/// what must be so at any time. A sequence that shows a fault is made shorter as long as it does.
/// @param request the plugin, the instrument and what is permitted; its rules are ignored
SoakReport soak(const Request &request, int seconds, quint32 seed);

/// The report as lines for people.
QString toText(const SoakReport &report);

} // namespace qel::conformance

#endif
