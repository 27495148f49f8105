#include "interrupt.h"

#include "tool.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace qelctl {

static int pipeEnds[2] = {-1, -1};
static volatile std::sig_atomic_t interrupted = 0;

static void onSignal(int)
{
    if (interrupted)
        _exit(Interrupted);
    interrupted = 1;
    const char byte = 0;
    // Nothing can be done here about a pipe that is full: one byte is enough to be noticed.
    if (write(pipeEnds[1], &byte, 1) < 0)
        return;
}

static int openPipe()
{
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("qelctl: cannot make a pipe");
    return pipeEnds[0];
}

Interrupt::Interrupt()
    : m_notifier(openPipe(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        m_requested = true;
        emit requested();
    });
    std::signal(SIGINT, &onSignal);
    std::signal(SIGTERM, &onSignal);
}

Interrupt::~Interrupt()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    m_notifier.setEnabled(false);
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
}

} // namespace qelctl
