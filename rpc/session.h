#ifndef RPC_SESSION_H
#define RPC_SESSION_H

#include "deviceevents.h"
#include "deviceserver.h"
#include "gate.h"
#include "outbox.h"
#include "texts.h"

#include <qeldevices/device.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QTimer>

#include <deque>
#include <memory>
#include <optional>

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
    using Feature = devices::Device::DeviceFeature;

    // The life of the session
    void read();
    void hear(const wire::Command &command);
    bool isLetIn();
    bool mayCall(const wire::Command &command);
    void attach(const wire::Attach &attach, quint64 heard);
    void writePlugin(wire::State *state) const;
    QList<Session *> sharers() const;
    Session *former(const wire::Attach &attach) const;
    void resume(std::shared_ptr<DriveServer> stream, quint64 heard);
    void clearTheWay();
    void loseStream();
    void abandon();
    void climb();
    void refuse(grpc::StatusCode code, const QString &why);
    void reject(grpc::StatusCode code, const QString &why);
    void release();

    // Who only hears what another peer has the device do
    void observe(const devices::DeviceInfo &info);
    void tellObservers(const wire::Event &event) const;

    // What the peer wants
    bool call(const wire::Command &command);
    bool open();
    void configure(const wire::FeatureValue &value);
    void execute(Feature feature);
    FarRun begin(Feature feature) const;

    // What the device says
    void onSaid(const values::Event &said);
    quint64 keep(const values::Event &said);
    void forget(quint64 result);
    void send(wire::Event event, int kind = 0);
    bool transmit(wire::Event event, int kind = 0);
    void sendError(int code, const wire::Text &text);

    DeviceServer *const m_server;
    Gate *const m_gate;
    const QString m_peer;
    std::shared_ptr<DriveServer> m_stream; // null while the peer is away
    const bool m_hasEntered;
    QString m_instrument; // the driver and the location
    bool m_isObserver = false;
    bool m_isOperator = false; // has the instrument to itself
    std::unique_ptr<devices::Device> m_device;
    std::optional<DeviceEvents> m_events;
    ToldTexts m_texts;

    QString m_secret; // by which the peer attaches again; empty when it cannot
    QTimer m_grace;
    quint64 m_heard = 0;     // the last command
    quint64 m_lastEvent = 0; // the last event
    Outbox m_outbox;
    std::deque<wire::Command> m_pending; // arrived and not yet looked at
    int m_reading = 0;                   // times on the stack

    bool m_isConfiguring = false;
    QHash<int, quint64> m_configurations; // their sizes, by feature
    quint64 m_configurationSize = 0;      // of all of them
    QList<FarRun> m_runs;                 // executed and not yet ended
    QSet<int> m_openActions;              // asked for, and not answered
    quint64 m_lastResult = 0;
    QHash<quint64, QString> m_keptResults; // those that the peer may not have

    bool m_hasLeft = false;
    bool m_isAbandoned = false;
    QTimer m_ladder;
    int m_rung = 0;
};

} // namespace qel::rpc

#endif
