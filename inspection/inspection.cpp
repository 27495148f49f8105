#include "inspection.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QCborMap>
#include <QtCore/QCborValue>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtCore/QSet>
#include <QtCore/QVersionNumber>

#include <algorithm>
#include <utility>

namespace qel::inspection {

Verdict FileReport::verdict() const
{
    const bool unusable =
        std::any_of(findings.cbegin(), findings.cend(), [](const FileFinding &finding) {
            return finding.severity == FileFinding::Severity::Problem;
        });
    if (unusable)
        return Verdict::NotUsable;
    return findings.isEmpty() ? Verdict::Usable : Verdict::UsableWithWarnings;
}

void FileReport::addProblem(const QString &code, const Sentence &text, const Sentence &remedy)
{
    findings.append({FileFinding::Severity::Problem, code, text, remedy});
}

void FileReport::addWarning(const QString &code, const Sentence &text, const Sentence &remedy)
{
    findings.append({FileFinding::Severity::Warning, code, text, remedy});
}

bool FileReport::has(const QString &code) const
{
    return std::any_of(findings.cbegin(), findings.cend(),
                       [&](const FileFinding &finding) { return finding.code == code; });
}

namespace {

// Qt's metadata section: a signature, the version of its form, two bytes of Qt version, one of
// flags, then a map in CBOR whose keys are small numbers.
constexpr char signature[] = "QTMETADATA ";
constexpr int headerSize = 16;
enum MetaDataKey { InterfaceKey = 2, ClassKey = 3, ValuesKey = 4 };

void addNotAPlugin(FileReport *report, const Sentence &text)
{
    report->addProblem(
        QStringLiteral("not-a-qt-plugin"), text,
        "If it is a driver's helper library, move it out of the plugin folder; if it is a driver, "
        "give its root class Q_PLUGIN_METADATA.");
}

void addOtherQt(FileReport *report, const Sentence &builtFor)
{
    report->addProblem(QStringLiteral("other-qt"),
                       {"It is built for Qt %1, this library uses Qt %2.",
                        {builtFor, QLibraryInfo::version().toString()}},
                       {"Install the driver that is built for Qt %1.%2, or build it again.",
                        {QString::number(QLibraryInfo::version().majorVersion()),
                         QString::number(QLibraryInfo::version().minorVersion())}});
}

bool readValues(const QByteArray &encoded, PluginDescription *plugin)
{
    QCborParserError error;
    const QCborValue decoded = QCborValue::fromCbor(encoded, &error);
    if (error.error != QCborError::NoError || !decoded.isMap())
        return false;
    const QCborMap map = decoded.toMap();
    plugin->interfaceId = map.value(InterfaceKey).toString();
    plugin->className = map.value(ClassKey).toString();
    plugin->metaData = map.value(ValuesKey).toMap().toJsonObject();
    return true;
}

void inspectQtVersion(FileReport *report)
{
    const PluginDescription &plugin = report->plugin;
    const QVersionNumber ours = QLibraryInfo::version();
    // Qt loads plugins of its own or an older minor version. Debug and release builds mix freely
    // on this platform.
    if (plugin.qtMajor != ours.majorVersion() || plugin.qtMinor > ours.minorVersion())
        addOtherQt(report, QStringLiteral("%1.%2").arg(plugin.qtMajor).arg(plugin.qtMinor));
}

// False when the file is no Qt plugin that could be looked into any further.
bool inspectMetaData(const SharedLibrary &library, FileReport *report)
{
    if (!library.hasMetaDataSection) {
        if (library.hasNewerMetaDataNote)
            addOtherQt(report, QStringLiteral("6"));
        else
            addNotAPlugin(report, "It is a shared library, but not a Qt plugin.");
        return false;
    }
    const int start = library.metaData.indexOf(signature);
    const QByteArray metaData = start < 0 ? QByteArray() : library.metaData.mid(start);
    const int form = int(qstrlen(signature));
    if (metaData.size() > form && metaData.at(form) == ' ') {
        addOtherQt(report, "5.12 or older");
        return false;
    }
    if (metaData.size() < headerSize || metaData.at(form) != '!' || metaData.at(form + 1) != 0) {
        addNotAPlugin(report, "Its Qt plugin metadata is of an unknown form.");
        return false;
    }
    report->plugin.qtMajor = uchar(metaData.at(form + 2));
    report->plugin.qtMinor = uchar(metaData.at(form + 3));
    if (!readValues(metaData.mid(headerSize), &report->plugin)) {
        addNotAPlugin(report, "Its Qt plugin metadata is damaged.");
        return false;
    }
    inspectQtVersion(report);
    return true;
}

// True when the plugin, or a library of its maker's that it takes its root class from, knows the
// interface. The library of the interface knows it always.
bool implementsInterface(const SharedLibrary &library, const FileReport &report)
{
    const QByteArray name = QByteArrayLiteral(QelDevicePlugin_iid);
    if (containsText(report.path, library, name))
        return true;
    return std::any_of(report.dependencies.cbegin(), report.dependencies.cend(),
                       [&](const LibraryDependency &dependency) {
                           return !dependency.path.isEmpty()
                               && !dependency.name.startsWith(QLatin1String("libqeldevices.so"))
                               && containsText(dependency.path,
                                               readSharedLibrary(dependency.path).library, name);
                       });
}

// The library casts the root object and does not look at the metadata's interface id. What decides
// is therefore whether the code knows the interface.
void inspectInterface(const SharedLibrary &library, FileReport *report)
{
    const QString expected = QStringLiteral(QelDevicePlugin_iid);
    const QString stated = report->plugin.interfaceId;
    const char *remedy =
        "If it is a driver, give its root class Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) "
        "and Q_INTERFACES(qel::devices::DevicePlugin).";
    const Sentence otherInterface("Its metadata names the interface \"%1\"; that of drivers is "
                                  "\"%2\".",
                                  {stated, expected});
    if (implementsInterface(library, *report)) {
        if (stated != expected) {
            report->addWarning(QStringLiteral("wrong-interface"), otherInterface, remedy);
        }
    } else if (stated == expected) {
        report->addProblem(QStringLiteral("interface-not-listed"),
                           "Its metadata names the right interface, but its root class does not "
                           "implement it.",
                           remedy);
    } else {
        report->addProblem(QStringLiteral("wrong-interface"), otherInterface,
                           "Install it where it belongs; if it is a driver, give its root class "
                           "Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) and "
                           "Q_INTERFACES(qel::devices::DevicePlugin).");
    }
}

void inspectKeys(FileReport *report)
{
    QStringList lacking;
    for (const char *key : {"manufacturer", "url", "resource-id", "version"}) {
        if (!report->plugin.metaData.value(QLatin1String(key)).isString())
            lacking.append(QStringLiteral("\"%1\"").arg(QLatin1String(key)));
    }
    if (lacking.isEmpty())
        return;
    report->addWarning(QStringLiteral("missing-metadata"),
                       {"Its metadata lacks the string %1; applications will see it empty.",
                        {lacking.join(QStringLiteral(", "))}},
                       "Add it to the driver's metadata file and build it again.");
}

void inspectDependencies(const SharedLibrary &library, FileReport *report)
{
    // Qt loads a plugin by its canonical path, from which "$ORIGIN" is taken.
    const QString path = QFileInfo(report->path).canonicalFilePath();
    const LibrarySearch::Result found = LibrarySearch().resolve(path, library);
    report->dependencies = found.dependencies;
    for (const LibraryDependency &dependency : found.dependencies) {
        if (!dependency.path.isEmpty())
            continue;
        const char *text = dependency.neededBy == path
            ? "It needs the library %1, which is not installed."
            : "It needs the library %1, which %2 needs, which is not installed.";
        report->addProblem(QStringLiteral("missing-library"),
                           {text, {dependency.name, dependency.neededBy}},
                           {"Install the package that holds %1, or put the library where the "
                            "driver looks for it.",
                            {dependency.name}});
    }
    for (const MissingVersion &missing : found.missingVersions) {
        report->addProblem(
            QStringLiteral("older-library"),
            {missing.neededBy == path ? "It needs \"%2\", which the installed %3 does not have."
                                      : "%1 needs \"%2\", which the installed %3 does not have.",
             {missing.neededBy, missing.version, missing.library}},
            "Build the driver on this system, or install a newer version of the library.");
    }
}

// What the scan passes over, if somebody may expect it to be a driver.
bool reportPassedOver(const QFileInfo &entry, bool isHidden, FileReport *report)
{
    report->path = entry.filePath();
    if (entry.isSymLink() && entry.isDir()) {
        report->addProblem(QStringLiteral("linked-folder"),
                           {"It is a link to the folder %1; linked folders are not searched for "
                            "drivers.",
                            {entry.symLinkTarget()}},
                           "Link or copy the plugin files one by one.");
        return true;
    }
    if (entry.isSymLink() && !entry.exists()) {
        report->addProblem(QStringLiteral("dangling-link"),
                           {"It is a link to %1, which does not exist.", {entry.symLinkTarget()}},
                           "Remove the link, or install what it points to.");
        return true;
    }
    if (entry.isDir()) {
        if (entry.isReadable() && entry.isExecutable())
            return false;
        report->addProblem(QStringLiteral("unreadable"), "The folder cannot be read.",
                           "Let the user who runs the application read and enter the folder.");
        return true;
    }
    if (!isHidden || !readSharedLibrary(report->path).ok)
        return false;
    report->addProblem(QStringLiteral("hidden"),
                       "It is hidden, and hidden files and folders are not searched for drivers.",
                       "Give it, and the folders it is in, names without a leading dot.");
    return true;
}

bool isHiddenBelow(const QString &folder, const QString &path)
{
    return path.midRef(folder.size()).contains(QLatin1String("/."));
}

QVector<FileReport> passedOver(const QString &folder, const QSet<QString> &tried)
{
    QVector<FileReport> reports;
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        FileReport report;
        if (!tried.contains(path)
            && reportPassedOver(entries.fileInfo(), isHiddenBelow(folder, path), &report))
            reports.append(report);
    }
    std::sort(reports.begin(), reports.end(),
              [](const FileReport &a, const FileReport &b) { return a.path < b.path; });
    return reports;
}

bool looksLikeTheSame(const FileReport &a, const FileReport &b)
{
    const QString key = QStringLiteral("resource-id");
    const QString first = a.plugin.metaData.value(key).toString();
    const QString second = b.plugin.metaData.value(key).toString();
    if (!first.isEmpty() && !second.isEmpty())
        return first == second;
    const QFileInfo one(a.path);
    const QFileInfo other(b.path);
    return one.fileName() == other.fileName() || (one.exists() && one == other);
}

} // namespace

QStringList pluginFolders()
{
    const QString name = QStringLiteral("/devicedrivers");
    return {QCoreApplication::applicationDirPath() + name,
            QLibraryInfo::location(QLibraryInfo::PluginsPath) + name};
}

FileReport inspectFile(const QString &path)
{
    FileReport report;
    report.path = path;
    const SharedLibraryResult result = readSharedLibrary(path);
    if (!result.ok) {
        report.findings.append(result.problem);
        return report;
    }
    if (inspectMetaData(result.library, &report)) {
        inspectDependencies(result.library, &report);
        inspectInterface(result.library, &report);
        inspectKeys(&report);
    }
    return report;
}

FolderReport inspectFolder(const QString &path)
{
    FolderReport report;
    report.path = path;
    report.exists = QFileInfo(path).isDir();
    QSet<QString> tried;
    QDirIterator files(path, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        tried.insert(file);
        report.files.append(inspectFile(file));
    }
    report.files += passedOver(path, tried);
    return report;
}

void markLikelyShadowed(const QVector<FileReport *> &reports)
{
    QVector<FileReport *> usable;
    std::copy_if(reports.cbegin(), reports.cend(), std::back_inserter(usable),
                 [](const FileReport *report) {
                     return report->verdict() != Verdict::NotUsable && report->drivers.isEmpty();
                 });
    for (int i = 0; i < usable.size(); ++i) {
        const auto later =
            std::find_if(usable.cbegin() + i + 1, usable.cend(), [&](const FileReport *other) {
                return looksLikeTheSame(*usable.at(i), *other);
            });
        if (later == usable.cend())
            continue;
        usable.at(i)->addWarning(
            QStringLiteral("likely-shadowed"),
            {"It seems to be the same driver as %1, which is loaded after it and then takes its "
             "place.",
             {(*later)->path}},
            "Remove one of the two.");
    }
}

} // namespace qel::inspection
