#ifndef SERVER_SPOOL_H
#define SERVER_SPOOL_H

#include <gate.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QThreadPool>

namespace qel::server {

/// The folder of the results that no client has confirmed to have, a JSON document each.
///
/// | Key                                    | Value                                          |
/// |----------------------------------------|------------------------------------------------|
/// | "format"                               | "qeldevices-kept-result"                       |
/// | "client"                               | the name of who has run it                     |
/// | "interface"                            | the enumerator's number                        |
/// | "driver", "location", "name", "serial" | of the instrument                              |
/// | "plugin"                               | "file", "manufacturer", "version" of its driver|
/// | "machine"                              | the name of this one                           |
/// | "feature"                              | the enumerator's number                        |
/// | "startedAt"                            | ISO 8601 in UTC                                |
/// | "elapsed"                              | milliseconds that the run took                 |
/// | "descriptor", "configuration", "result"| as the codec of feature values writes them     |
class Spool
{
public:
    explicit Spool(QString folder);

    /// A result that a process before this one was killed over while it wrote it.
    struct Unfinished
    {
        QString name;
        bool isKept; ///< it was whole; otherwise it is gone
    };
    /// Keeps or removes what is unfinished. Called before the first keep().
    QList<Unfinished> tidy();

    /// Writes a result. From now on the end of this process does no harm to it; what is still there
    /// after a moment is forced to the disk, so that neither does a loss of power.
    /// @return its name; or nothing, and a sentence in `problem`
    QString keep(const QString &client, const devices::Device &device, const rpc::FarRun &run,
                 const QVariant &result, QString *problem);
    void drop(const QString &name);

    /// The names of what is kept for `client`, the oldest first.
    QStringList names(const QString &client) const;
    /// The document called `name`; empty when nothing of that name is kept for `client`.
    QByteArray read(const QString &client, const QString &name) const;
    /// The file called `name`.
    QString fileOf(const QString &name) const;

private:
    void forceLater(const QString &name);

    const QString m_folder;
    QThreadPool m_disk;
};

} // namespace qel::server

#endif
