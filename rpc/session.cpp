#include "session.h"

#include "hosttrail.h"
#include "wire.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QPointer>

#include <utility>

namespace qel::rpc {

using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;

// A peer that is no friend must not fill the memory.
constexpr std::size_t maximumAttachment = 64 * 1024;

Session::Session(std::shared_ptr<DriveServer> stream, QString peer, DeviceServer *server)
    : QObject(server)
    , m_server(server)
    , m_gate(server->gate())
    , m_peer(std::move(peer))
    , m_stream(std::move(stream))
    , m_hasEntered(!m_gate || m_gate->enter(m_peer).isEmpty())
{
    connect(server, &DeviceServer::peersChecked, this, &Session::isLetIn);
    m_grace.setSingleShot(true);
    connect(&m_grace, &QTimer::timeout, this, &Session::abandon);
    m_stream->attach(this, [this] { read(); });
    if (!m_hasEntered)
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, QStringLiteral("too many devices at a time"));
}

Session::~Session()
{
    if (m_gate && m_hasEntered)
        m_gate->leave(m_peer);
    if (m_stream) {
        m_stream->detach();
        m_stream->finish(grpc::Status::OK);
    }
    // It has a last word for those who observe.
    m_device.reset();
}

void Session::read()
{
    const std::shared_ptr<DriveServer> stream = m_stream;
    if (!stream)
        return;
    const QPointer<Session> self(this);
    const bool isOver = stream->hasEnded();
    ++m_reading;
    const auto arrived = stream->take();
    m_pending.insert(m_pending.end(), arrived.cbegin(), arrived.cend());
    while (!m_pending.empty()) {
        const wire::Command command = std::move(m_pending.front());
        m_pending.pop_front();
        if (!m_hasEntered || !isLetIn() || !mayCall(command))
            break;
        hear(command);
        // A driver may run an event loop of its own, in which the peer goes on or goes away.
        if (!self)
            return;
    }
    --m_reading;
    if (isOver && m_stream == stream && !m_device && !m_isObserver && m_gate)
        m_gate->noteRefusal(m_peer, QLatin1String(noIntroduction));
    if ((isOver || m_hasLeft) && m_stream == stream)
        loseStream();
}

void Session::hear(const wire::Command &command)
{
    if (m_isObserver) {
        m_hasLeft = command.what_case() == wire::Command::kLeave;
        if (!m_hasLeft && command.number() != 0)
            reject(grpc::StatusCode::PERMISSION_DENIED,
                   QStringLiteral("who observes cannot operate"));
        return;
    }
    if (!m_device) {
        if (m_stream)
            attach(command.attach(), command.heard());
        return;
    }
    m_outbox.drop(command.heard());
    // One that came again over a new stream.
    if (command.number() <= m_heard)
        return;
    m_heard = command.number();
    if (command.what_case() == wire::Command::kLeave) {
        m_hasLeft = true;
        return;
    }
    const QPointer<Session> self(this);
    bool result = true;
    const grpc::Status status = m_device->call(command, &result);
    if (!self)
        return;
    if (!status.ok()) {
        reject(status.error_code(), fromWire(status.error_message()));
        return;
    }
    wire::Event done;
    done.mutable_done()->set_number(command.number());
    done.mutable_done()->set_result(result);
    send(std::move(done));
}

bool Session::isLetIn()
{
    const QString refusal = m_gate ? m_gate->refusal(m_peer) : QString();
    if (!refusal.isEmpty())
        refuse(grpc::StatusCode::PERMISSION_DENIED, refusal);
    return refusal.isEmpty();
}

bool Session::mayCall(const wire::Command &command)
{
    const QString refusal =
        m_gate ? m_gate->callRefusal(m_peer, command.ByteSizeLong()) : QString();
    if (!refusal.isEmpty())
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, refusal);
    return refusal.isEmpty();
}

void Session::attach(const wire::Attach &attach, quint64 heard)
{
    const QString problem = mismatch(attach.hello());
    if (!problem.isEmpty()) {
        reject(grpc::StatusCode::FAILED_PRECONDITION, problem);
        return;
    }
    if (attach.ByteSizeLong() > maximumAttachment) {
        reject(grpc::StatusCode::INVALID_ARGUMENT,
               QStringLiteral("no instrument has a name as long as this"));
        return;
    }
    const DeviceInfo info = fromWire(attach.record());
    m_instrument = info.driver() + QLatin1Char('/') + info.location();
    if (attach.observe()) {
        observe(info);
        return;
    }
    if (Session *const session = former(attach)) {
        session->m_pending = std::exchange(m_pending, {});
        session->resume(std::exchange(m_stream, nullptr), heard);
        deleteLater();
        return;
    }
    if (attach.again()) {
        reject(grpc::StatusCode::NOT_FOUND, QStringLiteral("the session is over"));
        return;
    }
    clearTheWay();
    if (!createDevice(info)) {
        reject(grpc::StatusCode::NOT_FOUND,
               QStringLiteral("there is no instrument at '%1'").arg(info.location()));
        return;
    }
    if (m_server->grace().count() > 0)
        m_secret = fromWire(attach.session());
    send(m_device->state());
}

bool Session::createDevice(const DeviceInfo &info)
{
    std::unique_ptr<Device> device;
    {
        const TrailMark mark(info.driver(), QStringLiteral("createDevice()"));
        device.reset(DeviceBroker::createDevice(info));
    }
    if (!device)
        return false;
    m_device = std::make_unique<ServedDevice>(std::move(device), m_peer, m_gate);
    connect(m_device.get(), &ServedDevice::said, this, &Session::onSaid);
    connect(m_device.get(), &ServedDevice::shown, this, &Session::tellObservers);
    connect(m_device.get(), &ServedDevice::disobeyed, this, &Session::deleteLater);
    return true;
}

void Session::observe(const DeviceInfo &info)
{
    m_isObserver = true;
    wire::Event state;
    *state.mutable_state()->mutable_hello() = hello();
    state.mutable_state()->set_name(toWire(info.name()));
    state.mutable_state()->set_serial(toWire(info.serial()));
    const auto others = sharers();
    for (const Session *session : others) {
        if (session->m_device && session->m_device->isLeased())
            state = session->m_device->state();
    }
    send(std::move(state));
}

void Session::tellObservers(const wire::Event &event) const
{
    const auto others = sharers();
    for (Session *session : others) {
        if (session->m_isObserver && session->m_stream)
            session->send(event, event.has_transient() ? event.transient().feature() + 1 : 0);
    }
}

// The other sessions on the same instrument.
QList<Session *> Session::sharers() const
{
    QList<Session *> others;
    const auto siblings = parent()->children();
    for (QObject *sibling : siblings) {
        auto *session = dynamic_cast<Session *>(sibling);
        if (session && session != this && !m_instrument.isEmpty()
            && session->m_instrument == m_instrument)
            others.append(session);
    }
    return others;
}

// The session that a peer attaches to again.
Session *Session::former(const wire::Attach &attach) const
{
    const QString secret = fromWire(attach.session());
    if (secret.isEmpty())
        return nullptr;
    const auto others = sharers();
    for (Session *session : others) {
        if (session->m_secret == secret && session->m_peer == m_peer && !session->m_isAbandoned)
            return session;
    }
    return nullptr;
}

// The peer may have noticed before this side that the former stream is of no use any more.
void Session::resume(std::shared_ptr<DriveServer> stream, quint64 heard)
{
    loseStream();
    m_grace.stop();
    m_stream = std::move(stream);
    m_stream->attach(this, [this] { read(); });
    m_outbox.drop(heard);
    wire::Event resumed;
    resumed.mutable_resumed()->set_heard(m_heard);
    transmit(std::move(resumed));
    m_outbox.forEach([this](const wire::Event &event) { transmit(event); });
    QMetaObject::invokeMethod(this, &Session::read, Qt::QueuedConnection);
}

// A peer that deletes a device and at once creates another on the same instrument finds it free,
// and so does one that was started again after a crash.
void Session::clearTheWay()
{
    const auto others = sharers();
    for (Session *session : others) {
        if (!session->m_device || session->m_peer != m_peer || session->m_reading != 0)
            continue;
        // It may be about to hear that the peer has left.
        const QPointer<Session> former(session);
        session->read();
        if (former && !former->m_device->isRunning() && (former->m_hasLeft || !former->m_stream))
            delete former;
    }
}

// The peer has gone, or only its connection, which it may make anew.
void Session::loseStream()
{
    if (!m_stream)
        return;
    m_stream->detach();
    m_stream->finish(grpc::Status::OK);
    m_stream = nullptr;
    if (m_secret.isEmpty() || m_hasLeft)
        abandon();
    else
        m_grace.start(m_server->grace());
}

// Nobody waits for the device any more.
void Session::abandon()
{
    if (m_isAbandoned)
        return;
    m_isAbandoned = true;
    m_outbox.clear();
    if (!m_gate || !m_device || !m_device->isRunning())
        deleteLater();
    else
        m_device->endRuns();
}

void Session::refuse(grpc::StatusCode code, const QString &why)
{
    if (m_stream) {
        // Nothing that it still says is done.
        m_stream->detach();
        m_stream->finish({code, toWire(why)});
        m_stream = nullptr;
    }
    m_pending.clear();
    m_secret.clear();
    if (m_device)
        m_device->release();
    deleteLater();
}

// For a reason that the gate does not know yet.
void Session::reject(grpc::StatusCode code, const QString &why)
{
    if (m_gate)
        m_gate->noteRefusal(m_peer, why);
    refuse(code, why);
}

void Session::onSaid(const wire::Event &event, int kind)
{
    send(event, kind);
    if (m_isAbandoned && !m_device->isRunning())
        deleteLater();
}

bool Session::transmit(wire::Event event, int kind)
{
    wire::Events message;
    *message.add_events() = std::move(event);
    return m_stream->send(std::move(message), kind);
}

void Session::send(wire::Event event, int kind)
{
    if (m_isAbandoned)
        return;
    m_texts.complete(&event);
    event.set_number(++m_lastEvent);
    bool fits = m_secret.isEmpty() || m_outbox.add(event, kind);
    if (m_stream)
        fits = transmit(std::move(event), kind) && fits;
    if (fits)
        return;
    if (m_stream)
        reject(grpc::StatusCode::RESOURCE_EXHAUSTED, QLatin1String(readsTooSlowly));
    // Of what the peer has missed, the results are kept all the same.
    m_secret.clear();
    m_outbox.clear();
}

} // namespace qel::rpc
