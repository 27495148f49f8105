// Has a server talk with peers that say what the fuzzer makes up, over a device that does likewise.
#include "fuzzing.h"

#include <clientstream.h>
#include <deviceserver.h>
#include <gate.h>

#include <qeldevices/devicebroker.h>

#include <grpcpp/create_channel_posix.h>

#include <vector>

using namespace qel::devices;
using namespace qel::rpc;
using namespace std::chrono_literals;

namespace {

// Says and does what the fuzzer makes up, in whatever it is called for.
class FuzzedDevice : public Device
{
public:
    FuzzedDevice(const DeviceInfo &info, FuzzedDataProvider *data)
        : Device(info, nullptr)
        , m_data(data)
    {
        all.push_back(this);
    }
    ~FuzzedDevice() override
    {
        all.erase(std::find(all.begin(), all.end(), this));
    }

    bool open() override
    {
        setOpen(true);
        speak();
        return m_data->ConsumeBool();
    }
    void close() override
    {
        speak();
        setStatus({});
    }
    void update() override
    {
        speak();
    }
    void reset() override
    {
        speak();
        setBusy(false);
    }
    void executeImpl(DeviceFeature) override
    {
        setBusy(true);
        speak();
    }
    void confirmActionImpl(int) override
    {
        speak();
    }
    void abortActionImpl(int) override
    {
        speak();
    }
    void speak();

    static std::vector<FuzzedDevice *> all;

private:
    FuzzedDataProvider *m_data;
};

std::vector<FuzzedDevice *> FuzzedDevice::all;

void FuzzedDevice::speak()
{
    const auto feature = DeviceFeature(m_data->ConsumeIntegralInRange(-1, 12));
    switch (m_data->ConsumeIntegralInRange(0, 9)) {
    case 0:
        addFeature(feature);
        break;
    case 1:
        setDescriptor(feature, m_data->ConsumeIntegral<int>());
        break;
    case 2:
        emit transientValue(feature, QVariantHash{{QStringLiteral("progress"), 0.5}});
        break;
    case 3:
        setBusy(false);
        emit executed(feature, m_data->ConsumeBool(), 5);
        break;
    case 4:
        setError(m_data->ConsumeIntegral<int>(), QStringLiteral("info"));
        break;
    case 5:
        emitActionRequired(QStringLiteral("action"));
        break;
    case 6:
        setOpen(m_data->ConsumeBool());
        break;
    case 7:
        removeFeature(feature);
        break;
    case 8:
        // Drivers do such things.
        QCoreApplication::processEvents();
        break;
    default:
        break;
    }
}

class FuzzedDriver : public DeviceDriver
{
public:
    QString name() override
    {
        return QLatin1String(driverName);
    }
    Device *createDevice(const DeviceInfo &info) override
    {
        return info.location() == QLatin1String(location) ? new FuzzedDevice(info, data) : nullptr;
    }
    QList<DeviceInfo> availableDevices() override
    {
        return {{DeviceInfo::Serial, name(), QLatin1String(location), {}, {}}};
    }

    FuzzedDataProvider *data = nullptr;
};

// Lets in and keeps what the fuzzer wants it to.
class FuzzedGate : public Gate
{
public:
    explicit FuzzedGate(FuzzedDataProvider *data)
        : m_data(data)
    { }
    ~FuzzedGate() override
    {
        require(m_streams == 0, "who has entered has not left");
        require(m_holders.isEmpty(), "an instrument was not given back");
    }

    QString refusal(const QString &) override
    {
        return rarely() ? QStringLiteral("no") : QString();
    }
    QString enter(const QString &) override
    {
        if (rarely())
            return QStringLiteral("full");
        ++m_streams;
        return {};
    }
    void leave(const QString &) override
    {
        --m_streams;
    }
    QString callRefusal(const QString &, quint64) override
    {
        return rarely() ? QStringLiteral("too much") : QString();
    }
    wire::Text executeRefusal(const QString &, Device::DeviceFeature) override
    {
        return refusalIf(rarely());
    }
    wire::Text acquire(const QString &, const void *session, const DeviceInfo &) override
    {
        const bool isTaken = !m_holders.isEmpty() && !m_holders.contains(session);
        if (!isTaken)
            m_holders.insert(session);
        return refusalIf(isTaken);
    }
    void release(const void *session) override
    {
        m_holders.remove(session);
    }
    void noteStart(const QString &, const Device &, const FarRun &) override { }
    void noteRun(const QString &, const Device &, const FarRun &, bool) override { }
    QString keepResult(const QString &, const Device &, const FarRun &, const QVariant &) override
    {
        return rarely() ? QString() : QString::number(++m_kept);
    }
    void dropResult(const QString &) override { }
    void noteKept(const QString &, const QString &) override { }
    QStringList keptResults(const QString &) override
    {
        return {QStringLiteral("1")};
    }
    QByteArray keptResult(const QString &, const QString &) override
    {
        return "{}";
    }

private:
    bool rarely()
    {
        return m_data->ConsumeIntegralInRange(0, 31) == 31;
    }
    static wire::Text refusalIf(bool isRefused)
    {
        wire::Text text;
        if (isRefused)
            text.set_id("refused");
        return text;
    }

    FuzzedDataProvider *m_data;
    int m_streams = 0;
    int m_kept = 0;
    QSet<const void *> m_holders;
};

using WatchPeer = ClientStream<wire::Ask, wire::Told>;
using DrivePeer = ClientStream<wire::Command, wire::Events>;

wire::Ask anyAsk(FuzzedDataProvider *data)
{
    wire::Ask ask;
    *ask.mutable_hello() = anyHello(data);
    switch (data->ConsumeIntegralInRange(0, 3)) {
    case 0:
        ask.mutable_results();
        break;
    case 1:
        ask.set_result(anyText(data, "1"));
        break;
    default:
        break;
    }
    return ask;
}

wire::Command anyCommand(FuzzedDataProvider *data)
{
    wire::Command command;
    command.set_number(data->ConsumeIntegralInRange<quint64>(0, 20));
    command.set_heard(data->ConsumeIntegralInRange<quint64>(0, 20));
    switch (data->ConsumeIntegralInRange(0, 13)) {
    case 0:
        command.set_confirm(data->ConsumeIntegralInRange(-1, 9));
        break;
    case 1:
        command.set_abort(data->ConsumeIntegralInRange(-1, 9));
        break;
    case 2:
        *command.mutable_configuration() = anyValue(data);
        break;
    case 3:
        command.mutable_close();
        break;
    case 4:
        command.mutable_update();
        break;
    case 5:
        command.mutable_reset();
        break;
    case 6:
        command.set_received(data->ConsumeIntegralInRange<quint64>(0, 5));
        break;
    case 7:
        command.mutable_leave();
        break;
    case 8:
    case 9:
        command.mutable_open();
        break;
    case 10:
    case 11:
        command.set_execute(data->ConsumeIntegralInRange(-1, 12));
        break;
    case 12:
        break;
    default:
        *command.mutable_attach()->mutable_hello() = anyHello(data);
        *command.mutable_attach()->mutable_record() = anyRecord(data);
        command.mutable_attach()->set_session(data->ConsumeBool() ? "secret" : "");
        command.mutable_attach()->set_again(data->ConsumeBool());
        command.mutable_attach()->set_observe(data->ConsumeBool());
    }
    return command;
}

// How such a call begins as a rule.
wire::Command attachment()
{
    wire::Command command;
    *command.mutable_attach()->mutable_hello() = hello();
    command.mutable_attach()->mutable_record()->set_driver(driverName);
    command.mutable_attach()->mutable_record()->set_location(location);
    command.mutable_attach()->set_session("secret");
    return command;
}

class Peers
{
public:
    explicit Peers(int socket)
        : m_stub(wire::Instruments::NewStub(grpc::CreateInsecureChannelFromFd("fuzz", socket)))
    { }

    void act(FuzzedDataProvider *data)
    {
        const bool isNew = m_drives.empty() || data->ConsumeIntegralInRange(0, 7) == 7;
        if (data->ConsumeIntegralInRange(0, 7) == 7) {
            if (m_watches.empty() || isNew)
                m_watches.push_back(call<WatchPeer>(&wire::Instruments::Stub::PrepareAsyncWatch));
            m_watches.back()->send(anyAsk(data));
            return;
        }
        if (isNew) {
            m_drives.push_back(call<DrivePeer>(&wire::Instruments::Stub::PrepareAsyncDrive));
            if (data->ConsumeIntegralInRange(0, 7) != 7)
                m_drives.back()->send(attachment());
        }
        DrivePeer &drive =
            *m_drives.at(data->ConsumeIntegralInRange<size_t>(0, m_drives.size() - 1));
        const int end = data->ConsumeIntegralInRange(0, 31);
        if (end == 31)
            drive.cancel();
        else if (end == 30)
            drive.hangUp();
        else
            drive.send(anyCommand(data));
    }

    // Whatever they have said: each call ends, and so does the server.
    void leave()
    {
        for (const auto &stream : m_watches)
            stream->hangUp();
        for (const auto &stream : m_drives)
            stream->hangUp();
        require(spinUntil([this] { return haveEnded(m_watches) && haveEnded(m_drives); }),
                "a call does not end");
    }

private:
    template<typename Stream, typename Method>
    std::shared_ptr<Stream> call(Method method)
    {
        return Stream::start([&](grpc::ClientContext *context, grpc::CompletionQueue *queue) {
            return (m_stub.get()->*method)(context, queue);
        });
    }
    template<typename Streams>
    static bool haveEnded(const Streams &streams)
    {
        bool isOver = true;
        for (const auto &stream : streams) {
            stream->take();
            isOver = isOver && stream->hasEnded();
        }
        return isOver;
    }

    std::unique_ptr<wire::Instruments::Stub> m_stub;
    std::vector<std::shared_ptr<WatchPeer>> m_watches;
    std::vector<std::shared_ptr<DrivePeer>> m_drives;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const auto driver = [] {
        auto made = std::make_shared<FuzzedDriver>();
        DeviceBroker::addDriver(made);
        return made;
    }();
    FuzzedDataProvider data(bytes, size);
    driver->data = &data;
    FuzzedGate gate(&data);
    const Sockets sockets;
    {
        const auto grace = data.ConsumeBool() ? 1ms : 0ms;
        DeviceServer server(data.ConsumeBool() ? &gate : nullptr, grace);
        server.serveSocket(sockets.ends[0]);
        Peers peers(sockets.ends[1]);
        while (data.remaining_bytes() > 0) {
            switch (data.ConsumeIntegralInRange(0, 15)) {
            case 0:
                server.checkPeers();
                break;
            case 1:
                server.tellInstruments();
                break;
            case 2:
            case 3:
                if (!FuzzedDevice::all.empty())
                    FuzzedDevice::all.back()->speak();
                break;
            case 4:
            case 5:
            case 6:
                spin();
                break;
            default:
                peers.act(&data);
            }
        }
        peers.leave();
    }
    require(FuzzedDevice::all.empty(), "a device was left behind");
    return 0;
}
