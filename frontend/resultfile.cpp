#include "resultfile.h"

#include "messages_p.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qel::frontend {

static bool fail(QString *problem, int reason = errno)
{
    *problem = QString::fromLocal8Bit(strerror(reason));
    return false;
}

static QByteArray folderOf(const QByteArray &path)
{
    return QFile::encodeName(QFileInfo(QFile::decodeName(path)).absolutePath());
}

// The end of the links at `path`, which need not exist; empty when there are too many.
static QByteArray followed(QByteArray path)
{
    for (int i = 0; i < 40; ++i) {
        char target[PATH_MAX];
        const ssize_t length = readlink(path.constData(), target, sizeof target);
        if (length < 0)
            return path;
        const QByteArray next(target, int(length));
        path = next.startsWith('/') ? next : folderOf(path) + '/' + next;
    }
    return {};
}

static bool writeAll(int file, const QByteArray &data, QString *problem)
{
    for (int done = 0; done < data.size();) {
        const ssize_t count = write(file, data.constData() + done, size_t(data.size() - done));
        if (count < 0 && errno != EINTR)
            return fail(problem);
        done += int(std::max<ssize_t>(count, 0));
    }
    return true;
}

// What a file is called until it is in its place; short, since its own name may be as long as
// names can be.
constexpr char prefixBeside[] = ".qelresult-";

// A name beside `path` that nothing has.
static QByteArray nameBeside(const QByteArray &path)
{
    return folderOf(path) + '/' + prefixBeside
        + QByteArray::number(QRandomGenerator::global()->generate(), 36);
}

// Whether nobody else holds the file; not every file system can tell.
static bool lockFile(int file)
{
    return flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

static bool isLocked(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (file < 0)
        return false;
    const bool isFree = lockFile(file);
    ::close(file);
    return !isFree;
}

// Removes what processes that were killed have left in the folder. Nothing of it was promised.
static void tidyUp(const QByteArray &folder)
{
    const QFileInfoList left = QDir(QFile::decodeName(folder))
                                   .entryInfoList({QLatin1String(prefixBeside) + QLatin1Char('*')},
                                                  QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &file : left) {
        const QByteArray path = QFile::encodeName(file.filePath());
        // One that has just been made may not be locked yet.
        const bool isNew = file.lastModified().secsTo(QDateTime::currentDateTime()) < 60;
        if (!isNew && !isLocked(path))
            unlink(path.constData());
    }
}

std::unique_ptr<ResultFile> ResultFile::open(const QString &path, Existing existing,
                                             QString *problem)
{
    problem->clear();
    std::unique_ptr<ResultFile> file(new ResultFile);
    file->m_existing = existing;
    file->m_path = followed(QFile::encodeName(path));
    if (file->m_path.isEmpty()) {
        fail(problem, ELOOP);
        return nullptr;
    }
    struct stat info;
    const bool exists = stat(file->m_path.constData(), &info) == 0;
    file->m_isPlain = !exists || S_ISREG(info.st_mode);
    if (exists && S_ISREG(info.st_mode) && existing == Existing::Refuse)
        return nullptr;
    if (!exists && errno != ENOENT) {
        fail(problem);
        return nullptr;
    }
    if (exists && file->m_isPlain && isLocked(file->m_path)) {
        *problem = message("qelfrontend-file-in-use");
        return nullptr;
    }
    file->m_isPlaced = exists && (!file->m_isPlain || existing == Existing::Continue);
    return file->prepare(problem) ? std::move(file) : nullptr;
}

ResultFile::~ResultFile()
{
    if (m_file >= 0)
        ::close(m_file);
}

bool ResultFile::prepare(QString *problem)
{
    if (m_isPlaced) {
        m_file = ::open(m_path.constData(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY);
        if (m_file < 0)
            return fail(problem);
        if (!m_isPlain || lockFile(m_file))
            return true;
        *problem = message("qelfrontend-file-in-use");
        return false;
    }
    const QByteArray folder = folderOf(m_path);
    tidyUp(folder);
    // Linked to its name once it is whole; a process that ends before leaves nothing.
    const bool canLink = access("/proc/self/fd", X_OK) == 0;
    m_file = canLink ? ::open(folder.constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666) : -1;
    if (m_file < 0 && canLink && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)
        return fail(problem);
    // The name is tried, too: it may be too long.
    struct stat info;
    if (lstat(m_path.constData(), &info) != 0 && errno != ENOENT)
        return fail(problem);
    if (m_file >= 0) {
        lockFile(m_file);
        return true;
    }
    const QByteArray trial = nameBeside(m_path);
    const int file = ::open(trial.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0)
        return fail(problem);
    ::close(file);
    unlink(trial.constData());
    return true;
}

bool ResultFile::add(const QByteArray &result, QString *problem)
{
    const bool isKept = m_isPlaced ? append(result, problem) : put(result, problem);
    m_count += isKept;
    return isKept;
}

int ResultFile::count() const
{
    return m_count;
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

bool ResultFile::put(const QByteArray &result, QString *problem)
{
    const bool replaces = m_existing == Existing::Replace;
    QByteArray named; // what stands for the file until it is in its place
    if (m_file < 0) {
        named = nameBeside(m_path);
        m_file = ::open(named.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_file < 0)
            return fail(problem);
        lockFile(m_file);
    }
    struct stat replaced;
    if (replaces && stat(m_path.constData(), &replaced) == 0)
        fchmod(m_file, replaced.st_mode & 07777);
    if (!writeAll(m_file, result, problem) || (fsync(m_file) != 0 && !fail(problem))) {
        if (!named.isEmpty()) {
            unlink(named.constData());
            ::close(m_file);
            m_file = -1;
        } else if (ftruncate(m_file, 0) != 0 || lseek(m_file, 0, SEEK_SET) != 0) {
            return false;
        }
        return false;
    }
    const auto link = [this](const QByteArray &name) {
        const QByteArray open = "/proc/self/fd/" + QByteArray::number(m_file);
        return linkat(AT_FDCWD, open.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW)
            == 0;
    };
    bool isPlaced = false;
    if (named.isEmpty() && !(isPlaced = link(m_path)) && errno == EEXIST && replaces) {
        named = nameBeside(m_path);
        if (!link(named))
            named.clear();
    }
    if (!isPlaced && !named.isEmpty())
        isPlaced = moveFile(named, m_path, replaces);
    if (!isPlaced) {
        fail(problem);
        if (!named.isEmpty())
            unlink(named.constData());
        return false;
    }
    m_isPlaced = true;
    // The name is on the disk, too.
    const int folder = ::open(folderOf(m_path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        ::close(folder);
    }
    return true;
}

bool ResultFile::append(const QByteArray &result, QString *problem)
{
    if (!m_isPlain)
        return writeAll(m_file, result, problem);
    const off_t length = lseek(m_file, 0, SEEK_END);
    if (length >= 0 && writeAll(m_file, result, problem)) {
        if (fsync(m_file) == 0)
            return true;
        fail(problem);
    }
    // Half a result is worse than none.
    if (length >= 0 && ftruncate(m_file, length) == 0)
        fsync(m_file);
    return false;
}

} // namespace qel::frontend
