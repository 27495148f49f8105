#ifndef QELFRONTEND_RESULTFILE_H
#define QELFRONTEND_RESULTFILE_H

#include "export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

namespace qel::frontend {

/// A file that results are kept in, safe at the moment they are added.
///
/// Before the first result nothing stands at its path, so a run that fails leaves nothing. The
/// first puts the file in its place, whole; each further one makes it longer, whole or not at all.
/// When add() returns, the result is on the disk: neither a crash nor a power cut takes it away,
/// and a disk that is full takes nothing that was there before. No other file stays beside it:
/// where the system needs one for an instant, and the process is killed in it, the next ResultFile
/// of the folder removes it.
///
/// While it lives, nobody else can continue or replace the same file with a ResultFile.
///
/// Where there is no regular file, such as a pipe, results are just written.
class QELFRONTEND_EXPORT ResultFile
{
public:
    /// What happens to a file that stands at the path already.
    enum class Existing {
        Refuse,   ///< it is left alone, and open() fails
        Replace,  ///< the first result takes its place; a link is followed to the file it means
        Continue, ///< results are added to it; without one it is begun
    };

    /// Prepares to write to `path`, so that what stands in the way is known before anything is
    /// measured.
    /// @return null, and the reason in `problem`, when it cannot be written;
    /// null with an empty `problem` when there is a file and `existing` is Refuse
    static std::unique_ptr<ResultFile> open(const QString &path, Existing existing,
                                            QString *problem);
    ~ResultFile();

    /// Adds a result. False, and the system's reason in `problem`, when it is not kept; those added
    /// before are.
    bool add(const QByteArray &result, QString *problem);

    /// How many results have been added.
    int count() const;

private:
    ResultFile() = default;
    bool prepare(QString *problem);
    bool put(const QByteArray &result, QString *problem);
    bool append(const QByteArray &result, QString *problem);

    QByteArray m_path; // of the file itself, whatever links lead to it
    Existing m_existing = Existing::Refuse;
    int m_file = -1;
    bool m_isPlain = true;   // a regular file, or none yet
    bool m_isPlaced = false; // stands at m_path
    int m_count = 0;
};

} // namespace qel::frontend

#endif
