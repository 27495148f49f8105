#ifndef QEL_CONFORMANCE_WORKER_H
#define QEL_CONFORMANCE_WORKER_H

namespace qel::conformance {

/// Whether this process was started by a Checker to load a plugin. To be asked first in main().
bool isWorker(int argc, char *const *argv);

/// What such a process does instead of its usual work; the value for main() to return.
///
/// When the checker ends early, it closes the instrument and exits.
int runWorker(int argc, char **argv);

} // namespace qel::conformance

#endif
