#include "serveddevice.h"

#include "hosttrail.h"
#include "wire.h"

#include <qeldevices/deviceerrors.h>

#include <QtCore/QPointer>
#include <QtCore/QSysInfo>

#include <algorithm>
#include <chrono>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;
using devices::Device;

// For a run that nobody waits for any more to obey one step.
constexpr std::chrono::milliseconds patience = 5s;
// A peer that is no friend must not fill the memory.
constexpr quint64 maximumConfiguration = 64 * 1024 * 1024; // of all features together

ServedDevice::ServedDevice(std::unique_ptr<Device> device, QString peer, Gate *gate)
    : m_peer(std::move(peer))
    , m_gate(gate)
    , m_device(std::move(device))
    , m_events(*m_device)
{
    connect(&m_ladder, &QTimer::timeout, this, &ServedDevice::climb);
    values::observe(m_device.get(), this, [this](const values::Event &said) { onSaid(said); });
}

ServedDevice::~ServedDevice()
{
    for (const QString &name : qAsConst(m_keptResults))
        m_gate->noteKept(m_peer, name);
    release();
    const TrailMark mark(m_device->driver(), QStringLiteral("~Device()"));
    m_device.reset();
}

// Whoever has a gate serves other machines.
static wire::Plugin pluginOf(const Device &device, bool isForOthers)
{
    const QVariantMap far = device.property(pluginProperty).toMap();
    const auto text = [&](const char *key) { return far.value(QLatin1String(key)).toString(); };
    wire::Plugin plugin;
    plugin.set_file(toWire(isForOthers
                               ? QSysInfo::machineHostName() + QLatin1Char(':') + text("file")
                               : text("file")));
    plugin.set_manufacturer(toWire(text("manufacturer")));
    plugin.set_version(toWire(text("version")));
    return plugin;
}

wire::Event ServedDevice::state() const
{
    wire::Event state = m_events.state();
    if (m_device->property(pluginProperty).isValid())
        *state.mutable_state()->mutable_plugin() = pluginOf(*m_device, m_gate != nullptr);
    return state;
}

grpc::Status ServedDevice::call(const wire::Command &command, bool *result)
{
    const TrailMark mark(m_device->driver(), callName(command));
    switch (command.what_case()) {
    case wire::Command::kConfiguration:
        return configure(command.configuration());
    case wire::Command::kOpen:
        *result = open();
        return grpc::Status::OK;
    case wire::Command::kClose:
        m_device->close();
        return grpc::Status::OK;
    case wire::Command::kUpdate:
        m_device->update();
        return grpc::Status::OK;
    case wire::Command::kReset:
        m_device->reset();
        return grpc::Status::OK;
    case wire::Command::kExecute:
        execute(Feature(command.execute()));
        return grpc::Status::OK;
    case wire::Command::kConfirm:
        m_openActions.remove(command.confirm());
        m_device->confirmAction(command.confirm());
        return grpc::Status::OK;
    case wire::Command::kAbort:
        m_openActions.remove(command.abort());
        m_device->abortAction(command.abort());
        return grpc::Status::OK;
    case wire::Command::kReceived:
        forget(command.received());
        return grpc::Status::OK;
    case wire::Command::kAttach:
    case wire::Command::kLeave:
    case wire::Command::WHAT_NOT_SET:
        break;
    }
    return {grpc::StatusCode::INVALID_ARGUMENT, "a command that makes no sense here"};
}

grpc::Status ServedDevice::configure(const wire::FeatureValue &value)
{
    QString problem;
    const auto configuration = fromWire(value.value(), &problem);
    if (!configuration)
        return {grpc::StatusCode::INVALID_ARGUMENT, toWire(problem)};
    constexpr quint64 entrySize = 1024;
    quint64 &size = m_configurations[value.feature()];
    m_configurationSize -= std::exchange(size, value.ByteSizeLong() + entrySize);
    m_configurationSize += size;
    if (m_configurationSize > maximumConfiguration)
        return {grpc::StatusCode::RESOURCE_EXHAUSTED,
                "the configurations of all features are too large together"};
    m_isConfiguring = true;
    m_device->setConfiguration(Feature(value.feature()), *configuration);
    m_isConfiguring = false;
    return grpc::Status::OK;
}

bool ServedDevice::open()
{
    if (!m_gate)
        return m_device->open();
    const wire::Text refusal = m_gate->acquire(m_peer, this, m_device->deviceInfo());
    if (!refusal.id().empty()) {
        sayError(devices::ERROR_DEVICE_CANT_OPEN, refusal);
        return false;
    }
    m_isLeased = true;
    const bool isAccepted = m_device->open();
    if (!isAccepted)
        release();
    return isAccepted;
}

bool ServedDevice::isLeased() const
{
    return m_isLeased;
}

void ServedDevice::release()
{
    if (!m_gate)
        return;
    wire::Event idle;
    idle.set_busy(false);
    show(idle);
    wire::Event closed;
    closed.set_open(false);
    show(closed);
    m_isLeased = false;
    m_gate->release(this);
}

void ServedDevice::show(const wire::Event &event)
{
    if (m_isLeased)
        emit shown(event);
}

// One that is not the device's.
void ServedDevice::sayError(int code, const wire::Text &text)
{
    wire::Event event;
    *event.add_texts() = text;
    event.mutable_error()->set_code(code);
    event.mutable_error()->set_info(text.id());
    emit said(event, 0);
}

void ServedDevice::execute(Feature feature)
{
    const wire::Text refusal = m_gate ? m_gate->executeRefusal(m_peer, feature) : wire::Text();
    if (!refusal.id().empty()) {
        sayError(devices::ERROR_DEVICE_VENDOR_SPECIFIC, refusal);
        wire::Event event;
        event.mutable_executed()->set_feature(feature);
        *event.mutable_executed()->mutable_result() = toWire(QVariant());
        emit said(event, 0);
        return;
    }
    m_runs.append(begin(feature));
    if (m_gate)
        m_gate->noteStart(m_peer, *m_device, m_runs.constLast());
    m_device->execute(feature);
}

FarRun ServedDevice::begin(Feature feature) const
{
    FarRun run{feature,
               m_device->descriptor(feature),
               m_device->configuration(feature),
               QDateTime::currentDateTimeUtc(),
               {}};
    run.clock.start();
    return run;
}

bool ServedDevice::isRunning() const
{
    return !m_runs.isEmpty();
}

void ServedDevice::onSaid(const values::Event &what)
{
    using Said = values::Event;
    wire::Event event = m_events.event(what);
    const quint64 kept = what.kind == Said::Executed ? keep(what) : 0;
    const bool isSomething = event.what_case() != wire::Event::WHAT_NOT_SET;
    // They cannot answer a request.
    if (isSomething && !event.has_action())
        show(event);
    if (what.kind == Said::ActionRequired) {
        m_openActions.insert(what.actionId);
        // There is nobody left to ask.
        if (m_isEnding)
            QMetaObject::invokeMethod(
                this, [this, id = what.actionId] { m_device->abortAction(id); },
                Qt::QueuedConnection);
    }
    // Nothing comes of an open() that ends in an error.
    const bool isOver = (what.kind == Said::OpenChanged && !what.flag)
        || (what.kind == Said::ErrorChanged && what.errorCode != 0 && !what.isOpen);
    if (kept != 0)
        event.mutable_executed()->set_number(kept);
    // The peer has said so itself.
    const bool isEcho = what.kind == Said::ConfigurationChanged && m_isConfiguring;
    if (isSomething && !isEcho)
        emit said(event, DeviceEvents::kindOf(what));
    if (isOver)
        release();
}

// The number by which the peer is to tell that it has the result.
quint64 ServedDevice::keep(const values::Event &executed)
{
    const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const FarRun &candidate) {
        return candidate.feature == executed.feature;
    });
    // Instruments with a button run by themselves, too.
    const FarRun run = found != m_runs.end() ? *found : begin(executed.feature);
    if (found != m_runs.end())
        m_runs.erase(found);
    if (!m_gate)
        return 0;
    // Kept before anybody is told, the log included.
    const QString name =
        executed.flag ? m_gate->keepResult(m_peer, *m_device, run, executed.value) : QString();
    m_gate->noteRun(m_peer, *m_device, run, executed.flag);
    if (name.isEmpty())
        return 0;
    m_keptResults.insert(++m_lastResult, name);
    return m_lastResult;
}

void ServedDevice::forget(quint64 result)
{
    const QString name = m_keptResults.take(result);
    if (!name.isEmpty())
        m_gate->dropResult(name);
}

void ServedDevice::endRuns()
{
    m_isEnding = true;
    climb();
}

// Until the device obeys. Each step may bring the end about.
void ServedDevice::climb()
{
    const QPointer<ServedDevice> self(this);
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
        emit disobeyed();
    }
}

} // namespace qel::rpc
