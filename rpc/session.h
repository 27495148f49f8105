#ifndef RPC_SESSION_H
#define RPC_SESSION_H

#include "deviceserver.h"
#include "gate.h"
#include "outbox.h"
#include "serveddevice.h"
#include "texts.h"

#include <QtCore/QList>
#include <QtCore/QTimer>

#include <deque>
#include <memory>

namespace qel::rpc {

using DriveServer = ServerStream<wire::Events, wire::Command>;

/// One peer of a server that drives one device.
///
/// The device lives until the peer leaves, or until the grace after the loss of its stream is over;
/// a run is then ended step by step.
class Session : public QObject
{
public:
    Session(std::shared_ptr<DriveServer> stream, QString peer, DeviceServer *server);
    ~Session() override;

private:
    void read();
    void hear(const wire::Command &command);
    bool isLetIn();
    bool mayCall(const wire::Command &command);
    void attach(const wire::Attach &attach, quint64 heard);
    bool createDevice(const devices::DeviceInfo &info);
    QList<Session *> sharers() const;
    Session *former(const wire::Attach &attach) const;
    void resume(std::shared_ptr<DriveServer> stream, quint64 heard);
    void clearTheWay();
    void loseStream();
    void abandon();
    void refuse(grpc::StatusCode code, const QString &why);
    void reject(grpc::StatusCode code, const QString &why);

    // Who only hears what another peer has the device do
    void observe(const devices::DeviceInfo &info);
    void tellObservers(const wire::Event &event) const;

    void onSaid(const wire::Event &event, int kind);
    void send(wire::Event event, int kind = 0);
    bool transmit(wire::Event event, int kind = 0);

    DeviceServer *const m_server;
    Gate *const m_gate;
    const QString m_peer;
    std::shared_ptr<DriveServer> m_stream; // null while the peer is away
    const bool m_hasEntered;
    QString m_instrument; // the driver and the location
    bool m_isObserver = false;
    std::unique_ptr<ServedDevice> m_device; // null until the peer has attached, and for observers
    ToldTexts m_texts;

    QString m_secret; // by which the peer attaches again; empty when it cannot
    QTimer m_grace;
    quint64 m_heard = 0;     // the last command
    quint64 m_lastEvent = 0; // the last event
    Outbox m_outbox;
    std::deque<wire::Command> m_pending; // arrived and not yet looked at
    int m_reading = 0;                   // times on the stack

    bool m_hasLeft = false;
    bool m_isAbandoned = false;
};

} // namespace qel::rpc

#endif
