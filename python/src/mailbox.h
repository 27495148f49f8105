#ifndef PYTHON_MAILBOX_H
#define PYTHON_MAILBOX_H

#include <pybind11/pybind11.h>

#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace qelpython {

/// What goes from Qt's thread to Python: letters in the order in which they were put in.
///
/// A letter is a function that makes a Python object. It is called by the thread that takes the
/// letter, with the interpreter's lock; so Qt's thread never waits for Python.
class Mailbox
{
public:
    using Letter = std::function<pybind11::object()>;

    Mailbox();
    ~Mailbox();
    Mailbox(const Mailbox &) = delete;
    Mailbox &operator=(const Mailbox &) = delete;

    /// Puts a letter in. From any thread, without the interpreter's lock.
    void put(Letter letter);
    /// No letter comes any more.
    void close();

    /// The next letter's object. Waits for one without the interpreter's lock; a signal such as
    /// Ctrl-C ends the wait with its handler's exception.
    /// @param seconds how long to wait; negative: for ever
    /// @return nothing when the time is over
    /// @throw pybind11::stop_iteration when the mailbox is closed and empty
    std::optional<pybind11::object> take(double seconds);

    /// A descriptor that is readable while take() would not wait.
    int descriptor() const;

private:
    void waitFor(double seconds) const;
    void turnLoop(double seconds) const;

    std::mutex m_mutex;
    std::deque<Letter> m_letters;
    bool m_isClosed = false;
    int m_descriptor;
};

} // namespace qelpython

#endif
