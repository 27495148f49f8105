#include "commands.h"
#include "listing.h"
#include "output.h"

#include <qelfrontend/frontend.h>

#include <qelinspection/inspection.h>
#include <qelinspection/loadtrial.h>

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QLibraryInfo>

#include <algorithm>
#include <limits>
#include <utility>

namespace qelctl {

using namespace qel::inspection;

namespace {

// What the tool says to itself to have plugins loaded in another process.
const char trialArgument[] = "--serve-load-trial";

struct Diagnosis
{
    QVector<FolderReport> folders;
    QVector<FileReport> files;

    QVector<FileReport *> reports()
    {
        QVector<FileReport *> all;
        for (FolderReport &folder : folders) {
            for (FileReport &file : folder.files)
                all.append(&file);
        }
        for (FileReport &file : files)
            all.append(&file);
        return all;
    }
};

// The files that the user names may come from anywhere: they are never loaded.
Diagnosis diagnoseNamed(const QStringList &paths)
{
    Diagnosis diagnosis;
    for (const QString &path : paths) {
        if (QFileInfo(path).isDir())
            diagnosis.folders.append(inspectFolder(QDir::cleanPath(path)));
        else
            diagnosis.files.append(inspectFile(path));
    }
    markLikelyShadowed(diagnosis.reports());
    return diagnosis;
}

// The plugins that every application, this tool included, loads anyway.
Diagnosis diagnoseInstalled()
{
    Diagnosis diagnosis;
    // Drivers from folders that the user adds take precedence, as if they were loaded last.
    const auto folders = pluginFolders() + globalOptions().pluginFolders;
    for (const QString &folder : folders)
        diagnosis.folders.append(inspectFolder(folder));

    tryLoading(&diagnosis.folders, QCoreApplication::applicationFilePath(),
               {QString::fromLatin1(trialArgument)});
    return diagnosis;
}

QString verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Usable:
        return QStringLiteral("usable");
    case Verdict::UsableWithWarnings:
        return QStringLiteral("usable-with-warnings");
    case Verdict::NotUsable:
        break;
    }
    return QStringLiteral("not-usable");
}

QJsonArray toJson(const QVector<FileFinding> &findings)
{
    QJsonArray json;
    for (const FileFinding &finding : findings) {
        const bool isProblem = finding.severity == FileFinding::Severity::Problem;
        json.append(QJsonObject{
            {QStringLiteral("code"), finding.code},
            {QStringLiteral("severity"),
             isProblem ? QStringLiteral("problem") : QStringLiteral("warning")},
            {QStringLiteral("text"), finding.text.english()},
            {QStringLiteral("remedy"), finding.remedy.english()},
        });
    }
    return json;
}

QJsonObject toJson(const PluginDescription &plugin)
{
    return {{QStringLiteral("interface"), plugin.interfaceId},
            {QStringLiteral("class"), plugin.className},
            {QStringLiteral("qt"), QStringLiteral("%1.%2").arg(plugin.qtMajor).arg(plugin.qtMinor)},
            {QStringLiteral("metaData"), plugin.metaData}};
}

QJsonObject toJson(const FileReport &report)
{
    QJsonArray libraries;
    for (const LibraryDependency &dependency : report.dependencies) {
        libraries.append(QJsonObject{
            {QStringLiteral("name"), dependency.name},
            {QStringLiteral("path"),
             dependency.path.isEmpty() ? QJsonValue() : QJsonValue(dependency.path)},
            {QStringLiteral("neededBy"), dependency.neededBy},
        });
    }
    QJsonObject json{{QStringLiteral("file"), report.path},
                     {QStringLiteral("verdict"), verdictName(report.verdict())},
                     {QStringLiteral("findings"), toJson(report.findings)},
                     {QStringLiteral("libraries"), libraries},
                     {QStringLiteral("drivers"), QJsonArray::fromStringList(report.drivers)}};
    if (report.plugin.qtMajor != 0)
        json.insert(QStringLiteral("plugin"), toJson(report.plugin));
    return json;
}

QJsonArray toJson(const QVector<FileReport> &reports)
{
    QJsonArray json;
    for (const FileReport &report : reports)
        json.append(toJson(report));
    return json;
}

QByteArray asJson(const Diagnosis &diagnosis)
{
    QJsonArray folders;
    for (const FolderReport &folder : diagnosis.folders) {
        folders.append(QJsonObject{{QStringLiteral("folder"), folder.path},
                                   {QStringLiteral("exists"), folder.exists},
                                   {QStringLiteral("files"), toJson(folder.files)}});
    }
    QJsonObject json = document(QStringLiteral("qelctl-doctor"));
    json.insert(QStringLiteral("library"), qel::devices::version());
    json.insert(QStringLiteral("qt"), QLibraryInfo::version().toString());
    json.insert(QStringLiteral("folders"), folders);
    json.insert(QStringLiteral("files"), toJson(diagnosis.files));
    return indented(json);
}

QString translated(const char *english)
{
    return text(english);
}

QStringList asLines(const FileReport &report, const QString &name)
{
    QString verdict;
    switch (report.verdict()) {
    case Verdict::Usable:
        verdict = text("qelctl-doctor-usable");
        break;
    case Verdict::UsableWithWarnings:
        verdict = text("qelctl-doctor-usable-with-warnings");
        break;
    case Verdict::NotUsable:
        verdict = text("qelctl-doctor-not-usable");
        break;
    }
    QString line = name + QStringLiteral(": ") + verdict;
    if (!report.drivers.isEmpty())
        line += QStringLiteral(" (%1)").arg(report.drivers.join(QStringLiteral(", ")));
    QStringList lines{line};
    for (const FileFinding &finding : report.findings) {
        lines.append(QStringLiteral("    ") + finding.text.in(translated));
        lines.append(QStringLiteral("    -> ") + finding.remedy.in(translated));
    }
    return lines;
}

QByteArray asText(const Diagnosis &diagnosis)
{
    QStringList lines;
    for (const FolderReport &folder : diagnosis.folders) {
        if (!folder.exists)
            lines.append(text("qelctl-doctor-no-folder", folder.path));
        else if (folder.files.isEmpty())
            lines.append(text("qelctl-doctor-empty-folder", folder.path));
        else
            lines.append(text("qelctl-doctor-folder", folder.path));
        for (const FileReport &file : folder.files) {
            const auto fileLines = asLines(file, file.path.mid(folder.path.size() + 1));
            for (const QString &line : fileLines)
                lines.append(QStringLiteral("  ") + line);
        }
    }
    for (const FileReport &file : diagnosis.files)
        lines += asLines(file, file.path);
    QByteArray printed;
    for (const QString &line : std::as_const(lines))
        printed += qel::frontend::printable(line).toUtf8() + '\n';
    return printed;
}

int run(const QStringList &arguments)
{
    CommandLine line(doctorCommand);
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    line.addArgument(QStringLiteral("[PATH...]"), "qelctl-doctor-argument");
    if (const auto ended = line.parse(arguments, 0, std::numeric_limits<int>::max()))
        return *ended;

    const QStringList named = line.positional();
    Diagnosis diagnosis = named.isEmpty() ? diagnoseInstalled() : diagnoseNamed(named);
    const int printed =
        printData(line.has(QStringLiteral("json")) ? asJson(diagnosis) : asText(diagnosis));
    if (printed != Done)
        return printed;
    const auto reports = diagnosis.reports();
    const bool isUsable = std::all_of(reports.cbegin(), reports.cend(), [](const FileReport *r) {
        return r->verdict() != Verdict::NotUsable;
    });
    return isUsable ? Done : RunFailed;
}

} // namespace

bool isLoadTrial(int argc, char *const *argv)
{
    return argc == 2 && qstrcmp(argv[1], trialArgument) == 0;
}

int runLoadTrial(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return serveLoadTrial();
}

const Command doctorCommand{"doctor", "qelctl-doctor-summary", "qelctl-doctor-details", &run};

} // namespace qelctl
