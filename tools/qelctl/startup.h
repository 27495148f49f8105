#ifndef QELCTL_STARTUP_H
#define QELCTL_STARTUP_H

namespace qelctl {

/// Applies the log level and the plugin folders of the global options, and makes the library ready.
void startLibrary();

} // namespace qelctl

#endif
