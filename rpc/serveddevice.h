#ifndef RPC_SERVEDDEVICE_H
#define RPC_SERVEDDEVICE_H

#include "deviceevents.h"
#include "gate.h"
#include "instruments.pb.h"

#include <qeldevices/device.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <grpcpp/grpcpp.h>

#include <memory>

namespace qel::rpc {

/// The device that a session drives for its peer: does what the peer commands and says what comes
/// of it.
///
/// With a gate, the peer leases the instrument from open() on, its runs are noted, and every result
/// is kept until the peer has it.
class ServedDevice : public QObject
{
    Q_OBJECT

public:
    /// @param gate without one, the peer may do everything
    ServedDevice(std::unique_ptr<devices::Device> device, QString peer, Gate *gate);
    /// Gives the lease back. Results that the peer may not have stay.
    ~ServedDevice() override;

    /// How it is now, its plugin included.
    wire::Event state() const;
    /// Does what a command wants. The driver may run an event loop meanwhile.
    /// @param result what open() returned, true for everything else
    /// @return why the command is an offence, if it is
    grpc::Status call(const wire::Command &command, bool *result);

    bool isLeased() const;
    void release();
    /// Whether something is executed and has not ended.
    bool isRunning() const;
    /// Ends what is executed, as nobody waits for it any more, step by step: requests are aborted,
    /// the device is reset, then closed.
    void endRuns();

Q_SIGNALS:
    /// Something for the peer; of those of one `kind` that is not 0, only the last matters.
    void said(const qel::rpc::wire::Event &event, int kind);
    /// Something for everybody who observes what the peer does.
    void shown(const qel::rpc::wire::Event &event);
    /// No step of endRuns() has helped.
    void disobeyed();

private:
    using Feature = devices::Device::DeviceFeature;

    grpc::Status configure(const wire::FeatureValue &value);
    bool open();
    void execute(Feature feature);
    FarRun begin(Feature feature) const;
    void sayError(int code, const wire::Text &text);
    void onSaid(const values::Event &said);
    quint64 keep(const values::Event &said);
    void forget(quint64 result);
    void show(const wire::Event &event);
    void climb();

    const QString m_peer;
    Gate *const m_gate;
    std::unique_ptr<devices::Device> m_device;
    DeviceEvents m_events;
    bool m_isLeased = false;
    bool m_isConfiguring = false;
    QHash<int, quint64> m_configurations; // their sizes, by feature
    quint64 m_configurationSize = 0;      // of all of them
    QList<FarRun> m_runs;                 // executed and not yet ended
    QSet<int> m_openActions;              // asked for, and not answered
    quint64 m_lastResult = 0;
    QHash<quint64, QString> m_keptResults; // those that the peer may not have
    bool m_isEnding = false;
    QTimer m_ladder;
    int m_rung = 0;
};

} // namespace qel::rpc

#endif
