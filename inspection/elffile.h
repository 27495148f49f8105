#ifndef QEL_INSPECTION_ELFFILE_H
#define QEL_INSPECTION_ELFFILE_H

#include "sentence.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::inspection {

/// One thing that stands out about a plugin file: what it is and what to do about it.
struct FileFinding
{
    enum class Severity {
        Warning, ///< the file can be used nevertheless
        Problem, ///< the file cannot be used
    };

    Severity severity = Severity::Problem;
    QString code;    ///< stable name for scripts, for instance "other-architecture"
    Sentence text;   ///< what was seen
    Sentence remedy; ///< what to do
};

/// What the dynamic loader and Qt will see of a shared library, read without loading it.
struct SharedLibrary
{
    /// A symbol version that another library must define.
    struct VersionNeed
    {
        QString library;
        QByteArray version;
    };

    /// A stretch of the file that is mapped when the library is loaded.
    struct Segment
    {
        quint64 offset = 0;
        quint64 address = 0;
        quint64 size = 0;
    };

    QStringList needed;             ///< names of the libraries it depends on, in order
    QStringList rpath;              ///< search folders, as they stand in the file
    QStringList runpath;            ///< likewise; when there are any, `rpath` counts for nothing
    QVector<VersionNeed> versions;  ///< without weak ones
    QByteArrayList versionsDefined; ///< empty when its symbols carry no versions
    QVector<Segment> segments;
    bool hasMetaDataSection = false;   ///< it has the section in which Qt 5 looks for metadata
    bool hasNewerMetaDataNote = false; ///< it has the section in which Qt 6 looks for metadata
    quint64 metaDataOffset = 0;        ///< where the content of the section stands in the file
    QByteArray metaData;               ///< the content of the section
};

/// The outcome of readSharedLibrary().
struct SharedLibraryResult
{
    bool ok = false;
    SharedLibrary library; ///< when ok
    FileFinding problem;   ///< otherwise
};

/// Reads the file at `path` as a shared library of this computer's kind. Nothing of the file is
/// run or mapped, it may hold anything, and the work is bounded whatever it claims of itself.
SharedLibraryResult readSharedLibrary(const QString &path);

/// True when `text`, with its closing zero byte, stands in a mapped part of the file at `path`
/// other than the metadata section. True also when the file is too large for an answer.
bool containsText(const QString &path, const SharedLibrary &library, const QByteArray &text);

} // namespace qel::inspection

#endif
