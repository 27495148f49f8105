#ifndef SERVER_CLIENTS_H
#define SERVER_CLIENTS_H

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace qel::server {

/// What a client may do; each may do what the one before may.
enum class Role {
    Observe, ///< see which instruments there are and what they do
    Operate, ///< open and run them
    Service, ///< give them new firmware
};

/// One who was invited.
struct Client
{
    QString id; ///< stands in the certificate
    QString name;
    Role role = Role::Operate;
    QDateTime expires; ///< UTC
    bool isRevoked = false;

    /// Why it is not let in, as a sentence; empty when it is.
    QString refusal() const;
};

/// Whether somebody can be invited as `name`: 1 to 64 visible characters, the first and the last of
/// which are no blanks.
bool isClientName(const QString &name);
std::optional<Role> readRole(const QString &text);
QString roleName(Role role);

/// Everybody who was ever invited, in the file "clients.json" of a folder.
class Clients
{
public:
    explicit Clients(const QString &folder);

    QString fileName() const;
    /// @return false, with a sentence in `problem`, when there is a file that cannot be read
    bool load(QString *problem);
    bool save(QString *problem) const;

    const QList<Client> &all() const;
    /// The one with the certificate for `id`.
    std::optional<Client> withId(const QString &id) const;
    /// The one who is let in under `name`.
    std::optional<Client> named(const QString &name) const;
    void add(const Client &client);
    /// @return false when nobody is let in under `name`
    bool revoke(const QString &name);

private:
    const QString m_fileName;
    QList<Client> m_clients;
};

} // namespace qel::server

#endif
