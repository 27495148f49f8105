#include "reservation.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QLockFile>

#include <unistd.h>

namespace qel::conformance {

Reservation::Reservation() = default;
Reservation::~Reservation() = default;

static QString fileFor(const QString &instrument)
{
    // A name may hold anything.
    const QByteArray name =
        QCryptographicHash::hash(instrument.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral("%1/qeldevices-check-%2-%3.lock")
        .arg(qEnvironmentVariable("XDG_RUNTIME_DIR", QDir::tempPath()))
        .arg(::getuid())
        .arg(QString::fromLatin1(name));
}

QString Reservation::take(const QString &instrument)
{
    if (m_lock && m_instrument == instrument)
        return {};
    auto lock = std::make_unique<QLockFile>(fileFor(instrument));
    // However long a check takes: it is over when its process is.
    lock->setStaleLockTime(0);
    if (lock->tryLock()) {
        m_instrument = instrument;
        m_lock = std::move(lock);
        return {};
    }
    qint64 process = 0;
    QString host;
    QString program;
    if (lock->error() != QLockFile::LockFailedError
        || !lock->getLockInfo(&process, &host, &program))
        return {};
    return QStringLiteral("another check is at work with the instrument, process %1 (%2)")
        .arg(process)
        .arg(program);
}

} // namespace qel::conformance
