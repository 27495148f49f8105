#ifndef QEL_INSPECTION_LOADTRIAL_H
#define QEL_INSPECTION_LOADTRIAL_H

#include "inspection.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <chrono>

namespace qel::inspection {

/// What happened to one plugin file when it was loaded.
struct LoadOutcome
{
    enum class Kind {
        Loaded,
        Refused,  ///< the library did not take it
        Crashed,  ///< the process ended while it was at this file
        TimedOut, ///< it did not come back
        NotTried, ///< too many others had crashed or timed out
    };

    QString file;
    Kind kind = Kind::NotTried;
    Sentence reason;     ///< half a sentence, unless Loaded
    QString asked;       ///< the driver that was just asked for its instruments, if any
    QStringList drivers; ///< names it registered, replacing any driver of that name
    /// What became of the plugins that it runs in processes of their own.
    QVector<LoadOutcome> hosted;

    /// Says what happened, unless Loaded: "It does not load: ...".
    Sentence sentence() const;
};

/// Loads `files` in this order in a process of their own, and asks their drivers for the
/// instruments that they reach. A crash or a plugin that never comes back costs no more than that
/// process; without the culprit it is then tried again. This runs the code of the plugins.
///
/// The process is `program` with `arguments`, which must do nothing but call serveLoadTrial(). Each
/// file, and each driver, may take `timeLimit`. One outcome for each file, in the same order.
QVector<LoadOutcome> tryLoading(const QStringList &files, const QString &program,
                                const QStringList &arguments,
                                std::chrono::milliseconds timeLimit = std::chrono::seconds(10));

/// The other end of tryLoading(). Needs the application object; returns the exit code.
int serveLoadTrial();

/// Adds to `reports`, which were in the order of `outcomes`, what loading has shown: files that do
/// not load, that register no driver, whose drivers cannot be asked, and whose drivers are replaced
/// by those of a later file.
void addOutcomes(const QVector<LoadOutcome> &outcomes, const QVector<FileReport *> &reports);

/// The same for all files in `folders` that may be usable, in the order in which the library loads
/// them, and adds to their reports what it has shown. Adds the folders of the files that are loaded
/// in processes of their own.
void tryLoading(QVector<FolderReport> *folders, const QString &program,
                const QStringList &arguments);

} // namespace qel::inspection

#endif
