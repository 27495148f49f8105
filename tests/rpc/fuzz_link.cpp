// Has a link and a device talk with a far side that says what the fuzzer makes up.
#include "fuzzing.h"

#include <link.h>
#include <remotedevice.h>

#include <grpcpp/create_channel_posix.h>
#include <grpcpp/server_posix.h>

#include <vector>

using namespace qel::devices;
using namespace qel::rpc;
using namespace std::chrono_literals;

namespace {

wire::Told anyTold(FuzzedDataProvider *data, bool isFirst)
{
    wire::Told told;
    if (isFirst) {
        *told.mutable_hello() = anyHello(data);
        told.set_grace(data->PickValueInArray({0, 0, 1, 20}));
        told.add_drivers(anyText(data, driverName));
        told.add_plugins()->set_file(anyText(data, "file"));
        return told;
    }
    const int records = data->ConsumeIntegralInRange(0, 3);
    for (int i = 0; i < records; ++i)
        *told.add_records() = anyRecord(data);
    if (data->ConsumeIntegralInRange(0, 7) == 7)
        told.mutable_results()->add_results()->set_name(anyText(data, "1"));
    return told;
}

wire::State anyState(FuzzedDataProvider *data)
{
    wire::State state;
    *state.mutable_hello() = anyHello(data);
    state.set_open(data->ConsumeBool());
    state.set_busy(data->ConsumeBool());
    state.set_name(anyText(data, "name"));
    state.mutable_error()->set_code(data->PickValueInArray({0, 0, 0, 32772, -1}));
    *state.add_descriptors() = anyValue(data);
    state.mutable_features()->add_available(data->ConsumeIntegralInRange(-1, 15));
    state.mutable_plugin()->set_file(anyText(data, "file"));
    return state;
}

wire::Event anyEvent(FuzzedDataProvider *data, quint64 number)
{
    wire::Event event;
    event.set_number(data->ConsumeIntegralInRange(0, 15) == 15
                         ? data->ConsumeIntegralInRange<quint64>(0, 20)
                         : number);
    switch (data->ConsumeIntegralInRange(0, 14)) {
    case 0:
        event.set_open(data->ConsumeBool());
        break;
    case 1:
        event.set_busy(data->ConsumeBool());
        break;
    case 2:
        event.set_name(anyText(data, "name"));
        break;
    case 3:
        event.set_serial(anyText(data, "serial"));
        break;
    case 4:
        event.mutable_error()->set_code(data->PickValueInArray({0, 32772, 32777, -1}));
        event.mutable_error()->set_info(anyText(data, "info"));
        break;
    case 5:
        event.mutable_features()->add_available(data->ConsumeIntegralInRange(-1, 15));
        break;
    case 6:
        *event.mutable_descriptor() = anyValue(data);
        break;
    case 7:
        *event.mutable_configuration() = anyValue(data);
        break;
    case 8:
        *event.mutable_transient() = anyValue(data);
        break;
    case 9:
        event.mutable_executed()->set_feature(data->ConsumeIntegralInRange(-1, 15));
        event.mutable_executed()->set_ok(data->ConsumeBool());
        *event.mutable_executed()->mutable_result() = anyValue(data).value();
        event.mutable_executed()->set_number(data->ConsumeIntegralInRange<quint64>(0, 3));
        break;
    case 10:
        event.mutable_action()->set_id(data->ConsumeIntegralInRange(-1, 9));
        event.mutable_action()->set_text(anyText(data, "text"));
        break;
    case 11:
        event.mutable_resumed()->set_heard(data->ConsumeIntegralInRange<quint64>(0, 20));
        break;
    case 12:
        *event.mutable_state() = anyState(data);
        break;
    default:
        event.mutable_done()->set_number(data->ConsumeIntegralInRange<quint64>(0, 20));
        event.mutable_done()->set_result(data->ConsumeBool());
    }
    if (data->ConsumeIntegralInRange(0, 7) == 7) {
        wire::Text *text = event.add_texts();
        text->set_id(anyText(data, "info"));
        (*text->mutable_sentences())[anyText(data, "en")] = anyText(data, "A sentence.");
    }
    return event;
}

// What the far side is going to say, whatever it hears.
struct Script
{
    explicit Script(FuzzedDataProvider *data)
    {
        const int tellings = data->ConsumeIntegralInRange(1, 4);
        for (int i = 0; i < tellings; ++i)
            told.push_back(anyTold(data, i == 0));
        watchEnd = data->PickValueInArray({-1, -1, -1, 0, 7, 14});
        driveEnd = data->PickValueInArray({-1, 0, 5, 7, 14});
        const int count = data->ConsumeIntegralInRange(0, 24);
        if (data->ConsumeIntegralInRange(0, 15) != 15) {
            wire::Event state;
            state.set_number(1);
            *state.mutable_state() = anyState(data);
            events.push_back(state);
        }
        for (int i = 0; i < count; ++i)
            events.push_back(anyEvent(data, quint64(i) + 2));
    }

    std::vector<wire::Told> told;
    std::vector<wire::Event> events;
    // The status each call ends with when all is said; -1 is that it does not end by itself.
    int watchEnd;
    int driveEnd;
};

class FarSide final : public wire::Instruments::Service
{
public:
    explicit FarSide(const Script &script)
        : m_script(script)
    { }

    grpc::Status Watch(grpc::ServerContext *,
                       grpc::ServerReaderWriter<wire::Told, wire::Ask> *stream) override
    {
        wire::Ask ask;
        stream->Read(&ask);
        for (const wire::Told &told : m_script.told)
            stream->Write(told);
        return end(m_script.watchEnd, stream, &ask);
    }

    grpc::Status Drive(grpc::ServerContext *,
                       grpc::ServerReaderWriter<wire::Events, wire::Command> *stream) override
    {
        wire::Command command;
        // Each part of the life of a device is heard while another command is on its way.
        for (size_t i = 0; i < m_script.events.size();) {
            stream->Read(&command);
            wire::Events part;
            do
                *part.add_events() = m_script.events[i];
            while (++i < m_script.events.size() && i % 4 != 0);
            stream->Write(part);
        }
        return end(m_script.driveEnd, stream, &command);
    }

private:
    template<typename Stream, typename Incoming>
    static grpc::Status end(int code, Stream *stream, Incoming *incoming)
    {
        while (code < 0 && stream->Read(incoming)) { }
        return code <= 0 ? grpc::Status::OK : grpc::Status(grpc::StatusCode(code), "fuzzed");
    }

    const Script &m_script;
};

void use(RemoteDevice *device, FuzzedDataProvider *data)
{
    const auto feature = Device::DeviceFeature(data->ConsumeIntegralInRange(-1, 12));
    switch (data->ConsumeIntegralInRange(0, 9)) {
    case 0:
        device->open();
        break;
    case 1:
        device->close();
        break;
    case 2:
        device->reset();
        break;
    case 3:
        device->update();
        break;
    case 4:
        device->setConfiguration(feature, 5);
        break;
    case 5:
        device->confirmAction(data->ConsumeIntegralInRange(-1, 99));
        break;
    case 6:
        device->observe();
        break;
    case 7:
        spin();
        break;
    default:
        device->execute(feature);
    }
}

// An application that is called with what the far side has said.
void answer(RemoteDevice *device, FuzzedDataProvider *data)
{
    const auto act = [=] {
        if (data->remaining_bytes() > 0 && data->ConsumeBool())
            use(device, data);
    };
    QObject::connect(device, &Device::executed, device, act);
    QObject::connect(device, &Device::errorChanged, device, act);
    QObject::connect(device, &Device::openChanged, device, act);
    QObject::connect(device, &Device::featuresChanged, device, act);
    QObject::connect(device, &Device::actionRequired, device,
                     [device](int id) { device->confirmAction(id); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const Script script(&data);
    FarSide farSide(script);
    grpc::ServerBuilder builder;
    builder.RegisterService(&farSide);
    const auto server = builder.BuildAndStart();
    const Sockets sockets;
    grpc::AddInsecureChannelFromFd(server.get(), sockets.ends[0]);

    Link link;
    bool isLost = false;
    QObject::connect(&link, &Link::lost, &link, [&] { isLost = true; });
    link.setDeadline(20ms);
    link.connectTo(grpc::CreateInsecureChannelFromFd("fuzz", sockets.ends[1]));
    require(spinUntil([&] { return isLost || link.isReady(); }), "neither there nor lost");
    link.waitForInstruments(5ms);

    const DeviceInfo info(DeviceInfo::Network, driverName, location, {}, {});
    RemoteDevice device(info, info, &link);
    answer(&device, &data);
    device.open();
    while (data.remaining_bytes() > 0)
        use(&device, &data);
    // What has gone is disconnected at last, and nothing runs on.
    server->Shutdown(std::chrono::system_clock::now());
    require(spinUntil([&] { return !device.isOpen() && !device.isBusy(); }), "not disconnected");
    return 0;
}
