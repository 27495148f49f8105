/// @file
/// Requests to an instrument, and their answers, over any QIODevice.
#ifndef QELDRIVER_REQUESTLINK_H
#define QELDRIVER_REQUESTLINK_H

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QLoggingCategory>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QQueue>
#include <QtCore/QTimer>

#include <chrono>
#include <functional>

namespace qel::driver {

/// Category "qel.devices.driver.bytes": all that goes over a RequestLink, at debug level. Off
/// unless a logging rule switches it on.
const QLoggingCategory &LogCBytes();

/// Sends requests to an instrument, one after another, and hands each the answer that belongs to
/// it.
///
/// An instrument that answers request by request leaves no doubt whose answer comes, as long as no
/// answer is late. So a request that was given up keeps the line until its answer has come or its
/// time has passed, and after a silence the line must be quiet for a while; what comes in between
/// is discarded, with a warning in "qel.devices.driver". No answer is ever taken for another's.
///
/// Lives in the thread of its connection and needs its event loop.
class RequestLink : public QObject
{
    Q_OBJECT

public:
    /// Finds the first whole message at the beginning of `received`: its length with everything
    /// that ends it, or 0 while it is not whole.
    using Framing = std::function<int(const QByteArray &received)>;

    /// What is to be sent, and what becomes of it.
    struct Request
    {
        QByteArray bytes; ///< as they go out, with everything that ends a message
        /// Gets the answer, as it came in. Returns whether the request is done: false keeps it
        /// waiting for more, with its time begun anew, as for wells that are streamed.
        std::function<bool(const QByteArray &answer)> answered;
        /// Called once, instead, when no answer came in time, the last repetition included.
        std::function<void()> unanswered;
        /// Whether `message` can be an answer to this request at all; one that cannot, such as that
        /// to an earlier request, is discarded. Without it, every message can. What is an answer
        /// and wrong, such as one with a wrong checksum, is for `answered` to judge.
        std::function<bool(const QByteArray &message)> accepts;
        std::chrono::milliseconds limit{1000}; ///< from sending to each answer
        int repetitions = 0; ///< how often it is sent again; only for what does no harm twice
    };

    /// Without a connection.
    explicit RequestLink(QObject *parent = nullptr);

    /// Uses `connection`, which is open or about to be, belongs to the caller, and is used by
    /// nobody else. Forgets all requests. Null lets go of the one before.
    ///
    /// A connection that is deleted is a lost one. Where both are members of a device, declare the
    /// connection first, so that it is deleted last: nobody is to hear of that.
    void setConnection(QIODevice *connection);
    /// How messages are told apart; lines that end with '\n' unless set otherwise.
    void setFraming(Framing framing);
    /// How long the line must be quiet after a request without an answer; 300 ms unless set.
    void setSettlingTime(std::chrono::milliseconds time);

    /// Sends `request` when those before are done.
    void send(Request request);
    /// Gives up all requests, without a call. What still comes for the one under way is discarded.
    /// @param stop sent at once when a request is under way, for an instrument that can be stopped;
    /// empty for nothing
    void clear(const QByteArray &stop = {});
    /// Whether nothing is under way or waiting.
    bool isIdle() const;

public Q_SLOTS:
    /// Declares the connection lost, for connections that say so with signals of their own
    /// (`QSerialPort::errorOccurred()` with a ResourceError).
    void setGone();

Q_SIGNALS:
    /// The connection is lost: closed by the other end, or not writable. All requests are forgotten
    /// without a call.
    void gone();
    /// A message that nobody has asked for.
    void unasked(const QByteArray &message);

private:
    enum class State { Idle, Waiting, GivenUp, Settling };

    void sendNext();
    void ask();
    void write(const QByteArray &bytes);
    void read();
    void take(const QByteArray &message);
    void timeOut();
    void settle();

    QPointer<QIODevice> m_connection;
    Framing m_framing;
    QQueue<Request> m_queue; // the first is under way unless idle or settling
    Request m_current;
    int m_repetitionsLeft = 0;
    State m_state = State::Idle;
    bool m_unanswered = false; // while settling: because an answer is missing
    QByteArray m_received;
    QTimer m_timer;
    std::chrono::milliseconds m_settlingTime{300};
};

} // namespace qel::driver

#endif
