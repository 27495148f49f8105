#ifndef QELCTL_COMMANDLINE_H
#define QELCTL_COMMANDLINE_H

#include "tool.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QList>
#include <QtCore/QPair>

#include <optional>

namespace qelctl {

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
