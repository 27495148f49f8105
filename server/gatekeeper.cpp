#include "gatekeeper.h"

#include <wire.h>

#include <qelvalues/printable.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cstdio>
#include <utility>

namespace qel::server {

using devices::Device;
using devices::DeviceInfo;
using rpc::toWire;

// For one client. What an application does is far below.
constexpr int maximumStreams = 256;
constexpr int maximumCalls = 5000;                 // a second
constexpr quint64 maximumBytes = 64 * 1024 * 1024; // a second

constexpr int longestDetail = 2000; // characters; part of it comes from outside

// So that no value can end early and bring a field of its own.
static QString quoted(const QString &value)
{
    QString text = values::printable(value.left(longestDetail));
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

void audit(bool logsJson, const QString &event, const QList<QPair<QString, QString>> &details)
{
    QByteArray line;
    if (logsJson) {
        QJsonObject object{
            {QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
            {QStringLiteral("event"), event}};
        for (const auto &[key, value] : details)
            object.insert(key, value);
        line = QJsonDocument(object).toJson(QJsonDocument::Compact);
    } else {
        line = event.toUtf8();
        for (const auto &[key, value] : details)
            line += ' ' + key.toUtf8() + '=' + quoted(value).toUtf8();
    }
    line += '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
}

Gatekeeper::Gatekeeper(const Clients *clients, QString results, bool logsJson)
    : m_clients(clients)
    , m_spool(std::move(results))
    , m_logsJson(logsJson)
{ }

void Gatekeeper::tidyResults()
{
    const auto unfinished = m_spool.tidy();
    for (const Spool::Unfinished &one : unfinished) {
        const QString what = one.isKept
            ? QStringLiteral("the server before was killed over it; it is whole")
            : QStringLiteral("the server before was killed over it; it is lost");
        audit(m_logsJson, one.isKept ? QStringLiteral("kept") : QStringLiteral("problem"),
              {{QStringLiteral("file"), m_spool.fileOf(one.name)}, {QStringLiteral("what"), what}});
    }
}

QString Gatekeeper::nameOf(const QString &peer) const
{
    if (peer.isEmpty())
        return QStringLiteral("local");
    const auto client = m_clients->withId(peer);
    return client ? client->name : peer;
}

QString Gatekeeper::refusal(const QString &peer)
{
    if (peer.isEmpty())
        return {};
    const auto client = m_clients->withId(peer);
    const QString why =
        client ? client->refusal() : QStringLiteral("nobody was invited under this certificate");
    if (!why.isEmpty())
        noteRefusal(peer, why);
    return why;
}

QString Gatekeeper::enter(const QString &peer)
{
    Use &use = m_uses[peer];
    if (peer.isEmpty() || use.streams < maximumStreams) {
        ++use.streams;
        return {};
    }
    const QString why =
        QStringLiteral("there are %1 sessions already, the most there may be").arg(maximumStreams);
    audit(m_logsJson, QStringLiteral("limit"),
          {{QStringLiteral("client"), nameOf(peer)}, {QStringLiteral("why"), why}});
    return why;
}

void Gatekeeper::leave(const QString &peer)
{
    if (--m_uses[peer].streams == 0)
        m_uses.remove(peer);
}

QString Gatekeeper::callRefusal(const QString &peer, quint64 bytes)
{
    if (peer.isEmpty())
        return {};
    Use &use = m_uses[peer];
    if (!use.second.isValid() || use.second.elapsed() >= 1000) {
        use.second.start();
        use.calls = 0;
        use.bytes = 0;
        use.isTold = false;
    }
    ++use.calls;
    use.bytes += bytes;
    if (use.calls <= maximumCalls && use.bytes <= maximumBytes)
        return {};
    const QString why = use.calls > maximumCalls
        ? QStringLiteral("more than %1 calls in a second").arg(maximumCalls)
        : QStringLiteral("more than %1 bytes in a second").arg(maximumBytes);
    if (!std::exchange(use.isTold, true))
        audit(m_logsJson, QStringLiteral("limit"),
              {{QStringLiteral("client"), nameOf(peer)}, {QStringLiteral("why"), why}});
    return why;
}

void Gatekeeper::noteRefusal(const QString &peer, const QString &why)
{
    audit(m_logsJson, QStringLiteral("refused"),
          {{QStringLiteral("client"), nameOf(peer)}, {QStringLiteral("why"), why}});
}

void Gatekeeper::noteConnect(const QString &peer)
{
    audit(m_logsJson, QStringLiteral("connect"), {{QStringLiteral("client"), nameOf(peer)}});
}

// A text under an id of its own: it names a person and a time.
static rpc::wire::Text refusalText(const QString &id, const QString &english, const QString &german)
{
    rpc::wire::Text text;
    text.set_id(toWire(id));
    (*text.mutable_sentences())["en"] = toWire(english);
    (*text.mutable_sentences())["de"] = toWire(german);
    return text;
}

rpc::wire::Text Gatekeeper::executeRefusal(const QString &peer, Device::DeviceFeature feature)
{
    const auto client = m_clients->withId(peer);
    if (!client || feature != Device::DF_FirmwareUpdate || client->role == Role::Service)
        return {};
    audit(m_logsJson, QStringLiteral("refused"),
          {{QStringLiteral("client"), client->name},
           {QStringLiteral("why"), QStringLiteral("firmware update without the role service")}});
    return refusalText(QStringLiteral("qel-server-firmware"),
                       QStringLiteral("You were not invited to update firmware."),
                       QStringLiteral("Sie sind nicht zum Aktualisieren der Firmware eingeladen."));
}

rpc::wire::Text Gatekeeper::acquire(const QString &peer, const void *session,
                                    const DeviceInfo &info)
{
    const QString holder = nameOf(peer);
    const auto client = m_clients->withId(peer);
    if (client && client->role == Role::Observe) {
        audit(m_logsJson, QStringLiteral("refused"),
              {{QStringLiteral("client"), holder},
               {QStringLiteral("why"), QStringLiteral("opening with the role observe")}});
        return refusalText(
            QStringLiteral("qel-server-observer"),
            QStringLiteral("You were invited to observe, not to operate."),
            QStringLiteral("Sie sind zum Beobachten eingeladen, nicht zum Bedienen."));
    }
    const QString instrument = info.driver() + QLatin1Char('/') + info.location();
    for (auto lease = m_leases.cbegin(); lease != m_leases.cend(); ++lease) {
        if (lease->instrument != instrument || lease.key() == session)
            continue;
        const QString since = lease->since.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'"));
        audit(m_logsJson, QStringLiteral("refused"),
              {{QStringLiteral("client"), holder},
               {QStringLiteral("instrument"), instrument},
               {QStringLiteral("why"), QStringLiteral("in use by ") + lease->holder}});
        return refusalText(
            QStringLiteral("qel-server-in-use/%1/%2").arg(lease->holder, since),
            QStringLiteral("It has been in use by '%1' since %2.").arg(lease->holder, since),
            QStringLiteral("Es ist seit %2 durch '%1' belegt.").arg(lease->holder, since));
    }
    if (!m_leases.contains(session))
        audit(m_logsJson, QStringLiteral("lease"),
              {{QStringLiteral("client"), holder}, {QStringLiteral("instrument"), instrument}});
    m_leases.insert(session, {instrument, holder, QDateTime::currentDateTimeUtc()});
    return {};
}

void Gatekeeper::release(const void *session)
{
    const Lease lease = m_leases.take(session);
    if (!lease.instrument.isEmpty())
        audit(m_logsJson, QStringLiteral("release"),
              {{QStringLiteral("client"), lease.holder},
               {QStringLiteral("instrument"), lease.instrument}});
}

void Gatekeeper::auditRun(const QString &event, const QString &peer, const Device &device,
                          const rpc::FarRun &run, const QString &outcome) const
{
    const auto configuration = toWire(run.configuration);
    audit(m_logsJson, event,
          {{QStringLiteral("client"), nameOf(peer)},
           {QStringLiteral("instrument"), device.driver() + QLatin1Char('/') + device.location()},
           {QStringLiteral("feature"), QVariant::fromValue(run.feature).toString()},
           {QStringLiteral("configuration"), rpc::fromWire(configuration.json()).left(1000)},
           {QStringLiteral("outcome"), outcome}});
}

void Gatekeeper::noteStart(const QString &peer, const Device &device, const rpc::FarRun &run)
{
    auditRun(QStringLiteral("start"), peer, device, run, QStringLiteral("open"));
}

void Gatekeeper::noteRun(const QString &peer, const Device &device, const rpc::FarRun &run, bool ok)
{
    auditRun(QStringLiteral("run"), peer, device, run,
             ok ? QStringLiteral("result") : QStringLiteral("none"));
}

QString Gatekeeper::keepResult(const QString &peer, const Device &device, const rpc::FarRun &run,
                               const QVariant &result)
{
    QString problem;
    const QString name = m_spool.keep(nameOf(peer), device, run, result, &problem);
    if (!problem.isEmpty())
        audit(m_logsJson, QStringLiteral("problem"),
              {{QStringLiteral("client"), nameOf(peer)}, {QStringLiteral("what"), problem}});
    return name;
}

void Gatekeeper::dropResult(const QString &name)
{
    m_spool.drop(name);
}

void Gatekeeper::noteKept(const QString &peer, const QString &name)
{
    audit(
        m_logsJson, QStringLiteral("kept"),
        {{QStringLiteral("client"), nameOf(peer)}, {QStringLiteral("file"), m_spool.fileOf(name)}});
}

QStringList Gatekeeper::keptResults(const QString &peer)
{
    return m_spool.names(nameOf(peer));
}

QByteArray Gatekeeper::keptResult(const QString &peer, const QString &name)
{
    return m_spool.read(nameOf(peer), name);
}

} // namespace qel::server
