#ifndef QELCTL_TOOL_H
#define QELCTL_TOOL_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The command line tool: one file a command, and what the commands share.
namespace qelctl {

/// How the process ends. Scripts rely on these.
enum ExitCode {
    Done = 0,
    RunFailed = 1,     ///< the run was refused, or something was not as it should be
    BadUsage = 2,      ///< the command line is wrong
    NoSuchDevice = 3,  ///< no such device or feature
    CannotOpen = 4,    ///< the device cannot be opened
    DeviceFailed = 5,  ///< the device reports an error
    TimedOut = 6,      ///< no answer within the time allowed
    AbortedByUser = 7, ///< a request for user action was turned down
    CannotWrite = 8,   ///< the output cannot be written
    Incomplete = 9,    ///< nothing is wrong, but not all could be judged
    DriverFailed = 10, ///< a driver has crashed, or has ended the process or its event loop
    Interrupted = 130, ///< Ctrl-C
};

/// When to colour what is printed.
enum class Color { Auto, Always, Never };

/// What stands before the command on the command line.
struct GlobalOptions
{
    QStringList pluginFolders; ///< searched for plugins in addition; their drivers take precedence
    QString language;          ///< empty: the system's
    QString log;               ///< quiet, warning, info or debug; empty: what concerns the user
    Color color = Color::Auto;
};

/// One command of the tool.
struct Command
{
    const char *name;
    const char *summary; ///< translation id of one line about it
    const char *details; ///< translation id of the text above the options in its help
    /// Carries the command out; `arguments` begin with its name.
    /// @return an ExitCode
    int (*run)(const QStringList &arguments);
};

/// What the command line says before its command. Valid from the start of a command on.
const GlobalOptions &globalOptions();
void setGlobalOptions(const GlobalOptions &options);

/// The sentence `id` of the tool's catalogue, with `arguments` in the places %1, %2 and so on.
QString text(const char *id);
template<typename... Texts>
QString text(const char *id, const Texts &...arguments)
{
    return text(id).arg(arguments...);
}

/// Prints a message of `origin` on standard error. Whatever it holds, a terminal only shows it, and
/// no line of it looks like another message.
void printMessage(const QString &origin, const QString &message);

/// Prints a message of the tool.
void complain(const QString &message);

/// What complain() has printed last; empty when nothing.
QString lastComplaint();

/// As complain(), and returns `code`: for the last line of a command that fails.
int fail(ExitCode code, const QString &message);

} // namespace qelctl

#endif
