#include "startup.h"

#include "log.h"
#include "text.h"

#include <qelfrontend/startup.h>

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>

#include <cstdio>

namespace qelworkbench {

static int complain(const QString &problem)
{
    std::fprintf(stderr, "qelworkbench: %s\n", qPrintable(problem));
    return 2;
}

std::optional<CommandLine> readCommandLine(const QCoreApplication &application, int *exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(text("qelworkbench-details"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  text("qelworkbench-option-help"));
    const QCommandLineOption versionOption({QStringLiteral("v"), QStringLiteral("version")},
                                           text("qelworkbench-option-version"));
    const QCommandLineOption scenario(QStringLiteral("scenario"),
                                      text("qelworkbench-option-scenario"), QStringLiteral("FILE"));
    const QCommandLineOption folder(QStringLiteral("folder"), text("qelworkbench-option-folder"),
                                    QStringLiteral("DIR"));
    const QCommandLineOption language(QStringLiteral("lang"), text("qelworkbench-option-lang"),
                                      QStringLiteral("de|en"));
    const QCommandLineOption plugins(QStringLiteral("plugins"), text("qelworkbench-option-plugins"),
                                     QStringLiteral("DIR"));
    parser.addOptions({help, versionOption, scenario, folder, language, plugins});
    *exitCode = 0;
    if (!parser.parse(application.arguments())) {
        *exitCode = complain(parser.errorText());
        return {};
    }
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toUtf8().constData(), stdout);
        return {};
    }
    if (parser.isSet(versionOption)) {
        std::printf("qelworkbench %s\n", qPrintable(qel::devices::version()));
        return {};
    }
    if (!parser.positionalArguments().isEmpty()) {
        *exitCode = complain(
            text("qelworkbench-unexpected-argument", parser.positionalArguments().constFirst()));
        return {};
    }
    CommandLine line;
    if (parser.isSet(scenario)) {
        line.scenario = QFileInfo(parser.value(scenario)).absoluteFilePath();
        QFile file(line.scenario);
        if (!file.open(QIODevice::ReadOnly)) {
            *exitCode = complain(
                text("qelworkbench-cannot-read", parser.value(scenario), file.errorString()));
            return {};
        }
    }
    if (parser.isSet(folder))
        line.folder = QDir(parser.value(folder)).absolutePath();
    line.language = parser.value(language);
    const QStringList folders = parser.values(plugins);
    for (const QString &one : folders)
        line.plugins.append(QDir(one).absolutePath());
    return line;
}

void startLibrary(const CommandLine &line)
{
    Log::instance();
    QLoggingCategory::setFilterRules(QStringLiteral("qel.*.info=true\nqel.*.debug=true"));
    if (!line.scenario.isEmpty())
        qputenv("QELDEVICES_SIMULATOR", QFile::encodeName(line.scenario));
    const QStringList problems = qel::frontend::startLibrary(line.plugins);
    for (const QString &problem : problems)
        qWarning().noquote() << problem;
}

} // namespace qelworkbench
