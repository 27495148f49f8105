#include "farsession.h"

#include "wire.h"

#include <qeldevices/logging.h>

#include <QtCore/QUuid>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;

static const char lostText[] = "qel-remote-lost";
static const char serverLostText[] = "qel-remote-server-lost";
static const char silentText[] = "qel-remote-silent";

constexpr std::chrono::milliseconds firstPause = 100ms;
constexpr std::chrono::milliseconds longestPause = 5s;
// The far side keeps what it does not know to have arrived.
constexpr quint64 longestSilence = 64; // events

FarSession::FarSession(wire::Record record, Link *link, bool observes)
    : m_record(std::move(record))
    , m_link(link)
    , m_observes(observes)
    , m_nextPause(firstPause)
{
    for (QTimer *timer : {&m_deadline, &m_lastMoment, &m_grace, &m_retry})
        timer->setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        if (m_link && !m_lastMoment.isActive())
            m_lastMoment.start(m_link->lastMoment());
    });
    connect(&m_lastMoment, &QTimer::timeout, this, &FarSession::watchDeadline);
    connect(&m_grace, &QTimer::timeout, this, [this] { loseConnection(); });
    connect(&m_retry, &QTimer::timeout, this, &FarSession::attach);
    if (!link)
        return;
    connect(link, &Link::ready, this, [this] {
        if (m_grace.isActive() && !m_stream)
            attach();
    });
    connect(link, &Link::silent, this, [this] {
        if (m_stream && !m_secret.empty())
            suspend();
    });
}

FarSession::~FarSession()
{
    if (!m_stream)
        return;
    m_stream->detach();
    wire::Command command;
    command.mutable_leave();
    command.set_number(++m_lastCall);
    transmit(std::move(command));
    m_stream->hangUp();
}

bool FarSession::start()
{
    if (m_link && m_link->grace().count() > 0)
        m_secret = toWire(QUuid::createUuid().toString(QUuid::WithoutBraces));
    return attach();
}

bool FarSession::attach()
{
    if (m_link && !m_stream)
        m_stream = m_link->drive();
    if (!m_stream)
        return false;
    m_stream->attach(this, [this] { read(); });
    wire::Command command;
    wire::Attach *attach = command.mutable_attach();
    *attach->mutable_hello() = hello();
    *attach->mutable_record() = m_record;
    attach->set_session(m_secret);
    // Where nothing can have happened there yet, a new session does as well.
    attach->set_observe(m_observes);
    attach->set_again(
        !m_observes
        && (m_heard > 0 || (m_grace.isActive() && isWaitingFor(wire::Command::kExecute))));
    // The events of another session count from 1 again.
    if (m_observes)
        m_heard = 0;
    transmit(std::move(command));
    m_attachAge.start();
    expectAnswer();
    return true;
}

void FarSession::transmit(wire::Command command)
{
    command.set_heard(m_heard);
    m_confirmed = m_heard;
    m_stream->send(std::move(command));
}

quint64 FarSession::call(wire::Command command)
{
    command.set_number(++m_lastCall);
    Call call{command, {}};
    call.age.start();
    m_calls.push_back(std::move(call));
    // The first ones follow at once, later ones when it is known what has arrived.
    if (m_stream && (m_isAttached || !m_grace.isActive())) {
        transmit(std::move(command));
        expectAnswer();
    }
    return m_lastCall;
}

bool FarSession::isWaitingFor(wire::Command::WhatCase what) const
{
    return std::any_of(m_calls.cbegin(), m_calls.cend(),
                       [what](const Call &call) { return call.command.what_case() == what; });
}

void FarSession::read()
{
    const std::shared_ptr<DriveClient> stream = m_stream;
    if (!stream)
        return;
    const QPointer<FarSession> self(this);
    const bool isOver = stream->hasEnded();
    const auto arrived = stream->take();
    for (const wire::Events &events : arrived)
        m_pending.insert(m_pending.end(), events.events().begin(), events.events().end());
    // Who hears of one may run an event loop, in which the next one is heard.
    while (!m_pending.empty()) {
        const wire::Event event = std::move(m_pending.front());
        m_pending.pop_front();
        hear(event);
        if (!self || m_stream != stream)
            return;
    }
    if (isOver) {
        const grpc::Status status = stream->status();
        if (!status.ok())
            qCDebug(LogCDriver) << "The connection to" << fromWire(m_record.location())
                                << "has ended:" << fromWire(status.error_message());
        // Everything else is what the far side has to say.
        const bool isBroken = status.error_code() == grpc::StatusCode::UNAVAILABLE
            || status.error_code() == grpc::StatusCode::CANCELLED
            || status.error_code() == grpc::StatusCode::INTERNAL
            || status.error_code() == grpc::StatusCode::UNKNOWN;
        if (isBroken && !m_secret.empty())
            suspend();
        else
            loseConnection();
    } else if (!m_secret.empty() && m_isAttached && m_heard - m_confirmed >= longestSilence) {
        transmit({});
    }
}

void FarSession::hear(const wire::Event &event)
{
    if (event.has_resumed()) {
        resume(event.resumed().heard());
        return;
    }
    // One that came again over a new stream.
    if (event.number() <= m_heard)
        return;
    m_heard = event.number();
    if (event.has_state() && !m_isAttached)
        resume(0);
    if (event.has_done())
        hearAnswer(event.done());
    else
        emit told(event);
}

void FarSession::hearAnswer(const wire::Done &done)
{
    if (m_calls.empty() || m_calls.front().command.number() != done.number())
        return;
    const auto what = m_calls.front().command.what_case();
    m_calls.pop_front();
    expectAnswer();
    emit answered(done.number(), what, done.result());
}

// The session has its stream; the far side knows the calls up to `heard`.
void FarSession::resume(quint64 heard)
{
    m_isAttached = true;
    m_nextPause = firstPause;
    const bool wasAway = m_grace.isActive();
    m_grace.stop();
    for (Call &call : m_calls) {
        if (!wasAway)
            break;
        call.age.start();
        if (call.command.number() > heard)
            transmit(call.command);
    }
    expectAnswer();
}

// The connection is lost, the session is not yet.
void FarSession::suspend()
{
    m_stream->detach();
    m_stream->cancel();
    m_stream = nullptr;
    m_pending.clear();
    m_isAttached = false;
    m_deadline.stop();
    if (!m_link) {
        loseConnection();
        return;
    }
    if (!m_grace.isActive())
        m_grace.start(m_link->grace());
    // Otherwise it attaches when the link is ready.
    if (m_link->isReady())
        m_retry.start(m_nextPause);
    m_nextPause = std::min(2 * m_nextPause, longestPause);
}

void FarSession::lose(const char *infoTrId)
{
    if (m_stream) {
        m_stream->detach();
        m_stream->cancel();
    }
    m_stream = nullptr;
    m_calls.clear();
    for (QTimer *timer : {&m_deadline, &m_lastMoment, &m_grace, &m_retry})
        timer->stop();
    emit lost(QLatin1String(infoTrId));
}

// A session that outlives its connection is one with a server, which keeps results.
void FarSession::loseConnection()
{
    lose(m_secret.empty() ? lostText : serverLostText);
}

void FarSession::expectAnswer()
{
    m_deadline.stop();
    if (!m_link || !m_stream || (m_isAttached && m_calls.empty()))
        return;
    const QElapsedTimer &oldest = m_isAttached ? m_calls.front().age : m_attachAge;
    const auto left =
        m_link->deadline() - m_link->lastMoment() - std::chrono::milliseconds(oldest.elapsed());
    m_deadline.start(std::max(left, 0ms));
}

void FarSession::watchDeadline()
{
    const QPointer<FarSession> self(this);
    // This thread itself may have been held up, with the answers waiting.
    read();
    if (!self || !m_link || !m_stream || (m_isAttached && m_calls.empty()))
        return;
    const QElapsedTimer &oldest = m_isAttached ? m_calls.front().age : m_attachAge;
    if (oldest.elapsed() < m_link->deadline().count()) {
        expectAnswer();
        return;
    }
    const QString call =
        m_isAttached ? callName(m_calls.front().command) : QStringLiteral("createDevice()");
    const QPointer<Link> link = m_link;
    if (m_secret.empty())
        lose(silentText);
    else
        suspend();
    if (link)
        link->reportSilence(call);
}

} // namespace qel::rpc
