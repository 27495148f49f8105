#include "parentlink.h"

#include "frame_p.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace qel::isolation {

ParentLink::ParentLink()
    : m_input(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3))
    , m_output(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3))
{
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::close(nothing);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    // A parent that has gone is found out by send().
    std::signal(SIGPIPE, SIG_IGN);
}

ParentLink::~ParentLink()
{
    ::close(m_input);
    ::close(m_output);
}

bool ParentLink::send(const QByteArray &message)
{
    QByteArray frame(int(sizeof(FrameLength)), Qt::Uninitialized);
    qToBigEndian(FrameLength(message.size()), frame.data());
    frame += message;
    qint64 written = 0;
    while (written < frame.size()) {
        const auto count =
            ::write(m_output, frame.constData() + written, size_t(frame.size() - written));
        if (count < 0 && errno != EINTR)
            return false;
        written += qMax<qint64>(count, 0);
    }
    return true;
}

bool ParentLink::read(char *data, qint64 size)
{
    while (size > 0) {
        const auto count = ::read(m_input, data, size_t(size));
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        data += qMax<qint64>(count, 0);
        size -= qMax<qint64>(count, 0);
    }
    return true;
}

std::optional<QByteArray> ParentLink::receive()
{
    char encoded[sizeof(FrameLength)];
    if (!read(encoded, sizeof encoded))
        return std::nullopt;
    const auto length = qFromBigEndian<FrameLength>(encoded);
    if (length > maximumFrameLength)
        return std::nullopt;
    QByteArray message(int(length), Qt::Uninitialized);
    if (!read(message.data(), length))
        return std::nullopt;
    return message;
}

int ParentLink::descriptor() const
{
    return m_input;
}

void ParentLink::dieWithParent()
{
    const auto parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // It may have gone just before.
    if (::getppid() != parent)
        ::_exit(EXIT_FAILURE);
}

} // namespace qel::isolation
