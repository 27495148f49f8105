#ifndef NETWORK_NETWORK_H
#define NETWORK_NETWORK_H

#include <link.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

#include <memory>
#include <optional>
#include <vector>

namespace qel::network {

/// What an invitation says, and a stored connection.
struct Connection
{
    QString name;    ///< of the server
    QString address; ///< "host:port", or "unix:/path" for a server on this machine
    QByteArray authority;
    QByteArray certificate;
    QByteArray key;
};

/// Reads a connection from a file.
/// @return nothing, and a sentence in `problem`, when it holds none
std::optional<Connection> readConnection(const QString &fileName, QString *problem);

/// The connection to one server, which is made anew whenever it is lost, after a pause that grows
/// from 100 ms to 10 s.
class Server : public QObject
{
public:
    Server(Connection connection, QObject *parent);

    const Connection &connection() const;
    rpc::Link *link();
    /// Why the server is away; empty when it is there.
    QString absence() const;
    /// Whether it is away because it, or this side, does not take the invitation; a server that
    /// merely cannot be reached has not refused.
    bool isRefused() const;

private:
    void start();

    const Connection m_connection;
    rpc::Link m_link;
    QTimer m_pause;
    std::chrono::milliseconds m_nextPause;
    QString m_absence;
    bool m_isRefused = false;
};

/// All servers of this user: those stored by "qelctl connect", and the one in the file that
/// QELDEVICES_NETWORK names.
class Network : public QObject
{
public:
    /// The one of this process. It belongs to the application object.
    static Network *instance();

    const std::vector<Server *> &servers() const;
    void add(const Connection &connection);
    bool remove(const QString &name);

    /// The file of the stored connection `name`.
    static QString fileOf(const QString &name);

private:
    explicit Network(QObject *parent);

    std::vector<Server *> m_servers;
};

/// The driver "Network": every instrument of every server, at `server/driver/location`.
class Driver : public QObject, public devices::DeviceDriver
{
    Q_OBJECT

public:
    QString name() override;
    devices::Device *createDevice(const devices::DeviceInfo &info) override;
    QList<devices::DeviceInfo> availableDevices() override;

    /// One map for each server, with the texts "name", "address" and "absence" and the number
    /// "instruments".
    Q_INVOKABLE QVariantList servers() const;
    /// Stores the connection in `fileName` and uses it from now on. Returns the server's name, or a
    /// list of nothing and a sentence. In place of a stored connection, an invitation that is
    /// refused is not stored: the name and a sentence are returned. May take some seconds then.
    Q_INVOKABLE QStringList addConnection(const QString &fileName);
    /// The same with the server of this machine: the user's own, or that of the system.
    Q_INVOKABLE QStringList addLocalServer();
    /// What the servers keep of runs whose results have reached nobody: one map for each, with the
    /// texts "server", "name" and "problem" and the "document" as JSON. Without a `name`, of all
    /// results of all servers, the documents without the results themselves. A server that is away
    /// has one map, with "server" and, as a sentence, its "absence".
    Q_INVOKABLE QVariantList keptResults(const QString &server, const QString &name);
    /// Forgets the server `name`; false when there is none.
    Q_INVOKABLE bool removeConnection(const QString &name);
};

} // namespace qel::network

#endif
