#include "deviceevents.h"

#include "wire.h"

#include <QtCore/QMetaEnum>

#include <utility>

namespace qel::rpc {

using Feature = devices::Device::DeviceFeature;
using Said = values::Event;

DeviceEvents::DeviceEvents(const devices::Device &device)
    : m_device(device)
{ }

static void write(wire::FeatureValue *message, const Said &said)
{
    message->set_feature(said.feature);
    *message->mutable_value() = toWire(said.value);
}

wire::Event DeviceEvents::event(const Said &said)
{
    if (said.feature != devices::Device::DF_None)
        m_heardOf.insert(said.feature);
    wire::Event event;
    switch (said.kind) {
    case Said::OpenChanged:
        event.set_open(said.flag);
        break;
    case Said::BusyChanged:
        event.set_busy(said.flag);
        break;
    case Said::TransientValue:
        write(event.mutable_transient(), said);
        break;
    case Said::Executed:
        event.mutable_executed()->set_feature(said.feature);
        event.mutable_executed()->set_ok(said.flag);
        *event.mutable_executed()->mutable_result() = toWire(said.value);
        break;
    case Said::NameChanged:
        event.set_name(toWire(said.value.toString()));
        break;
    case Said::SerialChanged:
        event.set_serial(toWire(said.value.toString()));
        break;
    case Said::DescriptorChanged:
        write(event.mutable_descriptor(), said);
        break;
    case Said::ConfigurationChanged:
        write(event.mutable_configuration(), said);
        break;
    case Said::FeaturesChanged:
        event.mutable_features();
        for (const Feature feature : available())
            event.mutable_features()->add_available(feature);
        break;
    case Said::ErrorChanged:
        event.mutable_error()->set_code(said.errorCode);
        event.mutable_error()->set_info(toWire(said.additionalInfoTrId));
        break;
    case Said::ActionRequired:
        event.mutable_action()->set_id(said.actionId);
        event.mutable_action()->set_text(toWire(said.action));
        break;
    case Said::ActionConfirmed:
        break;
    }
    return event;
}

// A peer that is slow sees fewer steps of a progress, but no other value is left out.
int DeviceEvents::kindOf(const Said &said)
{
    const bool isProgress = said.kind == Said::TransientValue
        && said.value.toHash().contains(QStringLiteral("progress"));
    return isProgress ? said.feature + 1 : 0;
}

std::vector<Feature> DeviceEvents::available() const
{
    QSet<int> candidates = m_heardOf;
    const auto all = QMetaEnum::fromType<Feature>();
    for (int i = 0; i < all.keyCount(); ++i)
        candidates.insert(all.value(i));
    std::vector<Feature> features;
    for (const int candidate : std::as_const(candidates)) {
        if (m_device.hasFeature(Feature(candidate)))
            features.push_back(Feature(candidate));
    }
    return features;
}

wire::Event DeviceEvents::state() const
{
    wire::Event event;
    wire::State *state = event.mutable_state();
    *state->mutable_hello() = hello();
    state->set_open(m_device.isOpen());
    state->set_busy(m_device.isBusy());
    state->set_name(toWire(m_device.name()));
    state->set_serial(toWire(m_device.serial()));
    state->mutable_error()->set_code(m_device.errorCode());
    state->mutable_error()->set_info(toWire(m_device.errorAdditionalInfoTrId()));
    for (const Feature feature : available()) {
        state->mutable_features()->add_available(feature);
        wire::FeatureValue *descriptor = state->add_descriptors();
        descriptor->set_feature(feature);
        *descriptor->mutable_value() = toWire(m_device.descriptor(feature));
    }
    return event;
}

} // namespace qel::rpc
