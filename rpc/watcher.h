#ifndef RPC_WATCHER_H
#define RPC_WATCHER_H

#include "deviceserver.h"

namespace qel::rpc {

using WatchServer = ServerStream<wire::Told, wire::Ask>;

/// One peer of a server that watches which instruments there are.
class Watcher : public QObject
{
public:
    Watcher(std::shared_ptr<WatchServer> stream, QString peer, DeviceServer *server);
    ~Watcher() override;

private:
    void read();
    bool isLetIn();
    void refuse(grpc::StatusCode code, const QString &why);
    bool accept(const wire::Ask &ask);
    void answer();
    void answerResults(const wire::Ask &ask);
    wire::KeptResult keptResult(const QString &name, bool isWhole) const;
    void introduce();
    void tell(wire::Told told, int kind = 0);

    DeviceServer *const m_server;
    const QString m_peer;
    std::shared_ptr<WatchServer> m_stream;
    bool m_hasEntered = false;
    bool m_isRefused = false;
    bool m_isKnown = false;
    bool m_isIntroduced = false;
};

} // namespace qel::rpc

#endif
