#include "tool.h"

#include "output.h"
#include "statusline.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/startup.h>

#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace qelctl {

static GlobalOptions &storedOptions()
{
    static GlobalOptions options;
    return options;
}

const GlobalOptions &globalOptions()
{
    return storedOptions();
}

void setGlobalOptions(const GlobalOptions &options)
{
    storedOptions() = options;
}

QString text(const char *id)
{
    return qtTrId(id);
}

// Standard error for whoever follows a run there.
static void printLine(const QByteArray &line)
{
    clearStatus();
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

void complain(const QString &message)
{
    printLine("qelctl: " + message.toUtf8() + '\n');
}

int fail(ExitCode code, const QString &message)
{
    complain(message);
    return code;
}

QString sentence(QString problem)
{
    if (problem.isEmpty())
        return problem;
    problem[0] = problem.at(0).toUpper();
    const bool isOpen = !problem.contains(QLatin1Char('\n')) && !problem.endsWith(QLatin1Char('.'))
        && !problem.endsWith(QLatin1Char('?'));
    return isOpen ? problem + QLatin1Char('.') : problem;
}

static void printLogMessage(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    printLine(QByteArray(context.category) + ": " + message.toUtf8() + '\n');
}

// Everything from `level` on.
static QString rulesFor(const QString &level)
{
    const QStringList levels{QStringLiteral("debug"), QStringLiteral("info"),
                             QStringLiteral("warning")};
    QStringList rules;
    for (int i = 0; i < levels.size(); ++i) {
        const bool enabled = level != QLatin1String("quiet") && i >= levels.indexOf(level);
        rules.append(
            QStringLiteral("qel.devices*.%1=%2")
                .arg(levels.at(i), enabled ? QStringLiteral("true") : QStringLiteral("false")));
    }
    return rules.join(QLatin1Char('\n'));
}

void startLibrary()
{
    const QString log = globalOptions().log;
    qInstallMessageHandler(&printLogMessage);
    QLoggingCategory::setFilterRules(rulesFor(log.isEmpty() ? QStringLiteral("warning") : log));

    const QStringList problems = qel::frontend::startLibrary(globalOptions().pluginFolders);
    for (const QString &problem : problems)
        complain(problem);

    // From here on the tool itself says in one line what the library would log about a device.
    if (log.isEmpty()) {
        QLoggingCategory::setFilterRules(rulesFor(QStringLiteral("warning"))
                                         + QStringLiteral("\nqel.devices.warning=false"));
    }
}

CommandLine::CommandLine(const char *details)
    : m_name(QStringLiteral("qelctl"))
    , m_details(details)
{
    m_parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    addOption({QStringLiteral("h"), QStringLiteral("help")}, "qelctl-option-help");
}

CommandLine::CommandLine(const Command &command)
    : m_name(QStringLiteral("qelctl ") + QString::fromLatin1(command.name))
    , m_details(command.details)
{
    addOption({QStringLiteral("h"), QStringLiteral("help")}, "qelctl-option-help");
}

static QString dashed(const QString &option)
{
    return (option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + option;
}

void CommandLine::addOption(const QStringList &names, const char *description,
                            const QString &valueName)
{
    m_parser.addOption(QCommandLineOption(names, QString(), valueName));
    if (valueName.isEmpty())
        m_flags += names;
    QStringList spellings;
    for (const QString &name : names)
        spellings.append(dashed(name));
    m_options.append(
        {(spellings.join(QStringLiteral(", ")) + QLatin1Char(' ') + valueName).trimmed(),
         description});
}

void CommandLine::addArgument(const QString &name, const char *description)
{
    m_arguments.append({name, description});
}

bool CommandLine::read(const QStringList &arguments)
{
    m_line = arguments;
    return m_parser.parse(arguments);
}

// The parser's own sentences know no German.
QString CommandLine::mistake() const
{
    const QStringList toolOptions{QStringLiteral("plugins"), QStringLiteral("lang"),
                                  QStringLiteral("log"), QStringLiteral("color")};
    const QStringList unknown = m_parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        const QString option = unknown.constFirst();
        return toolOptions.contains(option) ? text("qelctl-option-misplaced", dashed(option))
                                            : text("qelctl-option-unknown", dashed(option), m_name);
    }
    for (const QString &argument : m_line) {
        const QString option = argument.section(QLatin1Char('='), 0, 0);
        if (option != argument && option.startsWith(QLatin1String("--"))
            && m_flags.contains(option.mid(2)))
            return text("qelctl-option-without-value", option, m_name);
    }
    return text("qelctl-option-needs-value", m_line.constLast(), m_name);
}

std::optional<int> CommandLine::parse(const QStringList &arguments, int minimum, int maximum)
{
    const bool understood = read(arguments);
    if (has(QStringLiteral("help")))
        return printData(help().toUtf8());
    if (!understood)
        return fail(BadUsage, mistake());
    const QStringList given = positional();
    if (given.size() < minimum)
        return fail(BadUsage,
                    text("qelctl-argument-missing", m_arguments.at(given.size()).name, m_name));
    if (given.size() > maximum)
        return fail(BadUsage, text("qelctl-argument-surplus", given.at(maximum), m_name));
    return std::nullopt;
}

constexpr int pageWidth = 80;

// `words` in lines of at most `width` characters.
static QStringList folded(const QString &words, int width)
{
    QStringList lines{QString()};
    const QStringList all = words.split(QLatin1Char(' '));
    for (const QString &word : all) {
        QString &line = lines.last();
        if (line.isEmpty())
            line = word;
        else if (line.size() + 1 + word.size() <= width)
            line += QLatin1Char(' ') + word;
        else
            lines.append(word);
    }
    return lines;
}

// Paragraphs are folded anew, examples stand as they are.
static QString prose(const QString &details)
{
    QStringList lines;
    QStringList paragraph;
    const auto endParagraph = [&] {
        if (!paragraph.isEmpty())
            lines += folded(paragraph.join(QLatin1Char(' ')), pageWidth);
        paragraph.clear();
    };
    const QStringList all = details.split(QLatin1Char('\n'));
    for (const QString &line : all) {
        if (!line.isEmpty() && !line.startsWith(QLatin1Char(' '))) {
            paragraph.append(line);
            continue;
        }
        endParagraph();
        lines.append(line);
    }
    endParagraph();
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString CommandLine::help() const
{
    QString usage = text("qelctl-usage", m_name);
    QList<QPair<QString, QString>> options;
    for (const Entry &option : m_options)
        options.append({option.name, text(option.description)});
    QList<QPair<QString, QString>> arguments;
    for (const Entry &argument : m_arguments) {
        usage += QLatin1Char(' ') + argument.name;
        arguments.append({argument.name, text(argument.description)});
    }
    QString help = usage + QLatin1Char('\n') + prose(text(m_details));
    if (!arguments.isEmpty())
        help += helpSection(text("qelctl-arguments"), arguments);
    return help + helpSection(text("qelctl-options"), options);
}

QString helpSection(const QString &title, const QList<QPair<QString, QString>> &lines)
{
    int width = 0;
    for (const auto &line : lines)
        width = std::max(width, line.first.size());
    QString section = QLatin1Char('\n') + title + QLatin1Char('\n');
    for (const auto &[name, description] : lines) {
        QString left = name;
        const auto parts = folded(description, pageWidth - width - 4);
        for (const QString &part : parts) {
            section +=
                QStringLiteral("  ") + left.leftJustified(width + 2) + part + QLatin1Char('\n');
            left.clear();
        }
    }
    return section;
}

bool CommandLine::has(const QString &option) const
{
    return m_parser.isSet(option);
}

QString CommandLine::value(const QString &option) const
{
    return m_parser.value(option);
}

QStringList CommandLine::values(const QString &option) const
{
    return m_parser.values(option);
}

QStringList CommandLine::positional() const
{
    return m_parser.positionalArguments();
}

std::optional<int> readCount(const QString &option, const QString &value, int minimum)
{
    bool ok = false;
    const int count = value.toInt(&ok);
    if (ok && count >= minimum)
        return count;
    complain(text("qelctl-not-a-count", option, value, QString::number(minimum)));
    return std::nullopt;
}

std::optional<int> readSeconds(const QString &option, const QString &value, int minimum)
{
    bool ok = false;
    const double seconds = QLocale::c().toDouble(value, &ok);
    const double milliseconds = std::ceil(seconds * 1000);
    if (ok && milliseconds >= minimum && milliseconds <= std::numeric_limits<int>::max())
        return int(milliseconds);
    complain(text("qelctl-not-a-time", option, value));
    return std::nullopt;
}

} // namespace qelctl
