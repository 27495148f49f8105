#ifndef QEL_INSPECTION_INSPECTION_H
#define QEL_INSPECTION_INSPECTION_H

#include "elffile.h"
#include "librarysearch.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::inspection {

/// Whether a file will serve as a driver plugin.
enum class Verdict {
    Usable,
    UsableWithWarnings,
    NotUsable,
};

/// What a plugin file says of itself. Empty as far as it could not be read.
struct PluginDescription
{
    QString interfaceId;
    QString className;
    int qtMajor = 0;
    int qtMinor = 0;
    QJsonObject metaData; ///< the values of its metadata file
};

/// What is known of one file, and why it can or cannot be used.
struct FileReport
{
    QString path;
    QVector<FileFinding> findings;
    PluginDescription plugin;
    QVector<LibraryDependency> dependencies;
    QStringList drivers; ///< names of the drivers it registers; known only once it was loaded

    /// NotUsable with any problem, UsableWithWarnings with any other finding.
    Verdict verdict() const;
    void addProblem(const QString &code, const Sentence &text, const Sentence &remedy);
    void addWarning(const QString &code, const Sentence &text, const Sentence &remedy);
    bool has(const QString &code) const;
};

/// What stands in a plugin folder.
struct FolderReport
{
    QString path;
    bool exists = false;
    /// First the files that are tried as drivers, in the order in which they are tried, then what
    /// is passed over although somebody may expect it to be a driver.
    QVector<FileReport> files;
};

/// The folders that qel::devices::init() looks into, in this order, when the running program calls
/// it. They need not exist.
QStringList pluginFolders();

/// Says why the file at `path` is or is not a usable driver plugin. Nothing of it is loaded or run,
/// and it may hold anything. Where this program lacks the permission to look, the report says so.
FileReport inspectFile(const QString &path);

/// Inspects every file below `path` that DeviceBroker::loadAllDevicePlugins() would try, and names
/// hidden plugins, linked folders, dangling links and unreadable folders, which it passes over.
FolderReport inspectFolder(const QString &path);

/// Warns in the reports of usable files that a later one of `reports`, in the order of loading,
/// looks like the same driver: the same file, the same "resource-id", or the same file name where
/// one of the two has no "resource-id". Driver names cannot be known without loading; files whose
/// names are known are left alone.
void markLikelyShadowed(const QVector<FileReport *> &reports);

} // namespace qel::inspection

#endif
