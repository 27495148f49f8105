#include "deviceserver.h"

#include "texts.h"
#include "wire.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QMetaEnum>

#include <grpcpp/server_posix.h>

#include <chrono>
#include <fcntl.h>
#include <utility>

namespace qel::rpc {

using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;
using Feature = Device::DeviceFeature;

// Runs in the threads of gRPC: hands each call over to the server's thread.
class DeviceServer::Service final : public wire::Instruments::CallbackService
{
public:
    explicit Service(DeviceServer *server)
        : m_server(server)
    { }

    grpc::ServerBidiReactor<wire::Ask, wire::Told> *Watch(grpc::CallbackServerContext *) override;
    grpc::ServerBidiReactor<wire::Command, wire::Event> *
    Drive(grpc::CallbackServerContext *) override;

private:
    DeviceServer *m_server;
};

// One peer that watches the instruments.
class DeviceServer::Watcher : public QObject
{
public:
    Watcher(std::shared_ptr<WatchServer> stream, QObject *parent)
        : QObject(parent)
        , m_stream(std::move(stream))
    {
        m_stream->attach(this, [this] { read(); });
    }

    ~Watcher() override
    {
        m_stream->detach();
        m_stream->finish(grpc::Status::OK);
    }

private:
    void read()
    {
        const auto questions = m_stream->take();
        bool isAsked = false;
        for (const wire::Ask &ask : questions)
            isAsked = accept(ask) || isAsked;
        if (isAsked)
            answer();
        if (m_stream->hasEnded())
            deleteLater();
    }

    bool accept(const wire::Ask &ask)
    {
        if (m_isKnown)
            return true;
        const QString problem = mismatch(ask.hello());
        m_isKnown = problem.isEmpty();
        if (!m_isKnown)
            m_stream->finish({grpc::StatusCode::FAILED_PRECONDITION, toWire(problem)});
        return m_isKnown;
    }

    void answer()
    {
        wire::Told told;
        if (!m_isIntroduced)
            introduce(&told);
        m_isIntroduced = true;
        const QStringList drivers = DeviceBroker::availableDrivers();
        for (const QString &driver : drivers)
            told.add_drivers(toWire(driver));
        const auto instruments = DeviceBroker::availableDevices();
        for (const DeviceInfo &info : instruments)
            *told.add_records() = toWire(info);
        m_stream->send(std::move(told), 1);
    }

    static void introduce(wire::Told *told)
    {
        *told->mutable_hello() = hello();
        const auto plugins = DeviceBroker::loadedPlugins();
        for (const auto &info : plugins) {
            wire::Plugin *plugin = told->add_plugins();
            plugin->set_file(toWire(info.fileName));
            plugin->set_manufacturer(toWire(info.manufacturer));
            plugin->set_url(toWire(info.url.toString()));
            plugin->set_resource_id(toWire(info.resourceId));
            plugin->set_version(toWire(info.version));
        }
    }

    std::shared_ptr<WatchServer> m_stream;
    bool m_isKnown = false;
    bool m_isIntroduced = false;
};

// One peer that drives one device.
class DeviceServer::Session : public QObject
{
public:
    Session(std::shared_ptr<DriveServer> stream, QObject *parent)
        : QObject(parent)
        , m_stream(std::move(stream))
    {
        m_stream->attach(this, [this] { read(); });
    }

    ~Session() override
    {
        m_stream->detach();
        m_stream->finish(grpc::Status::OK);
    }

private:
    void read();
    bool attachDevice(const wire::Command &command);
    void watchDevice();
    bool call(const wire::Command &command);
    void configure(const wire::FeatureValue &value);
    void sendState();
    void sendFeatures();
    void sendText(wire::Event *event, const QString &id);
    void send(wire::Event event, int kind = 0);
    void refuse(grpc::StatusCode code, const QString &why);
    std::vector<Feature> available() const;

    std::shared_ptr<DriveServer> m_stream;
    std::unique_ptr<Device> m_device;
    // Features that are no enumerators are known once they have been heard of.
    QSet<int> m_heardOf;
    QSet<QString> m_sentTexts;
    bool m_isConfiguring = false;
};

void DeviceServer::Session::read()
{
    const QPointer<Session> self(this);
    const auto commands = m_stream->take();
    for (const wire::Command &command : commands) {
        if (!m_device) {
            if (!attachDevice(command))
                break;
            continue;
        }
        wire::Event done;
        done.mutable_done()->set_number(command.number());
        done.mutable_done()->set_result(call(command));
        // A driver may run an event loop of its own, in which the peer goes away.
        if (!self)
            return;
        send(std::move(done));
    }
    if (m_stream->hasEnded())
        deleteLater();
}

bool DeviceServer::Session::attachDevice(const wire::Command &command)
{
    const QString problem = mismatch(command.attach().hello());
    if (!problem.isEmpty()) {
        refuse(grpc::StatusCode::FAILED_PRECONDITION, problem);
        return false;
    }
    const DeviceInfo info = fromWire(command.attach().record());
    m_device.reset(DeviceBroker::createDevice(info));
    if (!m_device) {
        refuse(grpc::StatusCode::NOT_FOUND,
               QStringLiteral("there is no instrument at '%1'").arg(info.location()));
        return false;
    }
    watchDevice();
    sendState();
    return true;
}

void DeviceServer::Session::watchDevice()
{
    const Device *device = m_device.get();
    connect(device, &Device::openChanged, this, [this](bool open) {
        wire::Event event;
        event.set_open(open);
        send(std::move(event));
    });
    connect(device, &Device::busyChanged, this, [this](bool busy) {
        wire::Event event;
        event.set_busy(busy);
        send(std::move(event));
    });
    connect(device, &Device::nameChanged, this, [this] {
        wire::Event event;
        event.set_name(toWire(m_device->name()));
        send(std::move(event));
    });
    connect(device, &Device::serialChanged, this, [this] {
        wire::Event event;
        event.set_serial(toWire(m_device->serial()));
        send(std::move(event));
    });
    connect(device, &Device::errorChanged, this, [this] {
        wire::Event event;
        sendText(&event, m_device->errorAdditionalInfoTrId());
        event.mutable_error()->set_code(m_device->errorCode());
        event.mutable_error()->set_info(toWire(m_device->errorAdditionalInfoTrId()));
        send(std::move(event));
    });
    connect(device, &Device::featuresChanged, this, &Session::sendFeatures);
    connect(device, &Device::descriptorChanged, this, [this](Feature feature) {
        m_heardOf.insert(feature);
        wire::Event event;
        event.mutable_descriptor()->set_feature(feature);
        *event.mutable_descriptor()->mutable_value() = toWire(m_device->descriptor(feature));
        send(std::move(event));
    });
    connect(device, &Device::configurationChanged, this, [this](Feature feature) {
        m_heardOf.insert(feature);
        if (m_isConfiguring)
            return;
        wire::Event event;
        event.mutable_configuration()->set_feature(feature);
        *event.mutable_configuration()->mutable_value() = toWire(m_device->configuration(feature));
        send(std::move(event));
    });
    connect(device, &Device::transientValue, this, [this](Feature feature, const QVariant &value) {
        m_heardOf.insert(feature);
        wire::Event event;
        event.mutable_transient()->set_feature(feature);
        *event.mutable_transient()->mutable_value() = toWire(value);
        // A peer that is slow sees fewer steps of a progress, but no other value is left out.
        const bool isProgress = value.toHash().contains(QStringLiteral("progress"));
        send(std::move(event), isProgress ? feature + 1 : 0);
    });
    connect(device, &Device::executed, this,
            [this](Feature feature, bool ok, const QVariant &result) {
                wire::Event event;
                event.mutable_executed()->set_feature(feature);
                event.mutable_executed()->set_ok(ok);
                *event.mutable_executed()->mutable_result() = toWire(result);
                send(std::move(event));
            });
    connect(device, &Device::actionRequired, this, [this](int id, const QString &action) {
        wire::Event event;
        sendText(&event, action);
        event.mutable_action()->set_id(id);
        event.mutable_action()->set_text(toWire(action));
        send(std::move(event));
    });
}

// What open() returned, true for everything else.
bool DeviceServer::Session::call(const wire::Command &command)
{
    switch (command.what_case()) {
    case wire::Command::kConfiguration:
        configure(command.configuration());
        return true;
    case wire::Command::kOpen:
        return m_device->open();
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
        m_device->execute(Feature(command.execute()));
        return true;
    case wire::Command::kConfirm:
        m_device->confirmAction(command.confirm());
        return true;
    case wire::Command::kAbort:
        m_device->abortAction(command.abort());
        return true;
    case wire::Command::kAttach:
    case wire::Command::WHAT_NOT_SET:
        break;
    }
    refuse(grpc::StatusCode::INVALID_ARGUMENT,
           QStringLiteral("a command that makes no sense here"));
    return false;
}

void DeviceServer::Session::configure(const wire::FeatureValue &value)
{
    QString problem;
    const auto configuration = fromWire(value.value(), &problem);
    if (!configuration) {
        refuse(grpc::StatusCode::INVALID_ARGUMENT, problem);
        return;
    }
    m_isConfiguring = true;
    m_device->setConfiguration(Feature(value.feature()), *configuration);
    m_isConfiguring = false;
}

std::vector<Feature> DeviceServer::Session::available() const
{
    QSet<int> candidates = m_heardOf;
    const auto all = QMetaEnum::fromType<Feature>();
    for (int i = 0; i < all.keyCount(); ++i)
        candidates.insert(all.value(i));
    std::vector<Feature> features;
    for (const int candidate : std::as_const(candidates)) {
        if (m_device->hasFeature(Feature(candidate)))
            features.push_back(Feature(candidate));
    }
    return features;
}

void DeviceServer::Session::sendState()
{
    wire::Event event;
    sendText(&event, m_device->errorAdditionalInfoTrId());
    wire::State *state = event.mutable_state();
    *state->mutable_hello() = hello();
    state->set_open(m_device->isOpen());
    state->set_busy(m_device->isBusy());
    state->set_name(toWire(m_device->name()));
    state->set_serial(toWire(m_device->serial()));
    state->mutable_error()->set_code(m_device->errorCode());
    state->mutable_error()->set_info(toWire(m_device->errorAdditionalInfoTrId()));
    for (const Feature feature : available()) {
        state->mutable_features()->add_available(feature);
        wire::FeatureValue *descriptor = state->add_descriptors();
        descriptor->set_feature(feature);
        *descriptor->mutable_value() = toWire(m_device->descriptor(feature));
    }
    send(std::move(event));
}

void DeviceServer::Session::sendFeatures()
{
    wire::Event event;
    for (const Feature feature : available())
        event.mutable_features()->add_available(feature);
    event.mutable_features();
    send(std::move(event));
}

void DeviceServer::Session::sendText(wire::Event *event, const QString &id)
{
    if (id.isEmpty() || m_sentTexts.contains(id))
        return;
    m_sentTexts.insert(id);
    *event->add_texts() = textFor(id);
}

void DeviceServer::Session::send(wire::Event event, int kind)
{
    if (!m_stream->send(std::move(event), kind))
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED,
               QStringLiteral("the peer reads too slowly to be served"));
}

void DeviceServer::Session::refuse(grpc::StatusCode code, const QString &why)
{
    m_stream->finish({code, toWire(why)});
    deleteLater();
}

grpc::ServerBidiReactor<wire::Ask, wire::Told> *
DeviceServer::Service::Watch(grpc::CallbackServerContext *)
{
    const auto stream = WatchServer::start();
    QMetaObject::invokeMethod(
        m_server, [server = m_server, stream] { new Watcher(stream, server); },
        Qt::QueuedConnection);
    return stream.get();
}

grpc::ServerBidiReactor<wire::Command, wire::Event> *
DeviceServer::Service::Drive(grpc::CallbackServerContext *)
{
    const auto stream = DriveServer::start();
    QMetaObject::invokeMethod(
        m_server, [server = m_server, stream] { new Session(stream, server); },
        Qt::QueuedConnection);
    return stream.get();
}

DeviceServer::DeviceServer(const std::vector<Address> &addresses, QObject *parent)
    : QObject(parent)
    , m_service(std::make_unique<Service>(this))
{
    grpc::ServerBuilder builder;
    for (const Address &address : addresses)
        builder.AddListeningPort(address.text, address.credentials);
    builder.SetMaxReceiveMessageSize(maximumMessageSize);
    builder.SetMaxSendMessageSize(maximumMessageSize);
    builder.RegisterService(m_service.get());
    m_server = builder.BuildAndStart();
}

DeviceServer::~DeviceServer()
{
    // The devices go before the last messages: a device that is deleted says nothing more.
    const auto peers = findChildren<QObject *>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(peers);
    if (!m_server)
        return;
    m_server->Shutdown(std::chrono::system_clock::now());
    m_server->Wait();
}

bool DeviceServer::isListening() const
{
    return m_server != nullptr;
}

void DeviceServer::serveSocket(int socket)
{
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
    grpc::AddInsecureChannelFromFd(m_server.get(), socket);
}

} // namespace qel::rpc
