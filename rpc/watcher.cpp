#include "watcher.h"

#include "gate.h"
#include "hosttrail.h"
#include "wire.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using devices::DeviceBroker;
using devices::DeviceInfo;

Watcher::Watcher(std::shared_ptr<WatchServer> stream, QString peer, DeviceServer *server)
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
    const QString refusal = server->gate() ? server->gate()->enter(m_peer) : QString();
    m_hasEntered = refusal.isEmpty();
    if (!m_hasEntered)
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, refusal);
}

Watcher::~Watcher()
{
    if (m_server->gate() && m_hasEntered)
        m_server->gate()->leave(m_peer);
    m_stream->detach();
    m_stream->finish(grpc::Status::OK);
}

void Watcher::read()
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
        if (!m_isKnown && !m_isRefused && m_server->gate())
            m_server->gate()->noteRefusal(m_peer, QLatin1String(noIntroduction));
        emit m_server->watcherLeft();
        deleteLater();
    }
}

bool Watcher::isLetIn()
{
    const QString refusal = m_server->gate() ? m_server->gate()->refusal(m_peer) : QString();
    if (!refusal.isEmpty())
        refuse(grpc::StatusCode::PERMISSION_DENIED, refusal);
    return refusal.isEmpty();
}

// Ends the call, and does nothing that it still says.
void Watcher::refuse(grpc::StatusCode code, const QString &why)
{
    m_isRefused = true;
    m_stream->finish({code, toWire(why)});
}

bool Watcher::accept(const wire::Ask &ask)
{
    if (m_isRefused || !isLetIn())
        return false;
    Gate *const gate = m_server->gate();
    const QString refusal = gate ? gate->callRefusal(m_peer, ask.ByteSizeLong()) : QString();
    if (!refusal.isEmpty()) {
        refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, refusal);
        return false;
    }
    if (m_isKnown)
        return true;
    const QString problem = mismatch(ask.hello());
    m_isKnown = problem.isEmpty();
    if (m_isKnown && gate)
        gate->noteConnect(m_peer);
    if (!m_isKnown && gate)
        gate->noteRefusal(m_peer, problem);
    if (!m_isKnown)
        refuse(grpc::StatusCode::FAILED_PRECONDITION, problem);
    return m_isKnown;
}

void Watcher::answer()
{
    // A driver may take long to find its instruments.
    if (!std::exchange(m_isIntroduced, true))
        introduce();
    wire::Told told;
    QList<DeviceInfo> instruments;
    const auto drivers = DeviceBroker::DRIVERS;
    for (auto it = drivers.cbegin(); it != drivers.cend(); ++it) {
        const TrailMark mark(it.key(), QStringLiteral("availableDevices()"));
        instruments += it.value()->availableDevices();
    }
    std::sort(instruments.begin(), instruments.end());
    for (const DeviceInfo &info : qAsConst(instruments))
        *told.add_records() = toWire(info);
    tell(std::move(told), 1);
}

void Watcher::answerResults(const wire::Ask &ask)
{
    wire::Told told;
    wire::KeptResults *results = told.mutable_results();
    if (m_server->gate() && ask.has_result()) {
        *results->add_results() = keptResult(fromWire(ask.result()), true);
    } else if (m_server->gate()) {
        const auto names = m_server->gate()->keptResults(m_peer);
        for (const QString &name : names)
            *results->add_results() = keptResult(name, false);
    }
    tell(std::move(told));
}

void Watcher::tell(wire::Told told, int kind)
{
    if (m_stream->send(std::move(told), kind))
        return;
    const QString why = QLatin1String(readsTooSlowly);
    if (m_server->gate())
        m_server->gate()->noteRefusal(m_peer, why);
    refuse(grpc::StatusCode::RESOURCE_EXHAUSTED, why);
}

wire::KeptResult Watcher::keptResult(const QString &name, bool isWhole) const
{
    wire::KeptResult kept;
    kept.set_name(toWire(name));
    QByteArray document = m_server->gate()->keptResult(m_peer, name);
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

void Watcher::introduce()
{
    wire::Told told;
    *told.mutable_hello() = hello();
    told.set_grace(quint32(m_server->grace().count()));
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
    tell(std::move(told));
}

} // namespace qel::rpc
