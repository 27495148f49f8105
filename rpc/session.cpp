#include "session.h"

#include "hosttrail.h"
#include "wire.h"

#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QPointer>
#include <QtCore/QSysInfo>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;
using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;

// For a run that nobody waits for any more to obey one step.
constexpr std::chrono::milliseconds patience = 5s;

// A peer that is no friend must not fill the memory.
constexpr std::size_t maximumAttachment = 64 * 1024;
constexpr quint64 maximumConfiguration = 64 * 1024 * 1024; // of all features together

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
    connect(&m_ladder, &QTimer::timeout, this, &Session::climb);
    m_stream->attach(this, [this] { read(); });
    if (!m_hasEntered)
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, QStringLiteral("too many devices at a time"));
}

Session::~Session()
{
    if (m_gate && m_hasEntered)
        m_gate->leave(m_peer);
    for (const QString &name : qAsConst(m_keptResults))
        m_gate->noteKept(m_peer, name);
    release();
    if (m_stream) {
        m_stream->detach();
        m_stream->finish(grpc::Status::OK);
    }
    if (!m_device)
        return;
    const TrailMark mark(m_device->driver(), QStringLiteral("~Device()"));
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
    wire::Event done;
    done.mutable_done()->set_number(command.number());
    {
        const TrailMark mark(m_device->driver(), callName(command));
        done.mutable_done()->set_result(call(command));
    }
    if (self)
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
    {
        const TrailMark mark(info.driver(), QStringLiteral("createDevice()"));
        m_device.reset(DeviceBroker::createDevice(info));
    }
    if (!m_device) {
        reject(grpc::StatusCode::NOT_FOUND,
               QStringLiteral("there is no instrument at '%1'").arg(info.location()));
        return;
    }
    if (m_server->grace().count() > 0)
        m_secret = fromWire(attach.session());
    m_events.emplace(*m_device);
    values::observe(m_device.get(), this, [this](const values::Event &said) { onSaid(said); });
    wire::Event state = m_events->state();
    writePlugin(state.mutable_state());
    send(std::move(state));
}

// Whoever has a gate serves other machines.
void Session::writePlugin(wire::State *state) const
{
    const QVariantMap far = m_device->property(pluginProperty).toMap();
    if (far.isEmpty())
        return;
    const auto text = [&](const char *key) { return far.value(QLatin1String(key)).toString(); };
    wire::Plugin *plugin = state->mutable_plugin();
    plugin->set_file(toWire(m_gate ? QSysInfo::machineHostName() + QLatin1Char(':') + text("file")
                                   : text("file")));
    plugin->set_manufacturer(toWire(text("manufacturer")));
    plugin->set_version(toWire(text("version")));
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
        if (session->m_isOperator)
            state = session->m_events->state();
    }
    send(std::move(state));
}

void Session::tellObservers(const wire::Event &event) const
{
    if (!m_isOperator)
        return;
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
        if (former && former->m_runs.isEmpty() && (former->m_hasLeft || !former->m_stream))
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
    if (!m_gate || m_runs.isEmpty())
        deleteLater();
    else
        climb();
}

// Until the device obeys. Each step may bring the end about.
void Session::climb()
{
    const QPointer<Session> self(this);
    m_ladder.start(patience);
    const auto actions = std::exchange(m_openActions, {});
    for (const int action : actions) {
        m_device->abortAction(action);
        if (!self)
            return;
    }
    if (m_rung == 0 && actions.isEmpty())
        ++m_rung;
    switch (m_rung++) {
    case 0:
        return;
    case 1:
        m_device->reset();
        return;
    case 2:
        m_device->close();
        return;
    default:
        deleteLater();
    }
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
    release();
    deleteLater();
}

// For a reason that the gate does not know yet.
void Session::reject(grpc::StatusCode code, const QString &why)
{
    if (m_gate)
        m_gate->noteRefusal(m_peer, why);
    refuse(code, why);
}

void Session::release()
{
    if (!m_gate)
        return;
    wire::Event idle;
    idle.set_busy(false);
    tellObservers(idle);
    wire::Event closed;
    closed.set_open(false);
    tellObservers(closed);
    m_isOperator = false;
    m_gate->release(this);
}

// What open() returned, true for everything else.
bool Session::call(const wire::Command &command)
{
    switch (command.what_case()) {
    case wire::Command::kConfiguration:
        configure(command.configuration());
        return true;
    case wire::Command::kOpen:
        return open();
    case wire::Command::kClose:
        m_device->close();
        return true;
    case wire::Command::kUpdate:
        m_device->update();
        return true;
    case wire::Command::kReset:
        m_device->reset();
        return true;
    case wire::Command::kExecute:
        execute(Feature(command.execute()));
        return true;
    case wire::Command::kConfirm:
        m_openActions.remove(command.confirm());
        m_device->confirmAction(command.confirm());
        return true;
    case wire::Command::kAbort:
        m_openActions.remove(command.abort());
        m_device->abortAction(command.abort());
        return true;
    case wire::Command::kReceived:
        forget(command.received());
        return true;
    case wire::Command::kAttach:
    case wire::Command::kLeave:
    case wire::Command::WHAT_NOT_SET:
        break;
    }
    reject(grpc::StatusCode::INVALID_ARGUMENT,
           QStringLiteral("a command that makes no sense here"));
    return false;
}

bool Session::open()
{
    if (!m_gate)
        return m_device->open();
    const wire::Text text = m_gate->acquire(m_peer, this, m_device->deviceInfo());
    if (text.id().empty()) {
        m_isOperator = true;
        const bool isAccepted = m_device->open();
        if (!isAccepted)
            release();
        return isAccepted;
    }
    sendError(devices::ERROR_DEVICE_CANT_OPEN, text);
    return false;
}

// One that is not the device's.
void Session::sendError(int code, const wire::Text &text)
{
    wire::Event event;
    *event.add_texts() = text;
    event.mutable_error()->set_code(code);
    event.mutable_error()->set_info(text.id());
    send(std::move(event));
}

void Session::configure(const wire::FeatureValue &value)
{
    QString problem;
    const auto configuration = fromWire(value.value(), &problem);
    if (!configuration) {
        reject(grpc::StatusCode::INVALID_ARGUMENT, problem);
        return;
    }
    constexpr quint64 entrySize = 1024;
    quint64 &size = m_configurations[value.feature()];
    m_configurationSize -= std::exchange(size, value.ByteSizeLong() + entrySize);
    m_configurationSize += size;
    if (m_configurationSize > maximumConfiguration) {
        reject(grpc::StatusCode::RESOURCE_EXHAUSTED,
               QStringLiteral("the configurations of all features are too large together"));
        return;
    }
    m_isConfiguring = true;
    m_device->setConfiguration(Feature(value.feature()), *configuration);
    m_isConfiguring = false;
}

void Session::execute(Feature feature)
{
    const wire::Text refusal = m_gate ? m_gate->executeRefusal(m_peer, feature) : wire::Text();
    if (!refusal.id().empty()) {
        sendError(devices::ERROR_DEVICE_VENDOR_SPECIFIC, refusal);
        wire::Event event;
        event.mutable_executed()->set_feature(feature);
        *event.mutable_executed()->mutable_result() = toWire(QVariant());
        send(std::move(event));
        return;
    }
    m_runs.append(begin(feature));
    if (m_gate)
        m_gate->noteStart(m_peer, *m_device, m_runs.constLast());
    m_device->execute(feature);
}

FarRun Session::begin(Feature feature) const
{
    FarRun run{feature,
               m_device->descriptor(feature),
               m_device->configuration(feature),
               QDateTime::currentDateTimeUtc(),
               {}};
    run.clock.start();
    return run;
}

void Session::onSaid(const values::Event &said)
{
    using Said = values::Event;
    wire::Event event = m_events->event(said);
    const quint64 kept = said.kind == Said::Executed ? keep(said) : 0;
    // They cannot answer a request.
    if (event.what_case() != wire::Event::WHAT_NOT_SET && !event.has_action())
        tellObservers(event);
    if (kept != 0)
        event.mutable_executed()->set_number(kept);
    // The peer has said so itself.
    const bool isEcho = said.kind == Said::ConfigurationChanged && m_isConfiguring;
    if (event.what_case() != wire::Event::WHAT_NOT_SET && !isEcho)
        send(std::move(event), DeviceEvents::kindOf(said));
    if (said.kind == Said::ActionRequired) {
        m_openActions.insert(said.actionId);
        // There is nobody left to ask.
        if (m_isAbandoned)
            QMetaObject::invokeMethod(
                this, [this, id = said.actionId] { m_device->abortAction(id); },
                Qt::QueuedConnection);
    }
    // Nothing comes of an open() that ends in an error.
    const bool isOver = (said.kind == Said::OpenChanged && !said.flag)
        || (said.kind == Said::ErrorChanged && said.errorCode != 0 && !said.isOpen);
    if (isOver)
        release();
    if (m_isAbandoned && m_runs.isEmpty())
        deleteLater();
}

// The number by which the peer is to tell that it has the result.
quint64 Session::keep(const values::Event &said)
{
    const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const FarRun &candidate) {
        return candidate.feature == said.feature;
    });
    // Instruments with a button run by themselves, too.
    const FarRun run = found != m_runs.end() ? *found : begin(said.feature);
    if (found != m_runs.end())
        m_runs.erase(found);
    if (!m_gate)
        return 0;
    // On disk before anybody is told, the log included.
    const QString name =
        said.flag ? m_gate->keepResult(m_peer, *m_device, run, said.value) : QString();
    m_gate->noteRun(m_peer, *m_device, run, said.flag);
    if (name.isEmpty())
        return 0;
    m_keptResults.insert(++m_lastResult, name);
    return m_lastResult;
}

void Session::forget(quint64 result)
{
    const QString name = m_keptResults.take(result);
    if (!name.isEmpty())
        m_gate->dropResult(name);
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
        reject(grpc::StatusCode::RESOURCE_EXHAUSTED,
               QStringLiteral("the peer reads too slowly to be served"));
    // Of what the peer has missed, the results are kept all the same.
    m_secret.clear();
    m_outbox.clear();
}

} // namespace qel::rpc
