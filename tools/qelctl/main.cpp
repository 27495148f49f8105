#include "commands.h"
#include "output.h"
#include "tool.h"

#include <frontend.h>

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <csignal>

namespace qelctl {

static const Command *const commands[] = {
    &driversCommand, &listCommand, &showCommand, &runCommand, &watchCommand, &doctorCommand,
};

// Every catalogue there is speaks German or English, so everybody else reads English.
static QLocale locale(const QString &language)
{
    const QLocale wanted = language.isEmpty() ? QLocale::system() : QLocale(language);
    return wanted.language() == QLocale::German ? wanted : QLocale(QLocale::English);
}

static void useLanguage(const QString &language, QTranslator *translator)
{
    const QLocale chosen = locale(language);
    QLocale::setDefault(chosen);
    qel::frontend::installTranslations(chosen);
    if (translator->load(chosen, QStringLiteral("qelctl"), QStringLiteral("_"),
                         QStringLiteral(":/qel/qelctl")))
        QCoreApplication::installTranslator(translator);
}

static std::optional<Color> readColor(const QString &value)
{
    const QStringList names{QStringLiteral("auto"), QStringLiteral("always"),
                            QStringLiteral("never")};
    const int index = value.isEmpty() ? 0 : names.indexOf(value);
    return index >= 0 ? std::optional(Color(index)) : std::nullopt;
}

static void declare(QCommandLineParser *parser)
{
    parser->setApplicationDescription(text("qelctl-details"));
    parser->setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser->addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, text("qelctl-option-help")},
        {{QStringLiteral("v"), QStringLiteral("version")}, text("qelctl-option-version")},
        {QStringLiteral("plugins"), text("qelctl-option-plugins"), QStringLiteral("DIR")},
        {QStringLiteral("lang"), text("qelctl-option-lang"), QStringLiteral("LOCALE")},
        {QStringLiteral("log"), text("qelctl-option-log"),
         QStringLiteral("quiet|warning|info|debug")},
        {QStringLiteral("color"), text("qelctl-option-color"), QStringLiteral("auto|always|never")},
    });
    parser->addPositionalArgument(QStringLiteral("COMMAND"), text("qelctl-argument-command"),
                                  QStringLiteral("COMMAND"));
}

static QByteArray help(const QCommandLineParser &parser)
{
    QString lines = parser.helpText();
    lines.replace(QCoreApplication::arguments().constFirst(), QStringLiteral("qelctl"));
    lines += QLatin1Char('\n') + text("qelctl-commands") + QLatin1Char('\n');
    for (const Command *command : commands) {
        lines += QStringLiteral("  ") + QString::fromLatin1(command->name).leftJustified(12)
            + text(command->summary) + QLatin1Char('\n');
    }
    return lines.toLocal8Bit();
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

static int runTool(const QCoreApplication &application)
{
    QTranslator translator;
    useLanguage(QString(), &translator);
    QCommandLineParser parser;
    declare(&parser);
    const bool parsed = parser.parse(application.arguments());
    if (!parsed)
        return fail(BadUsage,
                    text("qelctl-usage-error", parser.errorText(), QString()).simplified());

    GlobalOptions options;
    // Absolute, because a plugin with a relative path is sought elsewhere.
    const QStringList folders = parser.values(QStringLiteral("plugins"));
    for (const QString &folder : folders)
        options.pluginFolders.append(QDir(folder).absolutePath());
    options.language = parser.value(QStringLiteral("lang"));
    options.log = parser.value(QStringLiteral("log"));
    if (!options.language.isEmpty())
        useLanguage(options.language, &translator);
    const QStringList levels{QString(), QStringLiteral("quiet"), QStringLiteral("warning"),
                             QStringLiteral("info"), QStringLiteral("debug")};
    if (!levels.contains(options.log))
        return fail(BadUsage, text("qelctl-no-such-level", options.log));
    const auto color = readColor(parser.value(QStringLiteral("color")));
    if (!color)
        return fail(BadUsage, text("qelctl-no-such-color", parser.value(QStringLiteral("color"))));
    options.color = *color;
    setGlobalOptions(options);

    if (parser.isSet(QStringLiteral("version")))
        return printData("qelctl " + qel::devices::version().toLocal8Bit() + '\n');
    if (parser.isSet(QStringLiteral("help"))) {
        QCommandLineParser translated; // --lang may have changed the language since
        declare(&translated);
        return printData(help(translated));
    }
    if (parser.positionalArguments().isEmpty())
        return fail(BadUsage, text("qelctl-no-command"));
    return runCommandNamed(parser.positionalArguments());
}

} // namespace qelctl

int main(int argc, char *argv[])
{
    // A reader that has gone is an error like any other: it is reported when writing fails.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qelctl"));
    return qelctl::runTool(application);
}
