#ifndef RPC_FARSESSION_H
#define RPC_FARSESSION_H

#include "link.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <deque>

namespace qel::rpc {

/// The near end of the session of one device: brings every call to the far side, and every event
/// from there, once and in order.
///
/// Where the far side grants a grace, the session outlives its connection for that long; calls wait
/// meanwhile. Where it grants none, or does not answer in time, the session is lost.
class FarSession : public QObject
{
    Q_OBJECT

public:
    /// @param record the instrument, as the far side knows it
    /// @param link the connection, which may die before the session
    /// @param observes only hears what the instrument does for whoever has it open
    FarSession(wire::Record record, Link *link, bool observes = false);
    /// Leaves; the far device goes.
    ~FarSession() override;

    /// False while the far side is away. Nothing is called before.
    bool start();
    /// Calls the far side.
    /// @return the number of the call
    quint64 call(wire::Command command);
    /// Whether a call of the kind has not been answered yet.
    bool isWaitingFor(wire::Command::WhatCase what) const;

Q_SIGNALS:
    /// The far device says something. The receiver may delete the session.
    void told(const qel::rpc::wire::Event &event);
    /// A call has returned, with the result of open(). The receiver may delete the session.
    void answered(quint64 number, qel::rpc::wire::Command::WhatCase what, bool result);
    /// The session is over; the sentence with the id `infoTrId` says why.
    void lost(const QString &infoTrId);

private:
    struct Call
    {
        wire::Command command;
        QElapsedTimer age; // since it was sent
    };

    bool attach();
    void transmit(wire::Command command);
    void read();
    void hear(const wire::Event &event);
    void hearAnswer(const wire::Done &done);
    void resume(quint64 heard);
    void suspend();
    void lose(const char *infoTrId);
    void loseConnection();
    void watchDeadline();
    void expectAnswer();

    const wire::Record m_record;
    const QPointer<Link> m_link;
    const bool m_observes;
    std::string m_secret; // empty where the session ends with its stream
    std::shared_ptr<DriveClient> m_stream;
    bool m_isAttached = false; // over the present stream
    QElapsedTimer m_attachAge;
    std::deque<wire::Event> m_pending; // arrived and not yet heard
    std::deque<Call> m_calls;          // not yet answered
    quint64 m_lastCall = 0;
    quint64 m_heard = 0;     // the last event
    quint64 m_confirmed = 0; // the last event that the far side knows to have arrived
    QTimer m_deadline;       // of an answer, but for the last moment
    QTimer m_lastMoment;     // the rest
    QTimer m_grace;          // since the connection was lost
    QTimer m_retry;
    std::chrono::milliseconds m_nextPause;
};

} // namespace qel::rpc

#endif
