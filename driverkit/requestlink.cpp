#include "requestlink.h"

#include <qeldevices/logging.h>

#include <utility>

namespace qel::driver {

Q_LOGGING_CATEGORY(LogCBytes, "qel.devices.driver.bytes", QtInfoMsg)

// More than any message of an instrument: noise without an end of message must not fill the memory.
static const int maximumMessage = 16 * 1024 * 1024;

static int lineLength(const QByteArray &received)
{
    return received.indexOf('\n') + 1;
}

RequestLink::RequestLink(QObject *parent)
    : QObject(parent)
    , m_framing(lineLength)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RequestLink::timeOut);
}

void RequestLink::setConnection(QIODevice *connection)
{
    if (m_connection)
        m_connection->disconnect(this);
    m_connection = connection;
    m_queue.clear();
    m_timer.stop();
    m_state = State::Idle;
    m_received.clear();
    if (!connection)
        return;
    connect(connection, &QIODevice::readyRead, this, &RequestLink::read);
    connect(connection, &QIODevice::readChannelFinished, this, &RequestLink::setGone);
    connect(connection, &QIODevice::aboutToClose, this, &RequestLink::setGone);
}

void RequestLink::setFraming(Framing framing)
{
    m_framing = std::move(framing);
}

void RequestLink::setSettlingTime(std::chrono::milliseconds time)
{
    m_settlingTime = time;
}

bool RequestLink::isIdle() const
{
    return m_state == State::Idle && m_queue.isEmpty();
}

void RequestLink::send(Request request)
{
    m_queue.enqueue(std::move(request));
    if (m_state == State::Idle)
        sendNext();
}

void RequestLink::sendNext()
{
    m_state = State::Idle;
    m_unanswered = false;
    m_timer.stop();
    if (m_queue.isEmpty() || !m_connection)
        return;
    m_current = m_queue.dequeue();
    m_repetitionsLeft = m_current.repetitions;
    ask();
}

void RequestLink::ask()
{
    m_state = State::Waiting;
    m_timer.start(m_current.limit);
    write(m_current.bytes);
}

void RequestLink::write(const QByteArray &bytes)
{
    qCDebug(LogCBytes) << "->" << bytes;
    if (m_connection->write(bytes) != bytes.size())
        setGone();
}

void RequestLink::clear(const QByteArray &stop)
{
    m_queue.clear();
    if (m_state != State::Waiting)
        return;
    m_state = State::GivenUp;
    if (stop.isEmpty())
        return;
    settle();
    write(stop);
}

void RequestLink::read()
{
    const QPointer<RequestLink> alive(this);
    m_received += m_connection->readAll();
    while (alive && m_connection) {
        const int length = m_framing(m_received);
        if (length <= 0 || length > m_received.size())
            break;
        const QByteArray message = m_received.left(length);
        m_received.remove(0, length);
        qCDebug(LogCBytes) << "<-" << message;
        take(message);
    }
    if (alive && m_received.size() > maximumMessage) {
        qCWarning(LogCDriver) << "Discarded" << m_received.size()
                              << "bytes without an end of message.";
        m_received.clear();
    }
}

void RequestLink::take(const QByteArray &message)
{
    const bool fits = !m_current.accepts || m_current.accepts(message);
    switch (m_state) {
    case State::Idle:
        emit unasked(message);
        return;
    case State::Settling:
        if (m_unanswered)
            qCWarning(LogCDriver) << "Discarded a late answer:" << message;
        settle();
        return;
    case State::GivenUp:
        if (fits)
            settle(); // more of it may follow
        return;
    case State::Waiting:
        break;
    }
    if (!fits) {
        qCWarning(LogCDriver) << "Discarded what is no answer to" << m_current.bytes << ":"
                              << message;
        return;
    }
    m_timer.start(m_current.limit);
    // A copy: the call may give the request up, or let go of the connection.
    const auto answered = m_current.answered;
    const QPointer<RequestLink> alive(this);
    const bool isDone = !answered || answered(message);
    if (alive && isDone && m_state == State::Waiting)
        sendNext();
    else if (alive && isDone && m_state == State::GivenUp)
        sendNext(); // given up by its last answer: nothing is owed
}

void RequestLink::timeOut()
{
    switch (m_state) {
    case State::Idle:
        return;
    case State::Settling:
        sendNext();
        return;
    case State::GivenUp:
        m_unanswered = true;
        settle();
        return;
    case State::Waiting:
        break;
    }
    if (m_repetitionsLeft > 0) {
        --m_repetitionsLeft;
        ask();
        return;
    }
    m_unanswered = true;
    settle();
    if (const auto unanswered = m_current.unanswered)
        unanswered();
}

// What is still on its way must not be taken for the next answer.
void RequestLink::settle()
{
    m_state = State::Settling;
    m_received.clear();
    m_timer.start(m_settlingTime);
}

void RequestLink::setGone()
{
    if (!m_connection)
        return;
    setConnection(nullptr);
    emit gone();
}

} // namespace qel::driver
