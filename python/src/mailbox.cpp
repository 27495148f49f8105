#include "mailbox.h"

#include "home.h"

#include <QtCore/QEventLoop>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace py = pybind11;

namespace qelpython {

namespace {

// A signal interrupts a wait of the main thread at once. This is for those that another thread
// receives.
constexpr double longestWait = 0.2;

// Not py::gil_scoped_release: a thread that outlives the interpreter ends where it asks for the
// lock, which a destructor does not survive.
template<typename Wait>
void withoutInterpreter(Wait wait)
{
    PyThreadState *state = PyEval_SaveThread();
    wait();
    PyEval_RestoreThread(state);
}

} // namespace

Mailbox::Mailbox()
    : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

Mailbox::~Mailbox()
{
    ::close(m_descriptor);
}

void Mailbox::put(Letter letter)
{
    const std::lock_guard lock(m_mutex);
    m_letters.push_back(std::move(letter));
    eventfd_write(m_descriptor, 1);
}

void Mailbox::close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    eventfd_write(m_descriptor, 1);
}

std::optional<py::object> Mailbox::take(double seconds)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for (;;) {
        Letter letter;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_letters.empty()) {
                letter = std::move(m_letters.front());
                m_letters.pop_front();
                if (m_letters.empty() && !m_isClosed) {
                    eventfd_t count = 0;
                    eventfd_read(m_descriptor, &count);
                }
            } else if (m_isClosed) {
                throw py::stop_iteration();
            }
        }
        if (letter)
            return letter();
        const double passed = std::chrono::duration<double>(Clock::now() - start).count();
        if (seconds >= 0 && passed >= seconds)
            return std::nullopt;
        const double left = seconds < 0 ? longestWait : std::min(longestWait, seconds - passed);
        if (Home::isCurrentThread())
            withoutInterpreter([&] { turnLoop(left); });
        else
            withoutInterpreter([&] { waitFor(left); });
        if (PyErr_CheckSignals() != 0)
            throw py::error_already_set();
    }
}

int Mailbox::descriptor() const
{
    return m_descriptor;
}

void Mailbox::waitFor(double seconds) const
{
    pollfd readable{m_descriptor, POLLIN, 0};
    ::poll(&readable, 1, int(std::ceil(seconds * 1000)));
}

// The application's own thread cannot sleep: what it waits for would never happen.
void Mailbox::turnLoop(double seconds) const
{
    QEventLoop loop;
    QSocketNotifier notifier(m_descriptor, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    QTimer::singleShot(int(std::ceil(seconds * 1000)), &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace qelpython
