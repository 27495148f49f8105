#include "network.h"

#include "certificate.h"
#include "connections.h"

#include <remotedevice.h>
#include <texts.h>
#include <transportlog.h>
#include <wire.h>

#include <qeldevices/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QSaveFile>

#include <openssl/crypto.h>

#include <algorithm>
#include <utility>

namespace qel::network {

using namespace std::chrono_literals;
using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;

constexpr std::chrono::milliseconds firstPause = 100ms;
constexpr std::chrono::milliseconds longestPause = 10s;
constexpr std::chrono::milliseconds firstAnswer = 500ms;
constexpr std::chrono::milliseconds deadline = 10s;
constexpr std::chrono::milliseconds trialTime = 3s;

// What stands in the certificate of every server; the authority tells one server from another.
static const char serverName[] = "qeldevicesd";

static QString driverName()
{
    return QStringLiteral("Network");
}

std::optional<Connection> readConnection(const QString &fileName, QString *problem)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("'%1': %2").arg(fileName, file.errorString());
        return std::nullopt;
    }
    constexpr qint64 largest = 1024 * 1024;
    const QJsonObject object = QJsonDocument::fromJson(file.read(largest)).object();
    const auto text = [&](const char *key) { return object.value(QLatin1String(key)).toString(); };
    Connection connection{text("server"), text("address"), text("authority").toLatin1(),
                          text("certificate").toLatin1(), text("key").toLatin1()};
    const bool isLocal = connection.address.startsWith(QLatin1String("unix:"));
    const bool isComplete = isLocal
        || (!connection.authority.isEmpty() && !connection.certificate.isEmpty()
            && !connection.key.isEmpty());
    if (text("format") == QLatin1String("qeldevices-connection") && isComplete
        && !connection.address.isEmpty() && !connection.name.isEmpty()
        && !connection.name.contains(QLatin1Char('/'))
        && !connection.name.startsWith(QLatin1Char('.')))
        return connection;
    *problem = QStringLiteral("'%1' is no invitation of qeldevicesd").arg(fileName);
    return std::nullopt;
}

// What the transport says of a connection that does not come about or breaks, in plain words. What
// the server itself has said stands as it is.
static QString inPlainWords(const QString &why, const QString &address)
{
    struct Case
    {
        const char *part;
        const char *sentence;
    };
    static const Case cases[] = {
        {"Connection refused", "nothing listens at %1; does the server run?"},
        {"No such file or directory", "nothing listens at %1; does the server run?"},
        {"Permission denied", "this user may not use %1"},
        {"No route to host", "no way leads from here to %1"},
        {"Network is unreachable", "no way leads from here to %1"},
        {"DNS resolution failed", "no machine is known here by the address %1"},
        {"timed out", "nothing answers at %1"},
        {"imeout", "nothing answers at %1"},
        {"Connection reset", "the connection to %1 was broken"},
        {"Broken pipe", "the connection to %1 was broken"},
        {"Socket closed", "the connection to %1 was broken"},
        {"failed to connect to all addresses", "there is no connection to %1"},
    };
    for (const Case &one : cases) {
        if (why.contains(QLatin1String(one.part)))
            return QString::fromLatin1(one.sentence).arg(address);
    }
    return why;
}

static std::shared_ptr<grpc::Channel> channelTo(const Connection &connection)
{
    grpc::ChannelArguments arguments;
    arguments.SetMaxReceiveMessageSize(rpc::maximumMessageSize);
    // A server that has gone without a word is noticed all the same.
    arguments.SetInt(GRPC_ARG_KEEPALIVE_TIME_MS, 10000);
    arguments.SetInt(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 5000);
    // Each connection is made anew here, after the pauses of this driver.
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    if (connection.address.startsWith(QLatin1String("unix:")))
        return grpc::CreateCustomChannel(connection.address.toStdString(),
                                         grpc::InsecureChannelCredentials(), arguments);
    arguments.SetSslTargetNameOverride(serverName);
    grpc::SslCredentialsOptions options;
    options.pem_root_certs = connection.authority.toStdString();
    options.pem_cert_chain = connection.certificate.toStdString();
    options.pem_private_key = connection.key.toStdString();
    return grpc::CreateCustomChannel(connection.address.toStdString(),
                                     grpc::SslCredentials(options), arguments);
}

Server::Server(Connection connection, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_nextPause(firstPause)
{
    m_link.setDeadline(deadline);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &Server::start);
    connect(&m_link, &rpc::Link::ready, this, [this] {
        m_absence.clear();
        m_isRefused = false;
        m_nextPause = firstPause;
    });
    connect(&m_link, &rpc::Link::lost, this, [this](const QString &why) {
        qCDebug(LogCDriver) << "Server" << m_connection.name << "is away:" << why;
        const bool isForeign = why.contains(QLatin1String("Ssl handshake failed"));
        m_absence = isForeign
            ? QStringLiteral("what answers there is not the server that has invited")
            : inPlainWords(why, m_connection.address);
        m_isRefused = isForeign || m_absence == why;
        m_pause.start(m_nextPause);
        m_nextPause = std::min(2 * m_nextPause, longestPause);
    });
    connect(&m_link, &rpc::Link::silent, this,
            [this] { m_link.giveUp(QStringLiteral("it does not answer any more")); });
    start();
}

void Server::start()
{
    const QString problem = certificateProblem(m_connection);
    if (!problem.isEmpty()) {
        m_absence = problem;
        m_isRefused = true;
        // The clock may be set.
        m_pause.start(longestPause);
        return;
    }
    if (m_absence.isEmpty())
        m_absence = QStringLiteral("it has not answered yet");
    m_link.connectTo(channelTo(m_connection));
}

const Connection &Server::connection() const
{
    return m_connection;
}

rpc::Link *Server::link()
{
    return &m_link;
}

QString Server::absence() const
{
    return m_absence;
}

bool Server::isRefused() const
{
    return m_isRefused;
}

QString Network::fileOf(const QString &name)
{
    return QStringLiteral("%1/%2.json").arg(connectionFolder(), name);
}

Network *Network::instance()
{
    static QPointer<Network> network;
    if (!network)
        network = new Network(QCoreApplication::instance());
    return network;
}

Network::Network(QObject *parent)
    : QObject(parent)
{
    QStringList files;
    const QString named = qEnvironmentVariable(connectionVariable);
    if (!named.isEmpty())
        files.append(named);
    const auto stored =
        QDir(connectionFolder()).entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : stored)
        files.append(file.absoluteFilePath());
    for (const QString &file : qAsConst(files)) {
        QString problem;
        if (const auto connection = readConnection(file, &problem))
            add(*connection);
        else
            qWarning("%s", qPrintable(problem));
    }
}

const std::vector<Server *> &Network::servers() const
{
    return m_servers;
}

void Network::add(const Connection &connection)
{
    remove(connection.name);
    m_servers.push_back(new Server(connection, this));
}

bool Network::remove(const QString &name)
{
    const auto found = std::find_if(m_servers.begin(), m_servers.end(), [&](Server *server) {
        return server->connection().name == name;
    });
    if (found == m_servers.end())
        return false;
    delete *found;
    m_servers.erase(found);
    return true;
}

QString Driver::name()
{
    return driverName();
}

static DeviceInfo nearInfo(const Server &server, const DeviceInfo &far)
{
    return {DeviceInfo::Network, driverName(),
            QStringLiteral("%1/%2/%3").arg(server.connection().name, far.driver(), far.location()),
            far.name(), far.serial()};
}

QList<DeviceInfo> Driver::availableDevices()
{
    QList<DeviceInfo> all;
    const QDeadlineTimer end(firstAnswer);
    for (Server *server : Network::instance()->servers()) {
        server->link()->waitForInstruments(std::chrono::milliseconds(end.remainingTime()));
        const auto instruments = server->link()->instruments();
        for (const DeviceInfo &far : instruments)
            all.append(nearInfo(*server, far));
    }
    return all;
}

Device *Driver::createDevice(const DeviceInfo &info)
{
    availableDevices();
    for (Server *server : Network::instance()->servers()) {
        const auto instruments = server->link()->instruments();
        for (const DeviceInfo &far : instruments) {
            const DeviceInfo known = nearInfo(*server, far);
            if (known.location() == info.location() && known.serial() == info.serial()) {
                auto *device = new rpc::RemoteDevice(info, far, server->link());
                // See RemoteDevice::observe().
                device->setProperty("observable", true);
                return device;
            }
        }
    }
    return nullptr;
}

QVariantList Driver::servers() const
{
    QVariantList all;
    for (Server *server : Network::instance()->servers()) {
        all.append(
            QVariantMap{{QStringLiteral("name"), server->connection().name},
                        {QStringLiteral("address"), server->connection().address},
                        {QStringLiteral("absence"), server->absence()},
                        {QStringLiteral("instruments"), server->link()->instruments().size()}});
    }
    return all;
}

// Stores the connection as it was read, and uses it.
static QStringList store(const Connection &connection, const QByteArray &content)
{
    // What works is not given up for an invitation that the server does not take.
    if (QFile::exists(Network::fileOf(connection.name))) {
        Server trial(connection, nullptr);
        trial.link()->waitUntilReady(trialTime);
        if (trial.isRefused())
            return {connection.name, trial.absence()};
    }
    QSaveFile stored(Network::fileOf(connection.name));
    const bool isStored = QDir().mkpath(connectionFolder()) && stored.open(QIODevice::WriteOnly)
        && stored.setPermissions(QFile::ReadOwner | QFile::WriteOwner) && stored.write(content) >= 0
        && stored.commit();
    if (!isStored)
        return {QString(),
                QStringLiteral("'%1' cannot be written: %2")
                    .arg(stored.fileName(), stored.errorString())};
    Network::instance()->add(connection);
    return {connection.name};
}

QStringList Driver::addConnection(const QString &fileName)
{
    QString problem;
    const auto connection = readConnection(fileName, &problem);
    if (!connection)
        return {QString(), problem};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {QString(), QStringLiteral("'%1': %2").arg(fileName, file.errorString())};
    return store(*connection, file.readAll());
}

QStringList Driver::addLocalServer()
{
    const QString own = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)
        + QStringLiteral("/qeldevices/socket");
    const QString system = QStringLiteral("/run/qeldevicesd/socket");
    if (!QFile::exists(own) && !QFile::exists(system))
        return {QString(),
                QStringLiteral("no server runs on this machine: there is neither '%1' nor '%2'")
                    .arg(own, system)};
    const QString address = QStringLiteral("unix:") + (QFile::exists(own) ? own : system);
    const QJsonObject object{{QStringLiteral("format"), QStringLiteral("qeldevices-connection")},
                             {QStringLiteral("server"), QStringLiteral("local")},
                             {QStringLiteral("address"), address}};
    return store({QStringLiteral("local"), address, {}, {}, {}}, QJsonDocument(object).toJson());
}

QVariantList Driver::keptResults(const QString &server, const QString &name)
{
    QVariantList all;
    for (Server *one : Network::instance()->servers()) {
        const QString own = one->connection().name;
        if (!server.isEmpty() && own != server)
            continue;
        const auto results = one->link()->keptResults(name, deadline);
        if (!results) {
            const QString absence = one->absence();
            all.append(
                QVariantMap{{QStringLiteral("server"), own},
                            {QStringLiteral("absence"),
                             absence.isEmpty() ? QStringLiteral("it does not answer") : absence}});
            continue;
        }
        for (const rpc::wire::KeptResult &kept : *results)
            all.append(QVariantMap{
                {QStringLiteral("server"), own},
                {QStringLiteral("name"), rpc::fromWire(kept.name())},
                {QStringLiteral("problem"), rpc::fromWire(kept.problem())},
                {QStringLiteral("document"), QByteArray::fromStdString(kept.document())}});
    }
    return all;
}

bool Driver::removeConnection(const QString &name)
{
    const bool isStored = QFile::remove(Network::fileOf(name));
    return Network::instance()->remove(name) || isStored;
}

} // namespace qel::network

extern "C" Q_DECL_EXPORT void qelRegisterDrivers()
{
    // A handshake may still be going on when the process ends.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    qel::rpc::hushTransport();
    qel::rpc::FarTexts::instance();
    qel::network::Network::instance();
    qel::devices::DeviceBroker::addDriver(std::make_shared<qel::network::Driver>());
}
