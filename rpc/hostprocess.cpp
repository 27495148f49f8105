#include "hostprocess.h"

#include "libexec.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QThread>

#include <cstring>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace qel::rpc {

HostProcess::~HostProcess()
{
    if (waitForEnd(std::chrono::milliseconds(500)))
        return;
    kill();
    waitForEnd(std::chrono::seconds(2));
}

static int spawn(pid_t *id, const char *const *arguments, int socket, int trail)
{
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // What a driver prints must not get into the data that an application writes.
    posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, socket, hostSocket);
    posix_spawn_file_actions_adddup2(&files, trail, hostTrail);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    const int error = ::posix_spawn(id, arguments[0], &files, &attributes,
                                    const_cast<char *const *>(arguments), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

// The same, and none of those by which the host finds what it inherits.
static int outOfTheWay(int descriptor)
{
    if (descriptor < 0)
        return -1;
    const int other = ::fcntl(descriptor, F_DUPFD_CLOEXEC, hostTrail + 1);
    const int error = errno;
    ::close(descriptor);
    errno = error;
    return other;
}

int HostProcess::start(const QString &program, const QString &pluginFile, QString *problem)
{
    m_end.reset();
    m_isKilled = false;
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
        *problem = QStringLiteral("no sockets: %1").arg(QString::fromLocal8Bit(strerror(errno)));
        return -1;
    }
    const int socket = outOfTheWay(ends[1]);
    const int trail = outOfTheWay(m_trail.renew());
    int error = socket < 0 || trail < 0 ? errno : 0;
    const QByteArray path = QFile::encodeName(program);
    const QByteArray plugin = QFile::encodeName(pluginFile);
    const QByteArray parent = QByteArray::number(qlonglong(::getpid()));
    const char *const arguments[] = {path.constData(), plugin.constData(), parent.constData(),
                                     nullptr};
    if (error == 0)
        error = spawn(&m_id, arguments, socket, trail);
    ::close(socket);
    ::close(trail);
    if (error == 0)
        return ends[0];
    m_id = 0;
    ::close(ends[0]);
    *problem = QStringLiteral("'%1' cannot be started: %2")
                   .arg(program, QString::fromLocal8Bit(strerror(error)));
    return -1;
}

void HostProcess::kill()
{
    if (m_id != 0 && !end())
        m_isKilled = ::kill(m_id, SIGKILL) == 0;
}

static isolation::Ending describe(int status, bool isKilled)
{
    using isolation::Ending;
    if (WIFSIGNALED(status))
        return {isKilled ? Ending::Hung : Ending::Crashed, WTERMSIG(status)};
    return {Ending::Exited, WEXITSTATUS(status)};
}

std::optional<isolation::Ending> HostProcess::end()
{
    if (m_id != 0) {
        int status = 0;
        const pid_t ended = ::waitpid(m_id, &status, WNOHANG);
        if (ended == 0)
            return std::nullopt;
        m_end = ended == m_id ? describe(status, m_isKilled) : isolation::Ending();
        m_id = 0;
    }
    return m_end;
}

const HostTrail &HostProcess::trail() const
{
    return m_trail;
}

pid_t HostProcess::id() const
{
    return m_id;
}

bool HostProcess::waitForEnd(std::chrono::milliseconds time)
{
    const QDeadlineTimer deadline(time);
    while (m_id != 0 && !end()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(2);
    }
    return true;
}

QString hostProgram()
{
    const QString named = qEnvironmentVariable("QELDEVICES_HOST");
    if (!named.isEmpty())
        return named;
    return libexecFile(QStringLiteral("qeldevices-host"));
}

} // namespace qel::rpc
