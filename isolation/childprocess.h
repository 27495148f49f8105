#ifndef QEL_ISOLATION_CHILDPROCESS_H
#define QEL_ISOLATION_CHILDPROCESS_H

#include <QtCore/QByteArray>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QObject>
#include <QtCore/QQueue>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <memory>
#include <optional>

class QProcess;

namespace qel::isolation {

/// What a child process may use. It never leaves a core file.
struct Limits
{
    quint64 memory = 0;                    ///< bytes of address space; 0: no limit
    std::chrono::seconds processorTime{0}; ///< 0: no limit
};

/// How a child process ended.
struct Ending
{
    enum Kind {
        NotStarted, ///< there is no such program, or it cannot be run
        Running,    ///< it has not ended yet
        Exited,     ///< by exit(), whoever has called it, or by returning from main()
        Crashed,    ///< by a signal
        Hung,       ///< ended from here, after a deadline
        Garbled,    ///< ended from here, since what it sent was no message
    };

    Kind kind = NotStarted;
    int code = 0; ///< the exit code, or the number of the signal

    /// Whether it has ended by itself with exit code 0.
    bool isClean() const
    {
        return kind == Exited && code == 0;
    }
    /// Half a sentence, for instance "the process ended with signal 11 (Segmentation fault)".
    QString text() const;
};

/// A process of one's own that may crash, hang or end as it likes, and exchanges messages.
///
/// Messages go both ways as bytes and arrive whole and in order. The child takes part with a
/// ParentLink. Its standard error is kept for lastWords().
///
/// Works with or without an event loop. Ctrl-C at a terminal does not reach the child; the end of
/// its parent does, as the end of its input. The destructor kills a child that still runs, together
/// with the children it has.
class ChildProcess : public QObject
{
    Q_OBJECT

public:
    explicit ChildProcess(QObject *parent = nullptr);
    ~ChildProcess() override;

    /// Starts `program`. False when there is no such program.
    bool start(const QString &program, const QStringList &arguments, const Limits &limits = {});
    /// Whether it runs.
    bool isRunning() const;

    /// Sends a message. It goes out from the event loop or from within receive().
    void send(const QByteArray &message);
    /// Takes the next message, waiting until `deadline` for it. Nothing when none came in time or
    /// when none can come any more; ending() tells which.
    std::optional<QByteArray> receive(QDeadlineTimer deadline = QDeadlineTimer(0));

    /// Lets the child read the end of its input, gives it until `deadline` to end by itself, kills
    /// it otherwise.
    Ending finish(QDeadlineTimer deadline);
    /// Kills it now; it counts as hung.
    Ending kill();
    /// How it has ended, as far as is known.
    Ending ending() const;
    /// The end of what it wrote to its standard error, at most some thousand bytes.
    QByteArray lastWords() const;

Q_SIGNALS:
    /// There are messages to receive().
    void received();
    /// The process has ended. What it sent before can still be received.
    void ended();

private:
    class Process;

    void readMessages();
    void readWords();
    void killGroup();

    std::unique_ptr<Process> m_process;
    QByteArray m_incomplete; // the beginning of a message
    QQueue<QByteArray> m_messages;
    QByteArray m_words;
    std::optional<Ending::Kind> m_endedHere;
};

} // namespace qel::isolation

#endif
