#include "deviceserver.h"

#include "runtime.h"
#include "texts.h"
#include "wire.h"

#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>
#include <QtCore/QTimer>

#include <grpcpp/server_posix.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <utility>

namespace qel::rpc {

using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;
using Feature = Device::DeviceFeature;

constexpr std::chrono::minutes longestAbandonedRun(30);

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
    Watcher(std::shared_ptr<WatchServer> stream, QString peer, DeviceServer *server)
        : QObject(server)
        , m_server(server)
        , m_peer(std::move(peer))
        , m_stream(std::move(stream))
    {
        connect(server, &DeviceServer::instrumentsTold, this, [this] {
            if (m_isKnown)
                answer();
        });
        connect(server, &DeviceServer::peersChecked, this, &Watcher::isLetIn);
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
        for (const wire::Ask &ask : questions) {
            if (!accept(ask))
                continue;
            if (ask.what_case() == wire::Ask::WHAT_NOT_SET)
                isAsked = true;
            else
                answerResults(ask);
        }
        if (isAsked)
            answer();
        if (m_stream->hasEnded()) {
            emit m_server->watcherLeft();
            deleteLater();
        }
    }

    bool isLetIn()
    {
        const QString refusal = m_server->m_gate ? m_server->m_gate->refusal(m_peer) : QString();
        if (!refusal.isEmpty())
            m_stream->finish({grpc::StatusCode::PERMISSION_DENIED, toWire(refusal)});
        return refusal.isEmpty();
    }

    bool accept(const wire::Ask &ask)
    {
        if (!isLetIn())
            return false;
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
        // A driver may take long to find its instruments.
        if (!std::exchange(m_isIntroduced, true))
            introduce();
        wire::Told told;
        const auto instruments = DeviceBroker::availableDevices();
        for (const DeviceInfo &info : instruments)
            *told.add_records() = toWire(info);
        m_stream->send(std::move(told), 1);
    }

    void answerResults(const wire::Ask &ask)
    {
        wire::Told told;
        wire::KeptResults *results = told.mutable_results();
        if (m_server->m_gate && ask.has_result()) {
            *results->add_results() = keptResult(fromWire(ask.result()), true);
        } else if (m_server->m_gate) {
            const auto names = m_server->m_gate->keptResults(m_peer);
            for (const QString &name : names)
                *results->add_results() = keptResult(name, false);
        }
        m_stream->send(std::move(told));
    }

    wire::KeptResult keptResult(const QString &name, bool isWhole) const
    {
        wire::KeptResult kept;
        kept.set_name(toWire(name));
        QByteArray document = m_server->m_gate->keptResult(m_peer, name);
        if (!isWhole) {
            QJsonObject object = QJsonDocument::fromJson(document).object();
            object.remove(QStringLiteral("result"));
            document = QJsonDocument(object).toJson(QJsonDocument::Compact);
        }
        if (document.size() < maximumMessageSize - 1024)
            kept.set_document(document.toStdString());
        else
            kept.set_problem("it is too large to travel; the keeper of the server has the file");
        return kept;
    }

    void introduce()
    {
        wire::Told told;
        *told.mutable_hello() = hello();
        const QStringList drivers = DeviceBroker::availableDrivers();
        for (const QString &driver : drivers)
            told.add_drivers(toWire(driver));
        const auto plugins = DeviceBroker::loadedPlugins();
        for (const auto &info : plugins) {
            wire::Plugin *plugin = told.add_plugins();
            plugin->set_file(toWire(info.fileName));
            plugin->set_manufacturer(toWire(info.manufacturer));
            plugin->set_url(toWire(info.url.toString()));
            plugin->set_resource_id(toWire(info.resourceId));
            plugin->set_version(toWire(info.version));
        }
        m_stream->send(std::move(told));
    }

    DeviceServer *const m_server;
    const QString m_peer;
    std::shared_ptr<WatchServer> m_stream;
    bool m_isKnown = false;
    bool m_isIntroduced = false;
};

// One peer that drives one device.
class DeviceServer::Session : public QObject
{
public:
    Session(std::shared_ptr<DriveServer> stream, QString peer, DeviceServer *server)
        : QObject(server)
        , m_gate(server->m_gate)
        , m_peer(std::move(peer))
        , m_stream(std::move(stream))
    {
        connect(server, &DeviceServer::peersChecked, this, &Session::isLetIn);
        m_stream->attach(this, [this] { read(); });
    }

    ~Session() override
    {
        for (const QString &name : qAsConst(m_keptResults))
            m_gate->noteKept(m_peer, name);
        release();
        m_stream->detach();
        m_stream->finish(grpc::Status::OK);
    }

private:
    void read();
    void leave();
    void clearTheWay(const DeviceInfo &info);
    bool isLetIn();
    bool open();
    void execute(Feature feature);
    FarRun begin(Feature feature) const;
    void onExecuted(Feature feature, bool ok, const QVariant &result);
    quint64 keep(const FarRun &run, const QVariant &result);
    void forget(quint64 result);
    void release();
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

    Gate *const m_gate;
    const QString m_peer;
    std::shared_ptr<DriveServer> m_stream;
    std::unique_ptr<Device> m_device;
    // Features that are no enumerators are known once they have been heard of.
    QSet<int> m_heardOf;
    QSet<QString> m_sentTexts;
    bool m_isConfiguring = false;
    QList<FarRun> m_runs; // executed and not yet ended
    quint64 m_lastResult = 0;
    QHash<quint64, QString> m_keptResults; // those that the peer may not have
    bool m_isAbandoned = false;
    bool m_isReading = false; // on the stack, that is
};

void DeviceServer::Session::read()
{
    const QPointer<Session> self(this);
    m_isReading = true;
    const auto commands = m_stream->take();
    for (const wire::Command &command : commands) {
        if (!isLetIn())
            break;
        if (!m_device) {
            if (!attachDevice(command))
                break;
            continue;
        }
        if (command.what_case() == wire::Command::kReceived) {
            forget(command.received());
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
    m_isReading = false;
    if (m_stream->hasEnded())
        leave();
}

// The peer has gone. What it has measured is not lost with it.
void DeviceServer::Session::leave()
{
    if (!m_gate || m_runs.isEmpty()) {
        deleteLater();
        return;
    }
    m_isAbandoned = true;
    QTimer::singleShot(longestAbandonedRun, this, &QObject::deleteLater);
}

// A peer that deletes a device and at once creates another on the same instrument finds it free.
void DeviceServer::Session::clearTheWay(const DeviceInfo &info)
{
    const auto siblings = parent()->children();
    for (QObject *sibling : siblings) {
        auto *session = dynamic_cast<Session *>(sibling);
        const bool isInTheWay = session && session != this && session->m_device
            && session->m_device->location() == info.location()
            && session->m_device->driver() == info.driver();
        if (isInTheWay && session->m_stream->isClosed() && !session->m_isReading
            && (!m_gate || session->m_runs.isEmpty()))
            delete session;
    }
}

bool DeviceServer::Session::isLetIn()
{
    const QString refusal = m_gate ? m_gate->refusal(m_peer) : QString();
    if (!refusal.isEmpty())
        refuse(grpc::StatusCode::PERMISSION_DENIED, refusal);
    return refusal.isEmpty();
}

bool DeviceServer::Session::open()
{
    if (!m_gate)
        return m_device->open();
    const wire::Text text = m_gate->acquire(m_peer, this, m_device->deviceInfo());
    if (text.id().empty()) {
        const bool isAccepted = m_device->open();
        if (!isAccepted)
            release();
        return isAccepted;
    }
    wire::Event event;
    *event.add_texts() = text;
    event.mutable_error()->set_code(devices::ERROR_DEVICE_CANT_OPEN);
    event.mutable_error()->set_info(text.id());
    send(std::move(event));
    return false;
}

void DeviceServer::Session::execute(Feature feature)
{
    const QString refusal = m_gate ? m_gate->executeRefusal(m_peer, feature) : QString();
    if (refusal.isEmpty()) {
        m_runs.append(begin(feature));
        if (m_gate)
            m_gate->noteStart(m_peer, *m_device, m_runs.constLast());
        m_device->execute(feature);
    } else {
        refuse(grpc::StatusCode::PERMISSION_DENIED, refusal);
    }
}

FarRun DeviceServer::Session::begin(Feature feature) const
{
    FarRun run{feature,
               m_device->descriptor(feature),
               m_device->configuration(feature),
               QDateTime::currentDateTimeUtc(),
               {}};
    run.clock.start();
    return run;
}

void DeviceServer::Session::onExecuted(Feature feature, bool ok, const QVariant &result)
{
    const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const FarRun &candidate) {
        return candidate.feature == feature;
    });
    // Instruments with a button run by themselves, too.
    const FarRun run = found != m_runs.end() ? *found : begin(feature);
    if (found != m_runs.end())
        m_runs.erase(found);
    wire::Event event;
    if (m_gate)
        m_gate->noteRun(m_peer, *m_device, run, ok);
    if (m_gate && ok)
        event.mutable_executed()->set_number(keep(run, result));
    if (m_isAbandoned && m_runs.isEmpty())
        deleteLater();
    event.mutable_executed()->set_feature(feature);
    event.mutable_executed()->set_ok(ok);
    *event.mutable_executed()->mutable_result() = toWire(result);
    send(std::move(event));
}

// The number by which the peer is to tell that it has the result.
quint64 DeviceServer::Session::keep(const FarRun &run, const QVariant &result)
{
    const QString name = m_gate->keepResult(m_peer, *m_device, run, result);
    if (name.isEmpty())
        return 0;
    m_keptResults.insert(++m_lastResult, name);
    return m_lastResult;
}

void DeviceServer::Session::forget(quint64 result)
{
    const QString name = m_keptResults.take(result);
    if (!name.isEmpty())
        m_gate->dropResult(name);
}

void DeviceServer::Session::release()
{
    if (m_gate)
        m_gate->release(this);
}

bool DeviceServer::Session::attachDevice(const wire::Command &command)
{
    const QString problem = mismatch(command.attach().hello());
    if (!problem.isEmpty()) {
        refuse(grpc::StatusCode::FAILED_PRECONDITION, problem);
        return false;
    }
    const DeviceInfo info = fromWire(command.attach().record());
    clearTheWay(info);
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
    connect(device, &Device::openChanged, this, [this](bool isOpen) {
        wire::Event event;
        event.set_open(isOpen);
        send(std::move(event));
        if (!isOpen)
            release();
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
        // Nothing comes of an open() that ends in an error.
        if (m_device->errorCode() != 0 && !m_device->isOpen())
            release();
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
    connect(device, &Device::executed, this, &Session::onExecuted);
    connect(device, &Device::actionRequired, this, [this](int id, const QString &action) {
        // There is nobody left to ask.
        if (m_isAbandoned) {
            QMetaObject::invokeMethod(
                this, [this, id] { m_device->abortAction(id); }, Qt::QueuedConnection);
        }
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
        m_device->confirmAction(command.confirm());
        return true;
    case wire::Command::kAbort:
        m_device->abortAction(command.abort());
        return true;
    case wire::Command::kAttach:
    case wire::Command::kReceived:
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
    release();
    deleteLater();
}

// The common name in the certificate of a peer that had to show one.
static QString peerOf(grpc::CallbackServerContext *context)
{
    const auto names = context->auth_context()->FindPropertyValues(GRPC_X509_CN_PROPERTY_NAME);
    return names.size() == 1 ? QString::fromUtf8(names[0].data(), int(names[0].size())) : QString();
}

grpc::ServerBidiReactor<wire::Ask, wire::Told> *
DeviceServer::Service::Watch(grpc::CallbackServerContext *context)
{
    const auto stream = WatchServer::start();
    QMetaObject::invokeMethod(
        m_server,
        [server = m_server, stream, peer = peerOf(context)] { new Watcher(stream, peer, server); },
        Qt::QueuedConnection);
    return stream.get();
}

grpc::ServerBidiReactor<wire::Command, wire::Event> *
DeviceServer::Service::Drive(grpc::CallbackServerContext *context)
{
    const auto stream = DriveServer::start();
    QMetaObject::invokeMethod(
        m_server,
        [server = m_server, stream, peer = peerOf(context)] { new Session(stream, peer, server); },
        Qt::QueuedConnection);
    return stream.get();
}

DeviceServer::DeviceServer(const std::vector<Address> &addresses, Gate *gate, QObject *parent)
    : QObject(parent)
    , m_gate(gate)
    , m_service(std::make_unique<Service>(this))
{
    keepRuntime();
    grpc::ServerBuilder builder;
    for (const Address &address : addresses)
        builder.AddListeningPort(address.text, address.credentials);
    // A peer that has gone without a word is noticed all the same.
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIME_MS, 10000);
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 5000);
    builder.AddChannelArgument(GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS, 5000);
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
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

void DeviceServer::tellInstruments()
{
    emit instrumentsTold();
}

void DeviceServer::checkPeers()
{
    emit peersChecked();
}

void DeviceServer::serveSocket(int socket)
{
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
    grpc::AddInsecureChannelFromFd(m_server.get(), socket);
}

} // namespace qel::rpc
