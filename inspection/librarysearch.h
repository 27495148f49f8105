#ifndef QEL_INSPECTION_LIBRARYSEARCH_H
#define QEL_INSPECTION_LIBRARYSEARCH_H

#include "elffile.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::inspection {

/// A library that others depend on, and where the dynamic loader would take it from.
struct LibraryDependency
{
    QString name;
    QString neededBy; ///< path of the first file that depends on it
    QString path;     ///< empty when it is missing
};

/// A symbol version that a library was asked for and does not define.
struct MissingVersion
{
    QString library;  ///< path of the library as it was found
    QString version;  ///< for instance "GLIBC_2.38"
    QString neededBy; ///< path of the file that asks
};

/// Finds what a shared library depends on, in the way of the dynamic loader: what this program has
/// loaded already, the folders written in the libraries, LD_LIBRARY_PATH, the system's cache, the
/// system's folders.
class LibrarySearch
{
public:
    struct Result
    {
        QVector<LibraryDependency> dependencies; ///< direct ones first
        QVector<MissingVersion> missingVersions;
    };

    /// Takes the environment and the system's cache as they are now.
    LibrarySearch();

    /// Everything that `library`, read from `path`, depends on, directly or not.
    Result resolve(const QString &path, const SharedLibrary &library) const;

private:
    struct Node;

    QString find(const QString &name, const Node &neededBy, SharedLibrary *found) const;
    QStringList foldersFor(const Node &neededBy) const;

    QStringList m_environmentFolders;
    QHash<QString, QString> m_loaded;
    QMultiHash<QString, QString> m_cache;
    QString m_lib;
};

} // namespace qel::inspection

#endif
