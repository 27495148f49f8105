#include "commandline.h"

#include "output.h"
#include "terminaltext.h"

#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <unistd.h>

namespace qelctl {

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

// A placeholder such as "KEY=VALUE" or "[FILE]..." in the user's language.
static QString localized(QString placeholder)
{
    static const std::pair<const char *, const char *> words[] = {
        {"COMMAND", "qelctl-placeholder-command"}, {"DEVICE", "qelctl-placeholder-device"},
        {"DIR", "qelctl-placeholder-dir"},         {"DIRECTORY", "qelctl-placeholder-directory"},
        {"FEATURE", "qelctl-placeholder-feature"}, {"FILE", "qelctl-placeholder-file"},
        {"KEY", "qelctl-placeholder-key"},         {"LINK", "qelctl-placeholder-link"},
        {"LOCALE", "qelctl-placeholder-locale"},   {"PATH", "qelctl-placeholder-path"},
        {"SECONDS", "qelctl-placeholder-seconds"}, {"SERIAL", "qelctl-placeholder-serial"},
        {"VALUE", "qelctl-placeholder-value"},
    };
    for (const auto &[word, id] : words) {
        const QRegularExpression whole(QStringLiteral("\\b%1\\b").arg(QLatin1String(word)));
        placeholder.replace(whole, text(id));
    }
    return placeholder;
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
        return fail(
            BadUsage,
            text("qelctl-argument-missing", localized(m_arguments.at(given.size()).name), m_name));
    if (given.size() > maximum)
        return fail(BadUsage, text("qelctl-argument-surplus", given.at(maximum), m_name));
    return std::nullopt;
}

static int pageWidth()
{
    return std::clamp(terminalWidth(dataDescriptor()), narrowestTerminal, 80);
}

// Paragraphs are folded anew, examples stand as they are.
static QString prose(const QString &details)
{
    QStringList lines;
    QStringList paragraph;
    const auto endParagraph = [&] {
        if (!paragraph.isEmpty())
            lines += folded(paragraph.join(QLatin1Char(' ')), pageWidth());
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
        options.append({localized(option.name), text(option.description)});
    QList<QPair<QString, QString>> arguments;
    for (const Entry &argument : m_arguments) {
        usage += QLatin1Char(' ') + localized(argument.name);
        arguments.append({localized(argument.name), text(argument.description)});
    }
    QString help = folded(usage, pageWidth(), 2).join(QLatin1Char('\n')) + QLatin1Char('\n')
        + prose(text(m_details));
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
    const int beside = pageWidth() - width - 4;
    const bool isBeside = beside >= 24; // else the description stands below
    for (const auto &[name, description] : lines) {
        QString left = QStringLiteral("  ") + name;
        const int indent = isBeside ? width + 4 : 6;
        if (!isBeside) {
            section += left + QLatin1Char('\n');
            left.clear();
        }
        const auto parts = folded(description, isBeside ? beside : pageWidth() - indent);
        for (const QString &part : parts) {
            section += left.leftJustified(indent) + part + QLatin1Char('\n');
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
