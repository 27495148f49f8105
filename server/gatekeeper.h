#ifndef SERVER_GATEKEEPER_H
#define SERVER_GATEKEEPER_H

#include "clients.h"
#include "spool.h"

#include <gate.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>

namespace qel::server {

/// Writes what happens, a line each, on standard error: as text, or as JSON for `logsJson`.
void audit(bool logsJson, const QString &event, const QList<QPair<QString, QString>> &details = {});

/// Lets in who was invited, as far as the role goes, and gives each instrument to one operator at a
/// time. Local users are let in by the permissions of the socket, and without limits.
class Gatekeeper : public rpc::Gate
{
public:
    /// @param results the folder for the results that no client has yet
    Gatekeeper(const Clients *clients, QString results, bool logsJson);

    /// Sees to the results that a server before this one was killed over.
    void tidyResults();

    QString refusal(const QString &peer) override;
    QString enter(const QString &peer) override;
    void leave(const QString &peer) override;
    QString callRefusal(const QString &peer, quint64 bytes) override;
    void noteRefusal(const QString &peer, const QString &why) override;
    void noteConnect(const QString &peer) override;
    rpc::wire::Text executeRefusal(const QString &peer,
                                   devices::Device::DeviceFeature feature) override;
    rpc::wire::Text acquire(const QString &peer, const void *session,
                            const devices::DeviceInfo &info) override;
    void release(const void *session) override;
    void noteStart(const QString &peer, const devices::Device &device,
                   const rpc::FarRun &run) override;
    void noteRun(const QString &peer, const devices::Device &device, const rpc::FarRun &run,
                 bool ok) override;
    QString keepResult(const QString &peer, const devices::Device &device, const rpc::FarRun &run,
                       const QVariant &result) override;
    void dropResult(const QString &name) override;
    void noteKept(const QString &peer, const QString &name) override;
    QStringList keptResults(const QString &peer) override;
    QByteArray keptResult(const QString &peer, const QString &name) override;

private:
    struct Lease
    {
        QString instrument;
        QString holder;
        QDateTime since;
    };

    // What a client uses.
    struct Use
    {
        int streams = 0;
        QElapsedTimer second; // in which these are counted
        int calls = 0;
        quint64 bytes = 0;
        bool isTold = false; // that it was too much in this second
    };

    QString nameOf(const QString &peer) const;
    void auditRun(const QString &event, const QString &peer, const devices::Device &device,
                  const rpc::FarRun &run, const QString &outcome) const;

    const Clients *const m_clients;
    Spool m_spool;
    const bool m_logsJson;
    QHash<const void *, Lease> m_leases;
    QHash<QString, Use> m_uses; // by peer
};

} // namespace qel::server

#endif
