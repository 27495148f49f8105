#ifndef SERVER_IDENTITY_H
#define SERVER_IDENTITY_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace qel::server {

/// A certificate and its key, both as PEM.
struct Credentials
{
    QByteArray certificate;
    QByteArray key;
};

/// Who a server is: an authority of its own, which nobody else trusts and which signs the server
/// and everybody it invites. Kept in a folder, in files that only their owner may read.
class Identity
{
public:
    /// The name in the server's certificate, which clients insist on.
    static const char serverName[];

    /// The identity in `folder`, which is made if it is not there yet.
    /// @return nothing, and a sentence in `problem`, when the folder or a file in it is of no use
    static std::optional<Identity> load(const QString &folder, QString *problem);

    /// The certificate of the authority.
    QByteArray authority() const;
    /// What the server shows its clients.
    Credentials server() const;
    /// Makes a certificate for the client `id`, valid for `days`.
    std::optional<Credentials> sign(const QString &id, int days) const;

private:
    Credentials m_authority;
    Credentials m_server;
};

/// Writes a file that only its owner may read, whole or not at all. As root, it belongs to the
/// owner of its folder.
bool writePrivateFile(const QString &fileName, const QByteArray &content, QString *problem);

} // namespace qel::server

#endif
