#include "output.h"

#include "interrupt.h"
#include "statusline.h"
#include "terminaltext.h"
#include "tool.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qelctl {

std::unique_ptr<Output> Output::open(const QString &path, bool force, QString *problem)
{
    std::unique_ptr<Output> output(new Output);
    output->m_path = path;
    const QFileInfo target(path);
    QString reason;
    if (path.isEmpty()) {
        output->m_file = std::make_unique<QFile>();
        output->m_file->open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered);
    } else if (target.exists() && !target.isFile() && !target.isDir()) {
        output->m_file = std::make_unique<QFile>(path);
        output->m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    } else if (target.isFile() && !force) {
        *problem = text("qelctl-file-exists", path);
        return nullptr;
    } else {
        reason = output->openBeside(force);
    }
    if (reason.isEmpty() && output->m_file->isOpen())
        return output;
    *problem = output->describe(reason.isEmpty() ? output->m_file->errorString() : reason);
    return nullptr;
}

static QFileDevice::Permissions permissionsOfNewFiles()
{
    const mode_t mask = umask(0);
    umask(mask);
    QFileDevice::Permissions permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const std::pair<mode_t, QFileDevice::Permission> others[] = {
        {S_IRGRP, QFileDevice::ReadGroup},
        {S_IWGRP, QFileDevice::WriteGroup},
        {S_IROTH, QFileDevice::ReadOther},
        {S_IWOTH, QFileDevice::WriteOther},
    };
    for (const auto &[bit, permission] : others)
        permissions.setFlag(permission, (mask & bit) == 0);
    return permissions;
}

// What stands in the way, or nothing.
QString Output::openBeside(bool force)
{
    const QFileInfo target(m_path);
    if (target.isDir())
        return QString::fromLocal8Bit(strerror(EISDIR));
    // A link keeps pointing where it points.
    const QFileInfo place(target.isSymLink() ? target.symLinkTarget() : target.absoluteFilePath());
    auto file = std::make_unique<QTemporaryFile>(place.absolutePath() + QStringLiteral("/.")
                                                 + place.fileName() + QStringLiteral(".XXXXXX"));
    if (!file->open())
        return file->errorString();
    file->setPermissions(place.exists() ? place.permissions() : permissionsOfNewFiles());
    removeWhenInterrupted(QFile::encodeName(file->fileName()));
    m_place = QFile::encodeName(place.absoluteFilePath());
    m_replaces = force;
    m_file = std::move(file);
    return {};
}

Output::~Output()
{
    removeWhenInterrupted({});
}

QString Output::describe(const QString &reason) const
{
    return m_path.isEmpty() ? text("qelctl-cannot-print", reason)
                            : text("qelctl-cannot-write", m_path, reason);
}

bool Output::isTerminal() const
{
    return isatty(m_file->handle());
}

bool Output::write(const QByteArray &data, QString *problem)
{
    if (m_file->write(data) == data.size())
        return true;
    *problem = describe(m_file->errorString());
    return false;
}

// Not every file system can promise to replace nothing.
static bool moveFile(const QByteArray &from, const QByteArray &to, bool replaces)
{
    if (replaces)
        return std::rename(from.constData(), to.constData()) == 0;
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    return errno == EINVAL && access(to.constData(), F_OK) != 0
        && std::rename(from.constData(), to.constData()) == 0;
}

bool Output::commit(QString *problem)
{
    if (!m_file->flush()) {
        *problem = describe(m_file->errorString());
        return false;
    }
    if (m_place.isEmpty())
        return true;
    const bool done = fsync(m_file->handle()) == 0
        && moveFile(QFile::encodeName(m_file->fileName()), m_place, m_replaces);
    if (!done) {
        *problem = errno == EEXIST ? text("qelctl-file-exists", m_path)
                                   : describe(QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    removeWhenInterrupted({});
    static_cast<QTemporaryFile *>(m_file.get())->setAutoRemove(false);
    return true;
}

int printData(const QByteArray &data)
{
    clearStatus();
    QString problem;
    const auto output = Output::open(QString(), false, &problem);
    if (output && output->write(data, &problem) && output->commit(&problem))
        return Done;
    return fail(CannotWrite, problem);
}

ReaderWatch::ReaderWatch()
{
    connect(&m_timer, &QTimer::timeout, this, [this] {
        pollfd standardOutput{STDOUT_FILENO, 0, 0};
        if (poll(&standardOutput, 1, 0) > 0 && (standardOutput.revents & POLLERR) != 0) {
            m_timer.stop();
            emit gone();
        }
    });
    m_timer.start(500);
}

bool usesColor(bool toTerminal)
{
    switch (globalOptions().color) {
    case Color::Always:
        return true;
    case Color::Never:
        return false;
    case Color::Auto:
        break;
    }
    return toTerminal && !isTerminalDumb() && qEnvironmentVariableIsEmpty("NO_COLOR");
}

int terminalWidth(int fileDescriptor)
{
    winsize size{};
    if (ioctl(fileDescriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

} // namespace qelctl
