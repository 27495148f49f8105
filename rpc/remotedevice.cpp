#include "remotedevice.h"

#include "texts.h"
#include "wire.h"

#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtCore/QMetaEnum>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using namespace devices;
using Feature = Device::DeviceFeature;

static const char lostText[] = "qel-remote-lost";
static const char silentText[] = "qel-remote-silent";
static const char awayText[] = "qel-remote-away";
static const char valueText[] = "qel-remote-value";

static QString nameOf(Feature feature)
{
    return QStringLiteral("execute(%1)").arg(QVariant::fromValue(feature).toString());
}

RemoteDevice::RemoteDevice(const DeviceInfo &info, const DeviceInfo &farInfo, Link *link)
    : Device(info, nullptr)
    , m_farInfo(farInfo)
    , m_link(link)
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, &RemoteDevice::watchDeadline);
    connect(this, &Device::configurationChanged, this, &RemoteDevice::sendConfiguration);
    // The first receiver: an answer from another one may come before the id has been returned.
    connect(this, &Device::actionRequired, this,
            [this](int actionId) { m_farActions.insert(actionId, m_farAction); });
}

RemoteDevice::~RemoteDevice()
{
    if (!m_stream)
        return;
    m_stream->detach();
    // Whoever deletes the device over a result has got it.
    while (!m_unconfirmed.isEmpty())
        confirmReceipt(m_unconfirmed.constFirst());
    m_stream->hangUp();
}

// Ends with a device that has a stream, or with the error that says why it has none.
bool RemoteDevice::connectFar()
{
    if (m_stream)
        return true;
    if (m_link)
        m_stream = m_link->drive();
    if (!m_stream) {
        setError(ERROR_DEVICE_DISCONNECTED, QLatin1String(awayText));
        return false;
    }
    m_stream->attach(this, [this] { read(); });
    m_lastCall = 0;
    m_isFarBusy = false;
    wire::Command command;
    *command.mutable_attach()->mutable_hello() = hello();
    *command.mutable_attach()->mutable_record() = toWire(m_farInfo);
    send(std::move(command), QStringLiteral("createDevice()"));
    const auto configured = m_configured;
    for (const int feature : configured)
        sendConfiguration(Feature(feature));
    return true;
}

quint64 RemoteDevice::send(wire::Command command, const QString &name)
{
    command.set_number(++m_lastCall);
    Call call{m_lastCall, command.what_case(), name, {}};
    call.age.start();
    m_calls.push_back(std::move(call));
    if (!m_deadline.isActive())
        m_deadline.start(m_link ? m_link->deadline() : std::chrono::milliseconds(0));
    m_stream->send(std::move(command));
    return m_lastCall;
}

// The far side forgets the result then.
void RemoteDevice::confirmReceipt(quint64 number)
{
    if (!m_unconfirmed.removeOne(number))
        return;
    wire::Command command;
    command.set_received(number);
    m_stream->send(std::move(command));
}

bool RemoteDevice::open()
{
    if (isOpen() && m_interruption == 0)
        return true;
    if (!connectFar())
        return false;
    wire::Command command;
    command.mutable_open();
    m_isOpening = true;
    send(std::move(command), QStringLiteral("open()"));
    return true;
}

void RemoteDevice::close()
{
    if (!m_stream)
        return;
    m_isOpening = false;
    wire::Command command;
    command.mutable_close();
    m_interruption = send(std::move(command), QStringLiteral("close()"));
}

void RemoteDevice::update()
{
    if (!connectFar())
        return;
    wire::Command command;
    command.mutable_update();
    send(std::move(command), QStringLiteral("update()"));
}

void RemoteDevice::reset()
{
    if (!m_stream) {
        setError(NO_DEVICE_ERROR, QString());
        return;
    }
    wire::Command command;
    command.mutable_reset();
    m_interruption = send(std::move(command), QStringLiteral("reset()"));
}

void RemoteDevice::executeImpl(DeviceFeature feature)
{
    if (!m_stream) {
        emit executed(feature, false, QVariant());
        return;
    }
    const auto unsendable = m_unsendable.constFind(feature);
    if (unsendable != m_unsendable.constEnd()) {
        qCWarning(LogCDriver) << "The configuration of" << nameOf(feature)
                              << "cannot travel:" << *unsendable;
        const QPointer<RemoteDevice> self(this);
        setError(ERROR_DEVICE_INVALID_CONFIGURATION, QLatin1String(valueText));
        if (self)
            emit executed(feature, false, QVariant());
        return;
    }
    m_runs.append(feature);
    wire::Command command;
    command.set_execute(feature);
    send(std::move(command), nameOf(feature));
    setBusy(true);
}

void RemoteDevice::confirmActionImpl(int actionId)
{
    if (!m_stream || !m_farActions.contains(actionId))
        return;
    wire::Command command;
    command.set_confirm(m_farActions.value(actionId));
    send(std::move(command), QStringLiteral("confirmAction()"));
}

void RemoteDevice::abortActionImpl(int actionId)
{
    if (!m_stream || !m_farActions.contains(actionId))
        return;
    wire::Command command;
    command.set_abort(m_farActions.value(actionId));
    send(std::move(command), QStringLiteral("abortAction()"));
}

void RemoteDevice::sendConfiguration(DeviceFeature feature)
{
    if (m_isConfiguring)
        return;
    m_configured.insert(feature);
    m_unsendable.remove(feature);
    wire::Command command;
    command.mutable_configuration()->set_feature(feature);
    *command.mutable_configuration()->mutable_value() = toWire(configuration(feature));
    const QString problem = fromWire(command.configuration().value().problem());
    if (!problem.isEmpty())
        m_unsendable.insert(feature, problem);
    else if (m_stream)
        send(std::move(command), QStringLiteral("setConfiguration()"));
}

void RemoteDevice::read()
{
    const std::shared_ptr<DriveClient> stream = m_stream;
    if (!stream)
        return;
    const QPointer<RemoteDevice> self(this);
    const bool isOver = stream->hasEnded();
    const auto events = stream->take();
    for (const wire::Event &event : events) {
        hear(event);
        if (!self || m_stream != stream)
            return;
    }
    if (!isOver)
        return;
    const grpc::Status status = stream->status();
    if (!status.ok())
        qCDebug(LogCDriver) << "The connection to" << location()
                            << "has ended:" << fromWire(status.error_message());
    lose(QLatin1String(lostText));
}

void RemoteDevice::watchDeadline()
{
    const QPointer<RemoteDevice> self(this);
    // This thread itself may have been held up, with the answers waiting.
    read();
    if (!self || m_calls.empty() || !m_link)
        return;
    const Call &oldest = m_calls.front();
    const auto left = m_link->deadline() - std::chrono::milliseconds(oldest.age.elapsed());
    if (left.count() > 0) {
        m_deadline.start(left);
        return;
    }
    const QString call = oldest.name;
    lose(QLatin1String(silentText));
    if (self && m_link)
        m_link->reportSilence(call);
}

// What the contract calls unplugged. Each step may end in the deletion of the device.
void RemoteDevice::lose(const QString &infoTrId)
{
    const QPointer<RemoteDevice> self(this);
    const bool wasUsed = isOpen() || isBusy() || m_isOpening;
    m_stream->detach();
    m_stream->cancel();
    m_stream = nullptr;
    m_calls.clear();
    m_deadline.stop();
    m_interruption = 0;
    m_isOpening = false;
    m_isFarBusy = false;
    m_withheld.clear();
    m_farActions.clear();
    m_unconfirmed.clear();
    const auto runs = std::exchange(m_runs, {});
    if (!wasUsed && runs.isEmpty())
        return;
    setOpen(false);
    if (self)
        setBusy(false);
    if (self)
        setError(ERROR_DEVICE_DISCONNECTED, infoTrId);
    for (const DeviceFeature feature : runs) {
        if (self)
            emit executed(feature, false, QVariant());
    }
}

void RemoteDevice::hear(const wire::Event &event)
{
    for (const wire::Text &text : event.texts())
        FarTexts::instance()->add(text);
    switch (event.what_case()) {
    case wire::Event::kState:
        hearState(event.state());
        break;
    case wire::Event::kDone:
        hearDone(event.done());
        break;
    case wire::Event::kOpen:
        hearOpen(event.open());
        break;
    case wire::Event::kBusy:
        hearBusy(event.busy());
        break;
    case wire::Event::kName:
        setName(fromWire(event.name()));
        break;
    case wire::Event::kSerial:
        setSerial(fromWire(event.serial()));
        break;
    case wire::Event::kError:
        hearError(event.error());
        break;
    case wire::Event::kFeatures:
        hearFeatures(event.features());
        break;
    case wire::Event::kDescriptor:
        hearDescriptor(event.descriptor());
        break;
    case wire::Event::kConfiguration:
        hearConfiguration(event.configuration());
        break;
    case wire::Event::kTransient:
        hearTransient(event.transient());
        break;
    case wire::Event::kExecuted:
        hearExecuted(event.executed());
        break;
    case wire::Event::kAction:
        hearAction(event.action());
        break;
    case wire::Event::WHAT_NOT_SET:
        break;
    }
}

void RemoteDevice::hearError(const wire::Error &error)
{
    if (error.code() != NO_DEVICE_ERROR)
        m_isOpening = false;
    setError(error.code(), fromWire(error.info()));
}

// A new far device. What the former one offered goes when this one has opened without it.
void RemoteDevice::hearState(const wire::State &state)
{
    const QPointer<RemoteDevice> self(this);
    if (!m_calls.empty() && m_calls.front().what == wire::Command::kAttach)
        m_calls.pop_front();
    setName(fromWire(state.name()));
    if (self)
        setSerial(fromWire(state.serial()));
    if (self)
        makeAvailable(state.features());
    for (const wire::FeatureValue &descriptor : state.descriptors()) {
        if (self)
            hearDescriptor(descriptor);
    }
    if (self)
        setError(state.error().code(), fromWire(state.error().info()));
    if (self)
        hearOpen(state.open());
    if (self)
        hearBusy(state.busy());
}

bool RemoteDevice::isWaitingFor(wire::Command::WhatCase what) const
{
    for (const Call &call : m_calls) {
        if (call.what == what)
            return true;
    }
    return false;
}

void RemoteDevice::hearDone(const wire::Done &done)
{
    if (m_calls.empty() || m_calls.front().number != done.number())
        return;
    const Call call = m_calls.front();
    m_calls.pop_front();
    m_deadline.stop();
    if (!m_calls.empty() && m_link) {
        const auto left =
            m_link->deadline() - std::chrono::milliseconds(m_calls.front().age.elapsed());
        m_deadline.start(std::max(left, std::chrono::milliseconds(0)));
    }
    const QPointer<RemoteDevice> self(this);
    if (call.what == wire::Command::kExecute && !isWaitingFor(wire::Command::kExecute))
        setBusy(m_isFarBusy);
    if (call.what == wire::Command::kOpen && !done.result() && errorCode() == NO_DEVICE_ERROR)
        setError(ERROR_DEVICE_CANT_OPEN, QString());
    if (self && call.what == wire::Command::kOpen && !done.result())
        m_isOpening = false;
    if (!self || call.number != m_interruption)
        return;
    m_interruption = 0;
    const auto withheld = std::exchange(m_withheld, {});
    for (const DeviceFeature feature : withheld) {
        if (self)
            end(feature, false, QVariant());
    }
}

void RemoteDevice::hearOpen(bool open)
{
    // A close() is on its way.
    if (open && m_interruption != 0 && isWaitingFor(wire::Command::kClose))
        return;
    if (open) {
        m_isOpening = false;
        const QPointer<RemoteDevice> self(this);
        const auto all = QMetaEnum::fromType<DeviceFeature>();
        for (int i = 0; self && i < all.keyCount(); ++i) {
            const auto feature = DeviceFeature(all.value(i));
            if (hasFeature(feature) && !m_farFeatures.contains(feature))
                removeFeature(feature);
        }
        if (!self)
            return;
    }
    setOpen(open);
}

void RemoteDevice::hearBusy(bool busy)
{
    m_isFarBusy = busy;
    if (busy || !isWaitingFor(wire::Command::kExecute))
        setBusy(busy);
}

static QSet<int> setOf(const wire::Features &features)
{
    QSet<int> set;
    for (const int feature : features.available())
        set.insert(feature);
    return set;
}

// Without a signal, as a driver's setDescriptor() makes a feature available.
void RemoteDevice::makeAvailable(const wire::Features &features)
{
    m_farFeatures = setOf(features);
    for (const int feature : std::as_const(m_farFeatures))
        setDescriptor(DeviceFeature(feature), descriptor(DeviceFeature(feature)));
}

// One signal of the far side, which one feature has come or gone for, if any.
void RemoteDevice::hearFeatures(const wire::Features &features)
{
    const QSet<int> before = std::exchange(m_farFeatures, setOf(features));
    const QSet<int> come = m_farFeatures - before;
    const QSet<int> gone = before - m_farFeatures;
    if (gone.size() == 1 && come.isEmpty()) {
        removeFeature(DeviceFeature(*gone.constBegin()));
        return;
    }
    makeAvailable(features);
    emit featuresChanged();
}

void RemoteDevice::hearDescriptor(const wire::FeatureValue &value)
{
    const auto feature = DeviceFeature(value.feature());
    QString problem;
    const auto descriptor = fromWire(value.value(), &problem);
    if (!descriptor)
        qCWarning(LogCDriver) << "The descriptor of" << nameOf(feature)
                              << "cannot travel:" << problem;
    m_farFeatures.insert(feature);
    setDescriptor(feature, descriptor.value_or(QVariant()));
}

void RemoteDevice::hearConfiguration(const wire::FeatureValue &value)
{
    const auto feature = DeviceFeature(value.feature());
    QString problem;
    const auto configuration = fromWire(value.value(), &problem);
    if (!configuration) {
        qCWarning(LogCDriver) << "The configuration of" << nameOf(feature)
                              << "cannot travel:" << problem;
        return;
    }
    const QPointer<RemoteDevice> self(this);
    m_isConfiguring = true;
    setConfiguration(feature, *configuration);
    if (self)
        m_isConfiguring = false;
}

void RemoteDevice::hearTransient(const wire::FeatureValue &value)
{
    if (m_interruption != 0)
        return;
    const auto feature = DeviceFeature(value.feature());
    QString problem;
    const auto content = fromWire(value.value(), &problem);
    if (content)
        emit transientValue(feature, *content);
    else
        qCWarning(LogCDriver) << "A value of" << nameOf(feature) << "cannot travel:" << problem;
}

void RemoteDevice::hearExecuted(const wire::Executed &executed)
{
    const auto feature = DeviceFeature(executed.feature());
    if (m_interruption != 0) {
        m_withheld.append(feature);
        return;
    }
    QString problem;
    const auto result = fromWire(executed.result(), &problem);
    const QPointer<RemoteDevice> self(this);
    if (result) {
        if (executed.number() != 0)
            m_unconfirmed.append(executed.number());
        end(feature, executed.ok(), *result);
        if (self)
            confirmReceipt(executed.number());
        return;
    }
    qCWarning(LogCDriver) << "The result of" << nameOf(feature) << "cannot travel:" << problem;
    setError(ERROR_DEVICE_VENDOR_SPECIFIC, QLatin1String(valueText));
    if (self)
        end(feature, false, QVariant());
}

void RemoteDevice::end(DeviceFeature feature, bool ok, const QVariant &result)
{
    const QPointer<RemoteDevice> self(this);
    m_runs.removeOne(feature);
    if (m_runs.isEmpty() && !m_isFarBusy)
        setBusy(false);
    if (self)
        emit executed(feature, ok, result);
}

void RemoteDevice::hearAction(const wire::Action &action)
{
    if (m_interruption != 0)
        return;
    m_farAction = action.id();
    emitActionRequired(fromWire(action.text()));
}

} // namespace qel::rpc
