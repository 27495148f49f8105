#include "remotedevice.h"

#include "texts.h"
#include "wire.h"

#include <qelvalues/names.h>

#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtCore/QMetaEnum>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using namespace devices;

static const char awayText[] = "qel-remote-away";
static const char valueText[] = "qel-remote-value";

// A far side that is no friend must not fill the memory.
constexpr int maximumFeatures = 1000;

RemoteDevice::RemoteDevice(const DeviceInfo &info, const DeviceInfo &farInfo, Link *link)
    : Device(info, nullptr)
    , m_farInfo(farInfo)
    , m_link(link)
{
    // A host has one.
    if (link && link->plugins().size() == 1)
        setProperty(pluginProperty, fromWire(link->plugins().front()));
    connect(this, &Device::configurationChanged, this, &RemoteDevice::sendConfiguration);
    // The first receiver: an answer from another one may come before the id has been returned.
    connect(this, &Device::actionRequired, this,
            [this](int actionId) { m_farActions.insert(actionId, m_farAction); });
}

RemoteDevice::~RemoteDevice()
{
    if (!m_session)
        return;
    m_session->disconnect(this);
    // Whoever deletes the device over a result has got it.
    while (!m_unconfirmed.isEmpty())
        confirmReceipt(m_unconfirmed.constFirst());
}

// Ends with a device that has a session, or with the error that says why it has none.
bool RemoteDevice::connectFar(bool observes)
{
    if (m_session)
        return true;
    auto session = std::make_unique<FarSession>(toWire(m_farInfo), m_link, observes);
    if (!session->start()) {
        setError(ERROR_DEVICE_DISCONNECTED, QLatin1String(awayText));
        return false;
    }
    m_session = std::move(session);
    connect(m_session.get(), &FarSession::told, this, &RemoteDevice::hear);
    connect(m_session.get(), &FarSession::answered, this, &RemoteDevice::hearAnswer);
    connect(m_session.get(), &FarSession::lost, this, &RemoteDevice::lose);
    m_isFarBusy = false;
    const auto configured = m_configured;
    for (const int feature : configured)
        sendConfiguration(DeviceFeature(feature));
    return true;
}

// The far side forgets the result then.
void RemoteDevice::confirmReceipt(quint64 number)
{
    if (!m_unconfirmed.removeOne(number))
        return;
    wire::Command command;
    command.set_received(number);
    m_session->call(std::move(command));
}

void RemoteDevice::observe()
{
    if (!m_session)
        m_isObserving = connectFar(true);
}

void RemoteDevice::stopObserving()
{
    if (!std::exchange(m_isObserving, false))
        return;
    m_session->disconnect(this);
    m_session.release()->deleteLater();
    const QPointer<RemoteDevice> self(this);
    m_isFarBusy = false;
    setBusy(false);
    if (self)
        setOpen(false);
}

bool RemoteDevice::open()
{
    const QPointer<RemoteDevice> self(this);
    stopObserving();
    if (!self)
        return false;
    if (isOpen() && m_interruption == 0)
        return true;
    if (!connectFar())
        return false;
    wire::Command command;
    command.mutable_open();
    m_isOpening = true;
    m_session->call(std::move(command));
    return true;
}

void RemoteDevice::close()
{
    if (m_isObserving) {
        stopObserving();
        return;
    }
    if (!m_session)
        return;
    m_isOpening = false;
    wire::Command command;
    command.mutable_close();
    m_interruption = m_session->call(std::move(command));
}

void RemoteDevice::update()
{
    if (m_isObserving || !connectFar())
        return;
    wire::Command command;
    command.mutable_update();
    m_session->call(std::move(command));
}

void RemoteDevice::reset()
{
    if (!m_session || m_isObserving) {
        setError(NO_DEVICE_ERROR, QString());
        return;
    }
    wire::Command command;
    command.mutable_reset();
    m_interruption = m_session->call(std::move(command));
}

void RemoteDevice::executeImpl(DeviceFeature feature)
{
    if (!m_session || m_isObserving) {
        emit executed(feature, false, QVariant());
        return;
    }
    const auto unsendable = m_unsendable.constFind(feature);
    if (unsendable != m_unsendable.constEnd()) {
        qCWarning(LogCDriver) << "The configuration of" << values::featureName(feature)
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
    m_session->call(std::move(command));
    setBusy(true);
}

void RemoteDevice::confirmActionImpl(int actionId)
{
    if (!m_session || m_isObserving || !m_farActions.contains(actionId))
        return;
    wire::Command command;
    command.set_confirm(m_farActions.value(actionId));
    m_session->call(std::move(command));
}

void RemoteDevice::abortActionImpl(int actionId)
{
    if (!m_session || m_isObserving || !m_farActions.contains(actionId))
        return;
    wire::Command command;
    command.set_abort(m_farActions.value(actionId));
    m_session->call(std::move(command));
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
    else if (m_session && !m_isObserving)
        m_session->call(std::move(command));
}

// What the contract calls unplugged. Each step may end in the deletion of the device.
void RemoteDevice::lose(const QString &infoTrId)
{
    const QPointer<RemoteDevice> self(this);
    const bool wasUsed = isOpen() || isBusy() || m_isOpening || m_isObserving;
    m_isObserving = false;
    // It has just said so itself.
    m_session.release()->deleteLater();
    m_interruption = 0;
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
        fail(ERROR_DEVICE_DISCONNECTED, infoTrId);
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
    case wire::Event::kDone:
    case wire::Event::kResumed:
    case wire::Event::WHAT_NOT_SET:
        break;
    }
}

void RemoteDevice::hearError(const wire::Error &error)
{
    if (error.code() == NO_DEVICE_ERROR)
        setError(NO_DEVICE_ERROR, fromWire(error.info()));
    else
        fail(error.code(), fromWire(error.info()));
}

// Since open() has returned true, only the signal tells that it has failed, and what it fails of
// may be what it has failed of before.
void RemoteDevice::fail(int code, const QString &info)
{
    const QPointer<RemoteDevice> self(this);
    if (std::exchange(m_isOpening, false))
        setError(NO_DEVICE_ERROR, QString());
    if (self)
        setError(code, info);
}

// Who hears of one change may delete the device, or run an event loop in which the session is lost;
// then the next change is none any more.
std::function<bool()> RemoteDevice::sameSession()
{
    return [self = QPointer<RemoteDevice>(this), session = QPointer<FarSession>(m_session.get())] {
        return self && session && self->m_session.get() == session;
    };
}

// A new far device. What the former one offered goes when this one has opened without it.
void RemoteDevice::hearState(const wire::State &state)
{
    const auto goesOn = sameSession();
    if (state.has_plugin())
        setProperty(pluginProperty, fromWire(state.plugin()));
    setName(fromWire(state.name()));
    if (goesOn())
        setSerial(fromWire(state.serial()));
    if (goesOn())
        makeAvailable(state.features());
    for (const wire::FeatureValue &descriptor : state.descriptors()) {
        if (goesOn())
            hearDescriptor(descriptor);
    }
    if (goesOn())
        setError(state.error().code(), fromWire(state.error().info()));
    if (goesOn())
        hearOpen(state.open());
    if (goesOn())
        hearBusy(state.busy());
}

void RemoteDevice::hearAnswer(quint64 number, wire::Command::WhatCase what, bool result)
{
    const QPointer<RemoteDevice> self(this);
    const bool isLast = !m_session->isWaitingFor(what);
    if (what == wire::Command::kExecute && isLast)
        setBusy(m_isFarBusy);
    else if (what == wire::Command::kOpen && isLast && !result && m_isOpening)
        fail(errorCode() == NO_DEVICE_ERROR ? ERROR_DEVICE_CANT_OPEN : errorCode(),
             errorAdditionalInfoTrId());
    if (!self || number != m_interruption)
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
    if (open && m_interruption != 0 && m_session->isWaitingFor(wire::Command::kClose))
        return;
    if (open) {
        m_isOpening = false;
        const auto goesOn = sameSession();
        const auto all = QMetaEnum::fromType<DeviceFeature>();
        for (int i = 0; goesOn() && i < all.keyCount(); ++i) {
            const auto feature = DeviceFeature(all.value(i));
            if (hasFeature(feature) && !m_farFeatures.contains(feature))
                removeFeature(feature);
        }
        if (!goesOn())
            return;
    }
    setOpen(open);
}

void RemoteDevice::hearBusy(bool busy)
{
    m_isFarBusy = busy;
    if (busy || !m_session->isWaitingFor(wire::Command::kExecute))
        setBusy(busy);
}

static QSet<int> setOf(const wire::Features &features)
{
    QSet<int> set;
    for (const int feature : features.available()) {
        if (set.size() < maximumFeatures)
            set.insert(feature);
    }
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
    if (m_farFeatures.size() >= maximumFeatures && !m_farFeatures.contains(feature))
        return;
    QString problem;
    const auto descriptor = fromWire(value.value(), &problem);
    if (!descriptor)
        qCWarning(LogCDriver) << "The descriptor of" << values::featureName(feature)
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
        qCWarning(LogCDriver) << "The configuration of" << values::featureName(feature)
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
        qCWarning(LogCDriver) << "A value of" << values::featureName(feature)
                              << "cannot travel:" << problem;
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
    qCWarning(LogCDriver) << "The result of" << values::featureName(feature)
                          << "cannot travel:" << problem;
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
