#include "commands.h"
#include "interrupt.h"
#include "output.h"
#include "tool.h"
#include "watchdog.h"

#include <qelfrontend/frontend.h>
#include <worker.h>

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <csignal>

namespace qelctl {

static const Command *const commands[] = {
    &driversCommand, &listCommand,    &showCommand,       &runCommand,
    &watchCommand,   &doctorCommand,  &checkCommand,      &newDriverCommand,
    &connectCommand, &serversCommand, &disconnectCommand, &resultsCommand,
};

// The environment is read here because the system's locale is a twentieth of the start-up to set
// up.
static QString systemLanguage()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty())
            return value;
    }
    return qEnvironmentVariable("LANG");
}

// Every catalogue there is speaks German or English, so everybody else reads English.
static QLocale locale(const QString &language)
{
    const QString wanted = (language.isEmpty() ? systemLanguage() : language).toLower();
    const bool isGerman =
        wanted.startsWith(QLatin1String("de")) && (wanted.size() == 2 || !wanted.at(2).isLetter());
    return QLocale(isGerman ? QLocale::German : QLocale::English);
}

// What the library of a command says in English, its rules for instance, has its translations in a
// catalogue of its own, in which the English text is the id.
static const char *const catalogues[] = {"qelctl", "findings", "rules"};

static void useLanguage(const QString &language)
{
    const QLocale chosen = locale(language);
    QLocale::setDefault(chosen);
    qel::frontend::installTranslations(chosen);
    for (const char *name : catalogues) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(chosen, QString::fromLatin1(name), QStringLiteral("_"),
                             QStringLiteral(":/qel/qelctl")))
            QCoreApplication::installTranslator(translator);
    }
}

static std::optional<Color> readColor(const QString &value)
{
    const QStringList names{QStringLiteral("auto"), QStringLiteral("always"),
                            QStringLiteral("never")};
    const int index = value.isEmpty() ? 0 : names.indexOf(value);
    return index >= 0 ? std::optional(Color(index)) : std::nullopt;
}

static void declare(CommandLine *line)
{
    line->addOption({QStringLiteral("v"), QStringLiteral("version")}, "qelctl-option-version");
    line->addOption({QStringLiteral("plugins")}, "qelctl-option-plugins", QStringLiteral("DIR"));
    line->addOption({QStringLiteral("lang")}, "qelctl-option-lang", QStringLiteral("LOCALE"));
    line->addOption({QStringLiteral("log")}, "qelctl-option-log",
                    QStringLiteral("quiet|warning|info|debug"));
    line->addOption({QStringLiteral("color")}, "qelctl-option-color",
                    QStringLiteral("auto|always|never"));
    line->addArgument(QStringLiteral("COMMAND"), "qelctl-argument-command");
}

static QByteArray help(const CommandLine &line)
{
    QList<QPair<QString, QString>> summaries;
    for (const Command *command : commands)
        summaries.append({QString::fromLatin1(command->name), text(command->summary)});
    return (line.help() + helpSection(text("qelctl-commands"), summaries)).toUtf8();
}

static int runCommandNamed(const QStringList &arguments)
{
    QStringList names;
    for (const Command *command : commands) {
        names.append(QString::fromLatin1(command->name));
        if (names.constLast() == arguments.constFirst())
            return command->run(arguments);
    }
    return fail(
        BadUsage,
        text("qelctl-no-such-command", arguments.constFirst(), names.join(QStringLiteral(", "))));
}

// Done, or the exit code after a complaint.
static int readGlobalOptions(const CommandLine &line)
{
    GlobalOptions options;
    // Absolute, because a plugin with a relative path is sought elsewhere.
    const QStringList folders = line.values(QStringLiteral("plugins"));
    for (const QString &folder : folders)
        options.pluginFolders.append(QDir(folder).absolutePath());
    options.language = line.value(QStringLiteral("lang"));
    options.log = line.value(QStringLiteral("log"));
    const QStringList levels{QString(), QStringLiteral("quiet"), QStringLiteral("warning"),
                             QStringLiteral("info"), QStringLiteral("debug")};
    if (!levels.contains(options.log))
        return fail(BadUsage, text("qelctl-no-such-level", options.log));
    const QString color = line.value(QStringLiteral("color"));
    const auto knownColor = readColor(color);
    if (!knownColor)
        return fail(BadUsage, text("qelctl-no-such-color", color));
    options.color = *knownColor;
    setGlobalOptions(options);
    return Done;
}

static int runTool(const QCoreApplication &application)
{
    CommandLine line("qelctl-details");
    declare(&line);
    const bool understood = line.read(application.arguments());
    useLanguage(line.value(QStringLiteral("lang")));
    if (!understood)
        return fail(BadUsage, line.mistake());
    if (const int code = readGlobalOptions(line); code != Done)
        return code;
    if (line.has(QStringLiteral("version")))
        return printData("qelctl " + qel::devices::version().toUtf8() + '\n');
    if (line.has(QStringLiteral("help")))
        return printData(help(line));
    if (line.positional().isEmpty())
        return fail(BadUsage, text("qelctl-no-command"));
    return runCommandNamed(line.positional());
}

} // namespace qelctl

int main(int argc, char *argv[])
{
    // "check" and "doctor" load plugins into processes of their own, made of this program.
    if (qel::conformance::isWorker(argc, argv))
        return qel::conformance::runWorker(argc, argv);
    if (qelctl::isLoadTrial(argc, argv))
        return qelctl::runLoadTrial(argc, argv);
    // A reader that has gone is an error like any other: it is reported when writing fails.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // so is a file that has grown as large as it may
    qelctl::takeStandardOutput();
    qelctl::catchInterrupts();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qelctl"));
    const int code = qelctl::runTool(application);
    qelctl::toolHasEnded();
    return code;
}
