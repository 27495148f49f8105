#include "daemon.h"

#include "identity.h"

#include <wire.h>

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace qel::server {

using rpc::DeviceServer;

constexpr int expiryInterval = 60 * 1000; // ms

Daemon::Daemon(Settings settings, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_clients(m_settings.state)
    , m_gatekeeper(&m_clients, m_settings.state + QStringLiteral("/results"), m_settings.logsJson)
    , m_server(&m_gatekeeper, m_settings.grace)
{
    // The folder: the file is replaced with each change.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &Daemon::onClientsChanged);
    connect(&m_expiry, &QTimer::timeout, this, &Daemon::onClientsChanged);
}

// Nothing that another server uses may be taken from it, nor a file that is no socket.
static bool isSocketFree(const QString &fileName, QString *problem)
{
    const QByteArray path = QFile::encodeName(fileName);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    constexpr int longest = sizeof address.sun_path - 1;
    if (path.size() > longest) {
        *problem = QStringLiteral("the name of the socket '%1' is too long: it has %2 bytes, and "
                                  "may have %3")
                       .arg(fileName, QString::number(path.size()), QString::number(longest));
        return false;
    }
    struct stat status = {};
    if (::lstat(path.constData(), &status) != 0)
        return true;
    if (!S_ISSOCK(status.st_mode)) {
        *problem = QStringLiteral("'%1' is there already, and no socket").arg(fileName);
        return false;
    }
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const bool isFree =
        ::connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        && (errno == ECONNREFUSED || errno == ENOENT);
    ::close(probe);
    if (!isFree)
        *problem = QStringLiteral("the socket '%1' is used by another server").arg(fileName);
    return isFree;
}

// For as long as the process lives. It locks the folder itself, so that no file of one user keeps
// another one's server out; a file system that cannot do that keeps nobody out.
static bool lockFolder(const QString &folder, QString *problem)
{
    const int open =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (open < 0 || ::flock(open, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return true;
    ::close(open);
    *problem = QStringLiteral("the folder '%1' is used by another server").arg(folder);
    return false;
}

bool Daemon::start(QString *problem)
{
    if (!isSocketFree(m_settings.socket, problem) || !Identity::load(m_settings.state, problem)
        || !lockFolder(m_settings.state, problem))
        return false;
    // Before the clients are read: somebody may be invited just now.
    m_watcher.addPath(m_settings.state);
    if (!m_clients.load(problem))
        return false;
    if (!listenLocally(problem) || !listenOnNetwork(problem))
        return false;
    m_gatekeeper.tidyResults();
    m_expiry.start(expiryInterval);
    startHosts();
    return true;
}

bool Daemon::listenLocally(QString *problem)
{
    const QString folder = QFileInfo(m_settings.socket).absolutePath();
    const mode_t mask = ::umask(m_settings.isForGroup ? 0007 : 0077);
    QDir().mkpath(folder);
    QFile::remove(m_settings.socket);
    ::umask(m_settings.isForGroup ? 0117 : 0177);
    const bool isListening =
        m_server.listen(rpc::toWire(QStringLiteral("unix:") + m_settings.socket),
                        grpc::InsecureServerCredentials());
    ::umask(mask);
    if (isListening) {
        audit(m_settings.logsJson, QStringLiteral("listening"),
              {{QStringLiteral("address"), m_settings.socket}});
        return true;
    }
    *problem = QStringLiteral("cannot listen on '%1'").arg(m_settings.socket);
    return false;
}

// Nobody can come in who was not invited, so nobody needs to be listened to before.
bool Daemon::listenOnNetwork(QString *problem)
{
    const auto all = m_clients.all();
    const bool isInvited = std::any_of(
        all.cbegin(), all.cend(), [](const Client &client) { return client.refusal().isEmpty(); });
    if (m_isOnNetwork || !isInvited)
        return true;
    const auto identity = Identity::load(m_settings.state, problem);
    if (!identity)
        return false;
    grpc::SslServerCredentialsOptions options(
        GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY);
    options.pem_root_certs = identity->authority().toStdString();
    options.pem_key_cert_pairs = {
        {identity->server().key.toStdString(), identity->server().certificate.toStdString()}};
    m_isOnNetwork =
        m_server.listen(rpc::toWire(m_settings.address), grpc::SslServerCredentials(options));
    if (m_isOnNetwork) {
        audit(m_settings.logsJson, QStringLiteral("listening"),
              {{QStringLiteral("address"), m_settings.address}});
        return true;
    }
    *problem =
        QStringLiteral("cannot listen on '%1'; is there another server?").arg(m_settings.address);
    return false;
}

// The drivers that stand for other servers and other processes have no instruments of this machine.
static bool isLocalDriver(const QString &file)
{
    const QJsonObject data = QPluginLoader(file).metaData();
    const QString id = data.value(QStringLiteral("MetaData"))
                           .toObject()
                           .value(QStringLiteral("resource-id"))
                           .toString();
    return data.value(QStringLiteral("IID")).toString() == QLatin1String(QelDevicePlugin_iid)
        && id != QLatin1String("isolation") && id != QLatin1String("network");
}

void Daemon::startHosts()
{
    QStringList files;
    for (const QString &folder : m_settings.plugins) {
        QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = QFileInfo(it.next()).canonicalFilePath();
            if (!files.contains(file) && isLocalDriver(file))
                files.append(file);
        }
    }
    for (const QString &file : qAsConst(files)) {
        auto *host = new rpc::DriverHost(file, this);
        host->registerDrivers();
        connect(host->link(), &rpc::Link::instrumentsChanged, &m_server,
                &DeviceServer::tellInstruments);
    }
}

void Daemon::onClientsChanged()
{
    QString problem;
    if (!m_clients.load(&problem) || !listenOnNetwork(&problem))
        audit(m_settings.logsJson, QStringLiteral("problem"), {{QStringLiteral("what"), problem}});
    m_server.checkPeers();
}

} // namespace qel::server
