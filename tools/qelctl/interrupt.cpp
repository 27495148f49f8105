#include "interrupt.h"

#include "tool.h"
#include "watchdog.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace qelctl {

static int pipeEnds[2] = {-1, -1};
static volatile std::sig_atomic_t leavesAtOnce = 1;

static void onSignal(int)
{
    if (leavesAtOnce)
        _exit(Interrupted);
    leavesAtOnce = 1;
    // For a driver that holds the event loop up; otherwise the ladder of a run is over by then.
    limitProcess(ladderTime, Interrupted);
    const char byte = 0;
    // Nothing can be done here about a pipe that is full: one byte is enough to be noticed.
    if (write(pipeEnds[1], &byte, 1) < 0)
        return;
}

void catchInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = &onSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        // Who starts the tool with a signal ignored, such as nohup, means it.
        if (before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
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
    leavesAtOnce = 0;
}

Interrupt::~Interrupt()
{
    leavesAtOnce = 1;
    m_notifier.setEnabled(false);
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
}

} // namespace qelctl
