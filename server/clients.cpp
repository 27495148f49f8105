#include "clients.h"

#include "identity.h"

#include <qelvalues/printable.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include <unistd.h>

namespace qel::server {

static const char *const roleNames[] = {"observe", "operate", "service"};

QString roleName(Role role)
{
    return QLatin1String(roleNames[int(role)]);
}

std::optional<Role> readRole(const QString &text)
{
    for (int i = 0; i < int(std::size(roleNames)); ++i) {
        if (text == QLatin1String(roleNames[i]))
            return Role(i);
    }
    return std::nullopt;
}

bool isClientName(const QString &name)
{
    constexpr int longest = 64;
    return !name.isEmpty() && name.size() <= longest && name == name.trimmed()
        && name == values::printable(name);
}

QString Client::refusal() const
{
    if (isRevoked)
        return QStringLiteral("the invitation of '%1' has been revoked").arg(name);
    if (expires < QDateTime::currentDateTimeUtc())
        return QStringLiteral("the invitation of '%1' has expired on %2")
            .arg(name, expires.toString(Qt::ISODate));
    return {};
}

Clients::Clients(const QString &folder)
    : m_fileName(QDir(folder).filePath(QStringLiteral("clients.json")))
{ }

QString Clients::fileName() const
{
    return m_fileName;
}

bool Clients::load(QString *problem)
{
    if (::access(QFile::encodeName(m_fileName).constData(), F_OK) != 0 && errno == ENOENT) {
        m_clients.clear();
        return true;
    }
    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("'%1' cannot be read: %2").arg(m_fileName, file.errorString());
        return false;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isArray()) {
        *problem = QStringLiteral("'%1' is no list of clients").arg(m_fileName);
        return false;
    }
    QList<Client> clients;
    const QJsonArray entries = document.array();
    for (const QJsonValue &entry : entries) {
        const QJsonObject object = entry.toObject();
        Client client;
        client.id = object.value(QStringLiteral("id")).toString();
        client.name = object.value(QStringLiteral("name")).toString();
        const auto role = readRole(object.value(QStringLiteral("role")).toString());
        client.expires =
            QDateTime::fromString(object.value(QStringLiteral("expires")).toString(), Qt::ISODate);
        client.isRevoked = object.value(QStringLiteral("revoked")).toBool();
        if (client.id.isEmpty() || !role || !client.expires.isValid()) {
            *problem = QStringLiteral("'%1' holds an entry that is no client").arg(m_fileName);
            return false;
        }
        client.role = *role;
        clients.append(client);
    }
    m_clients = clients;
    return true;
}

bool Clients::save(QString *problem) const
{
    QJsonArray entries;
    for (const Client &client : m_clients) {
        entries.append(
            QJsonObject{{QStringLiteral("id"), client.id},
                        {QStringLiteral("name"), client.name},
                        {QStringLiteral("role"), roleName(client.role)},
                        {QStringLiteral("expires"), client.expires.toString(Qt::ISODate)},
                        {QStringLiteral("revoked"), client.isRevoked}});
    }
    return writePrivateFile(m_fileName, QJsonDocument(entries).toJson(), problem);
}

const QList<Client> &Clients::all() const
{
    return m_clients;
}

std::optional<Client> Clients::withId(const QString &id) const
{
    const auto found = std::find_if(m_clients.cbegin(), m_clients.cend(),
                                    [&](const Client &client) { return client.id == id; });
    return found == m_clients.cend() ? std::nullopt : std::optional(*found);
}

std::optional<Client> Clients::named(const QString &name) const
{
    const auto found =
        std::find_if(m_clients.cbegin(), m_clients.cend(), [&](const Client &client) {
            return client.name == name && client.refusal().isEmpty();
        });
    return found == m_clients.cend() ? std::nullopt : std::optional(*found);
}

void Clients::add(const Client &client)
{
    m_clients.append(client);
}

bool Clients::revoke(const QString &name)
{
    bool any = false;
    for (Client &client : m_clients) {
        if (client.name != name || !client.refusal().isEmpty())
            continue;
        client.isRevoked = true;
        any = true;
    }
    return any;
}

} // namespace qel::server
