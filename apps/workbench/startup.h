#ifndef QELWORKBENCH_STARTUP_H
#define QELWORKBENCH_STARTUP_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

class QCoreApplication;

namespace qelworkbench {

/// What the command line says.
struct CommandLine
{
    QString scenario;    ///< a file that describes simulated instruments; empty for none
    QString folder;      ///< of the history; empty for the operator's own
    QString language;    ///< "de" or "en"; empty for the remembered one or the system's
    QStringList plugins; ///< folders searched for drivers in addition
};

/// Reads the command line. With --help and --version, and when it is wrong, it is answered and the
/// program ends with the exit code in `exitCode`.
std::optional<CommandLine> readCommandLine(const QCoreApplication &application, int *exitCode);

/// Makes the library ready: logging, plugins, catalogues.
void startLibrary(const CommandLine &line);

} // namespace qelworkbench

#endif
