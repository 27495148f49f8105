#ifndef QELCTL_TOOL_H
#define QELCTL_TOOL_H

#include <QtCore/QCommandLineParser>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

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

/// Applies the language and the log level of the global options, and makes the library ready.
void startLibrary();

/// Prints a line on standard error, after the tool's name.
void complain(const QString &message);

/// Half a sentence such as "there is no setting" as a whole one: a capital in front, a full stop
/// behind, unless a list follows.
QString sentence(QString problem);

/// As complain(), and returns `code`: for the last line of a command that fails.
int fail(ExitCode code, const QString &message);

/// The command line of one command, or of the tool itself up to the command: knows --help, parses,
/// checks the number of positional arguments.
class CommandLine
{
public:
    /// What comes before the command: the first positional argument and all behind it are left to
    /// the command.
    explicit CommandLine(const char *details);
    explicit CommandLine(const Command &command);

    /// Declares an option; the description is a translation id. An option with a `valueName` takes
    /// a value.
    void addOption(const QStringList &names, const char *description,
                   const QString &valueName = QString());
    /// Declares a positional argument, such as "DEVICE" or "[FILE]...".
    void addArgument(const QString &name, const char *description);

    /// Parses. An exit code when the command ends here, with help or a complaint printed.
    std::optional<int> parse(const QStringList &arguments, int minimum, int maximum);

    /// Parses without a word. False when something is wrong.
    bool read(const QStringList &arguments);
    /// What read() has found to be wrong.
    QString mistake() const;

    bool has(const QString &option) const;
    QString value(const QString &option) const;
    QStringList values(const QString &option) const;
    QStringList positional() const;

    /// What --help prints.
    QString help() const;

private:
    struct Entry
    {
        QString name;
        const char *description; // translation id
    };

    QCommandLineParser m_parser;
    QString m_name; // as the user types it, such as "qelctl run"
    const char *m_details;
    QList<Entry> m_options;
    QList<Entry> m_arguments;
    QStringList m_flags; // the options without a value
    QStringList m_line;  // what was parsed
};

/// A title above lines of two columns, the second one folded at the width of a page.
QString helpSection(const QString &title, const QList<QPair<QString, QString>> &lines);

/// The whole number from `minimum` on in `value`; nothing, with a complaint printed, when it is
/// none.
std::optional<int> readCount(const QString &option, const QString &value, int minimum);

/// The time in `value`, written in seconds such as "90" or "0.5", in milliseconds, at least
/// `minimum` of them. Nothing, with a complaint printed, when it is none.
std::optional<int> readSeconds(const QString &option, const QString &value, int minimum);

} // namespace qelctl

#endif
