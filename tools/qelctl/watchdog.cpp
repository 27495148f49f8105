#include "watchdog.h"

#include "tool.h"

#include <qelfrontend/trail.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>
#include <pthread.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

namespace qelctl {

using qel::frontend::TrailMark;

// Written before anything can happen: a signal handler translates nothing.
static char crashText[200];
static char hangText[200];
static char exitText[200];
static char eventText[80];
static std::atomic<int> codeOfLimit{TimedOut};
static bool hasEnded = false;

static int timer = -1; // of the limit
static pthread_t threadOfDrivers;

// Where the files begin that were loaded before any plugin.
static const void *bases[256];
static int baseCount = 0;

// Two, so that one is whole while the other is written.
static char lastWords[2][600];
static const char *volatile currentLastWords = lastWords[0];

static void say(const char *text)
{
    if (write(STDERR_FILENO, text, strlen(text)) < 0)
        return; // nobody listens
}

static bool isOwn(const void *base)
{
    for (int i = 0; i < baseCount; ++i) {
        if (bases[i] == base)
            return true;
    }
    return false;
}

static const void *baseOf(const void *address)
{
    Dl_info file;
    return dladdr(address, &file) != 0 ? file.dli_fbase : nullptr;
}

static int keepBase(dl_phdr_info *file, size_t, void *)
{
    for (int i = 0; i < file->dlpi_phnum && baseCount < int(std::size(bases)); ++i) {
        if (file->dlpi_phdr[i].p_type != PT_LOAD)
            continue;
        const auto address = file->dlpi_addr + file->dlpi_phdr[i].p_vaddr;
        bases[baseCount++] = baseOf(reinterpret_cast<const void *>(address));
        break;
    }
    return 0;
}

// The plugin among the files on the stack: it was loaded after the tool's own. Libraries that it
// has brought along come before it, but a plugin may be called like one.
static const char *pluginOnStack()
{
    void *frames[64];
    const int count = backtrace(frames, 64);
    const char *outermost = nullptr;
    for (int i = 0; i < count; ++i) {
        Dl_info frame;
        if (dladdr(frames[i], &frame) == 0 || !frame.dli_fname || isOwn(frame.dli_fbase))
            continue;
        const char *slash = strrchr(frame.dli_fname, '/');
        if (strncmp(slash ? slash + 1 : frame.dli_fname, "lib", 3) != 0)
            return frame.dli_fname;
        outermost = frame.dli_fname;
    }
    return outermost;
}

// @param plugin null where it is not known
// @param call empty where it is not known
static void report(const char *what, const char *plugin, const char *call)
{
    const bool isPlaced = plugin || call[0] != '\0';
    say("\nqelctl: ");
    say(what);
    say(isPlaced ? " (" : "");
    say(plugin ? plugin : "");
    say(plugin && call[0] != '\0' ? ", " : "");
    say(call);
    say(isPlaced ? ")\n" : "\n");
    say(currentLastWords);
}

// For the thread that the driver has been called in.
static void report(const char *what)
{
    const char *call = TrailMark::current();
    report(what, pluginOnStack(), call[0] != '\0' ? call : eventText);
}

static void onCrash(int)
{
    report(crashText);
    _exit(DriverFailed);
}

static void onLimit(int)
{
    report(hangText);
    _exit(codeOfLimit);
}

// In a thread of its own, since a driver may keep signals from the one that it is called in. That
// one is told first: only there the plugin is on the stack.
static void *watchLimit(void *)
{
    quint64 times = 0;
    while (read(timer, &times, sizeof times) != ssize_t(sizeof times))
        continue;
    pthread_kill(threadOfDrivers, SIGALRM);
    const timespec pause{1, 0};
    nanosleep(&pause, nullptr);
    report(hangText, nullptr, TrailMark::current());
    _exit(codeOfLimit);
}

static void makeTimer()
{
    if (timer < 0)
        timer = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
    if (timer < 0)
        qFatal("qelctl: cannot make a timer");
}

// Ctrl-C and its like reach the thread also when a driver keeps them from its own.
static void startThread()
{
    makeTimer();
    threadOfDrivers = pthread_self();
    sigset_t before;
    sigset_t blocked;
    sigfillset(&blocked);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigdelset(&blocked, signal);
    pthread_sigmask(SIG_SETMASK, &blocked, &before);
    pthread_t thread;
    if (pthread_create(&thread, nullptr, &watchLimit, nullptr) == 0)
        pthread_detach(thread);
    else
        complain(text("qelctl-no-watchdog"));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

static void onExit()
{
    if (hasEnded)
        return;
    report(exitText);
    _exit(DriverFailed);
}

static void keep(char *target, size_t size, const char *id)
{
    qstrncpy(target, text(id).toUtf8().constData(), uint(size));
}

void watchDrivers()
{
    keep(crashText, sizeof crashText, "qelctl-driver-crashed");
    keep(hangText, sizeof hangText, "qelctl-driver-hangs");
    keep(exitText, sizeof exitText, "qelctl-driver-exits");
    keep(eventText, sizeof eventText, "qelctl-driver-event");
    void *frame = nullptr;
    backtrace(&frame, 1); // loads what it needs while that is still possible

    // A stack of its own: the driver's may be what is used up.
    static char stack[64 * 1024];
    stack_t alternate{};
    alternate.ss_sp = stack;
    alternate.ss_size = sizeof stack;
    sigaltstack(&alternate, nullptr);
    struct sigaction action = {};
    action.sa_handler = &onCrash;
    action.sa_flags = SA_ONSTACK;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        sigaction(signal, &action, nullptr);
    action.sa_handler = &onLimit;
    sigaction(SIGALRM, &action, nullptr);
    startThread();
    std::atexit(&onExit);
    std::at_quick_exit(&onExit);
    dl_iterate_phdr(&keepBase, nullptr);
}

void setLastWords(const QString &message)
{
    char *next = currentLastWords == lastWords[0] ? lastWords[1] : lastWords[0];
    qstrncpy(next, ("qelctl: " + message.toUtf8() + '\n').constData(), sizeof lastWords[0]);
    currentLastWords = next;
}

void toolHasEnded()
{
    hasEnded = true;
}

void limitProcess(int milliseconds, int code)
{
    makeTimer();
    codeOfLimit = code;
    itimerspec limit{};
    limit.it_value.tv_sec = milliseconds / 1000;
    limit.it_value.tv_nsec = milliseconds % 1000 * 1000000L;
    timerfd_settime(timer, 0, &limit, nullptr);
}

} // namespace qelctl
