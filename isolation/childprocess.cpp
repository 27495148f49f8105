#include "childprocess.h"

#include "frame_p.h"

#include <QtCore/QProcess>

#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <unistd.h>

namespace qel::isolation {

constexpr int maximumWords = 8192;

QString Ending::text() const
{
    switch (kind) {
    case NotStarted:
        return QStringLiteral("the process could not be started");
    case Running:
        return QStringLiteral("the process is running");
    case Exited:
        return QStringLiteral("the process was ended by exit(%1)").arg(code);
    case Crashed:
        return QStringLiteral("the process ended with signal %1 (%2)")
            .arg(code)
            .arg(QString::fromLocal8Bit(::strsignal(code)));
    case Hung:
        return QStringLiteral("the process did not come back");
    case Garbled:
        return QStringLiteral("the process sent something that is no message");
    }
    return QString();
}

class ChildProcess::Process : public QProcess
{
public:
    Limits limits;

protected:
    // Between fork() and exec(): nothing but plain system calls.
    void setupChildProcess() override
    {
        // A group of its own, so that its children can be ended along with it.
        ::setpgid(0, 0);
        limit(RLIMIT_CORE, 0);
        if (limits.memory > 0)
            limit(RLIMIT_AS, limits.memory);
        if (limits.processorTime.count() > 0)
            limit(RLIMIT_CPU, rlim_t(limits.processorTime.count()));
    }

private:
    static void limit(int what, rlim_t value)
    {
        const rlimit both = {value, value};
        ::setrlimit(__rlimit_resource_t(what), &both);
    }
};

ChildProcess::ChildProcess(QObject *parent)
    : QObject(parent)
    , m_process(std::make_unique<Process>())
{
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &ChildProcess::readMessages);
    connect(m_process.get(), &QProcess::readyReadStandardError, this, &ChildProcess::readWords);
    connect(m_process.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this] {
                readMessages();
                readWords();
                emit ended();
            });
}

ChildProcess::~ChildProcess()
{
    m_process->disconnect(this);
    if (isRunning())
        kill();
}

bool ChildProcess::start(const QString &program, const QStringList &arguments, const Limits &limits)
{
    m_process->limits = limits;
    m_process->start(program, arguments);
    return m_process->waitForStarted();
}

bool ChildProcess::isRunning() const
{
    return m_process->state() != QProcess::NotRunning;
}

void ChildProcess::send(const QByteArray &message)
{
    char length[sizeof(FrameLength)];
    qToBigEndian(FrameLength(message.size()), length);
    m_process->write(length, sizeof length);
    m_process->write(message);
}

std::optional<QByteArray> ChildProcess::receive(QDeadlineTimer deadline)
{
    while (m_messages.isEmpty() && isRunning()) {
        if (m_process->waitForReadyRead(int(deadline.remainingTime())))
            continue;
        // Its output may have ended a moment before the process itself.
        if (deadline.hasExpired() || !m_process->waitForFinished(int(deadline.remainingTime())))
            break;
    }
    return m_messages.isEmpty() ? std::nullopt : std::optional(m_messages.dequeue());
}

void ChildProcess::readMessages()
{
    if (m_endedHere == Ending::Garbled)
        return;
    m_incomplete += m_process->readAllStandardOutput();
    const int before = m_messages.size();
    int start = 0;
    while (m_incomplete.size() - start >= int(sizeof(FrameLength))) {
        const auto length = qFromBigEndian<FrameLength>(m_incomplete.constData() + start);
        if (length > maximumFrameLength) {
            m_endedHere = Ending::Garbled;
            killGroup();
            break;
        }
        const int next = start + int(sizeof(FrameLength) + length);
        if (m_incomplete.size() < next)
            break;
        m_messages.enqueue(m_incomplete.mid(start + int(sizeof(FrameLength)), int(length)));
        start = next;
    }
    m_incomplete.remove(0, start);
    if (m_messages.size() > before)
        emit received();
}

void ChildProcess::readWords()
{
    m_words = (m_words + m_process->readAllStandardError()).right(maximumWords);
}

void ChildProcess::killGroup()
{
    const auto id = pid_t(m_process->processId());
    if (id > 0)
        ::kill(-id, SIGKILL);
    m_process->kill(); // should it not have got as far as its group
}

Ending ChildProcess::finish(QDeadlineTimer deadline)
{
    m_process->closeWriteChannel();
    if (isRunning() && !m_process->waitForFinished(int(deadline.remainingTime())) && isRunning())
        return kill();
    return ending();
}

Ending ChildProcess::kill()
{
    if (isRunning()) {
        if (!m_endedHere)
            m_endedHere = Ending::Hung;
        killGroup();
        m_process->waitForFinished(-1);
    }
    return ending();
}

Ending ChildProcess::ending() const
{
    if (m_endedHere)
        return {*m_endedHere, SIGKILL};
    if (m_process->error() == QProcess::FailedToStart)
        return {Ending::NotStarted, 0};
    if (isRunning())
        return {Ending::Running, 0};
    const bool isCrash = m_process->exitStatus() == QProcess::CrashExit;
    return {isCrash ? Ending::Crashed : Ending::Exited, m_process->exitCode()};
}

QByteArray ChildProcess::lastWords() const
{
    return m_words;
}

} // namespace qel::isolation
