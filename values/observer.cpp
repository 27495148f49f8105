#include "observer.h"

#include <QtCore/QThread>

namespace qel::values {

using devices::Device;

namespace {

Event eventOf(Event::Kind kind, Device::DeviceFeature feature = Device::DF_None, bool flag = false,
              const QVariant &value = {})
{
    Event event;
    event.kind = kind;
    event.feature = feature;
    event.flag = flag;
    event.value = value;
    return event;
}

Event requestOf(Event::Kind kind, int actionId, const QString &action = {})
{
    Event event = eventOf(kind);
    event.actionId = actionId;
    event.action = action;
    return event;
}

} // namespace

QByteArray signalName(Event::Kind kind)
{
    switch (kind) {
    case Event::OpenChanged:
        return "openChanged";
    case Event::BusyChanged:
        return "busyChanged";
    case Event::TransientValue:
        return "transientValue";
    case Event::Executed:
        return "executed";
    case Event::NameChanged:
        return "nameChanged";
    case Event::SerialChanged:
        return "serialChanged";
    case Event::DescriptorChanged:
        return "descriptorChanged";
    case Event::ConfigurationChanged:
        return "configurationChanged";
    case Event::FeaturesChanged:
        return "featuresChanged";
    case Event::ErrorChanged:
        return "errorChanged";
    case Event::ActionRequired:
        return "actionRequired";
    case Event::ActionConfirmed:
        return "actionConfirmed";
    }
    return {};
}

void observe(Device *device, QObject *context, const std::function<void(const Event &)> &receiver)
{
    // Direct, so that the order, the state and the thread are those of the emission.
    const auto connectSignal = [&](auto signal, auto describe) {
        const auto receive = [device, receiver, describe](const auto &...arguments) {
            Event event = describe(arguments...);
            event.isOpen = device->isOpen();
            event.isBusy = device->isBusy();
            event.errorCode = device->errorCode();
            event.errorTrId = device->errorTrId();
            event.additionalInfoTrId = device->errorAdditionalInfoTrId();
            event.isOwnThread = QThread::currentThread() == device->thread();
            receiver(event);
        };
        QObject::connect(device, signal, context, receive, Qt::DirectConnection);
    };
    using Feature = Device::DeviceFeature;
    connectSignal(&Device::openChanged,
                  [](bool open) { return eventOf(Event::OpenChanged, Device::DF_None, open); });
    connectSignal(&Device::busyChanged,
                  [](bool isBusy) { return eventOf(Event::BusyChanged, Device::DF_None, isBusy); });
    connectSignal(&Device::transientValue, [](Feature feature, const QVariant &value) {
        return eventOf(Event::TransientValue, feature, false, value);
    });
    connectSignal(&Device::executed, [](Feature feature, bool ok, const QVariant &result) {
        return eventOf(Event::Executed, feature, ok, result);
    });
    connectSignal(&Device::nameChanged, [device] {
        return eventOf(Event::NameChanged, Device::DF_None, false, device->name());
    });
    connectSignal(&Device::serialChanged, [device] {
        return eventOf(Event::SerialChanged, Device::DF_None, false, device->serial());
    });
    connectSignal(&Device::descriptorChanged, [device](Feature feature) {
        return eventOf(Event::DescriptorChanged, feature, false, device->descriptor(feature));
    });
    connectSignal(&Device::configurationChanged, [device](Feature feature) {
        return eventOf(Event::ConfigurationChanged, feature, false, device->configuration(feature));
    });
    connectSignal(&Device::featuresChanged, [] { return eventOf(Event::FeaturesChanged); });
    connectSignal(&Device::errorChanged, [] { return eventOf(Event::ErrorChanged); });
    connectSignal(&Device::actionRequired, [](int actionId, const QString &action) {
        return requestOf(Event::ActionRequired, actionId, action);
    });
    connectSignal(&Device::actionConfirmed,
                  [](int actionId) { return requestOf(Event::ActionConfirmed, actionId); });
}

} // namespace qel::values
