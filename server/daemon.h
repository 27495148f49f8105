#ifndef SERVER_DAEMON_H
#define SERVER_DAEMON_H

#include "clients.h"
#include "gatekeeper.h"

#include <deviceserver.h>
#include <driverhost.h>

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <chrono>

namespace qel::server {

/// How a server is to run.
struct Settings
{
    QString state;           ///< the folder of its identity and its clients
    QString socket;          ///< the file of its local socket
    QStringList plugins;     ///< folders with driver plugins
    QString address;         ///< where to listen on the network, "0.0.0.0:7735" for instance
    bool isForGroup = false; ///< the group of the process may use the socket
    bool logsJson = false;
    std::chrono::seconds grace{30}; ///< for which a session outlives its connection
};

/// Serves every instrument of this machine, each driver plugin in a process of its own: over a
/// local socket, and over the network with mutual TLS once somebody has been invited.
class Daemon : public QObject
{
    Q_OBJECT

public:
    explicit Daemon(Settings settings, QObject *parent = nullptr);

    /// @return false, with a sentence in `problem`, when it cannot serve
    bool start(QString *problem);

private:
    bool listenLocally(QString *problem);
    bool listenOnNetwork(QString *problem);
    void startHosts();
    void onClientsChanged();

    const Settings m_settings;
    Clients m_clients;
    Gatekeeper m_gatekeeper;
    QFileSystemWatcher m_watcher;
    QTimer m_expiry;
    bool m_isOnNetwork = false;
    rpc::DeviceServer m_server; // goes first: what it tells its peers needs the rest
};

} // namespace qel::server

#endif
