#ifndef RPC_LINK_H
#define RPC_LINK_H

#include "clientstream.h"
#include "instruments.grpc.pb.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace qel::rpc {

using DriveClient = ClientStream<wire::Command, wire::Events>;
using WatchClient = ClientStream<wire::Ask, wire::Told>;

/// The near end of a connection to one DeviceServer: knows the instruments there and opens the
/// streams of devices.
///
/// It is used from the thread that owns it. No call blocks, except those that say so.
class Link : public QObject
{
    Q_OBJECT

public:
    explicit Link(QObject *parent = nullptr);
    ~Link() override;

    /// Begins to talk over `channel`, in place of what was before.
    void connectTo(std::shared_ptr<grpc::Channel> channel);
    /// Forgets the far side. The streams of devices go on until one of the sides ends them.
    void disconnect();
    /// The same, and says so: lost() with `why`.
    void giveUp(const QString &why);

    /// Whether the far side has introduced itself and is there.
    bool isReady() const;
    /// Blocks until the far side has introduced itself, or until it is lost.
    void waitUntilReady(std::chrono::milliseconds time);

    /// Blocks until the far side has told of its instruments for the first time. A second call does
    /// not wait any more.
    void waitForInstruments(std::chrono::milliseconds time);
    /// Blocks until the far side has told of its instruments, or until it is lost.
    void settle(std::chrono::milliseconds time);
    /// Whether it has told of them.
    bool knowsInstruments() const;

    /// What the far side has told last, and asks it again. Empty while it is away.
    QList<devices::DeviceInfo> instruments();
    /// The names of the far drivers.
    QStringList drivers() const;
    /// The far plugins, as they introduced themselves.
    const std::vector<wire::Plugin> &plugins() const;

    /// For how long a device there outlives its stream; 0 is not at all.
    std::chrono::milliseconds grace() const;

    /// Opens a stream for one device; null while the far side is away.
    std::shared_ptr<DriveClient> drive();
    /// Blocks until the far side has told which results it keeps for this one; with a `name`, it
    /// tells that one, whole.
    /// @return nothing when it does not answer in time
    std::optional<std::vector<wire::KeptResult>> keptResults(const QString &name,
                                                             std::chrono::milliseconds time);

    /// How long the far side may take to answer one call.
    std::chrono::milliseconds deadline() const;
    /// The end of it, which begins late when this process was stopped, too: what has come meanwhile
    /// is read in it.
    std::chrono::milliseconds lastMoment() const;
    void setDeadline(std::chrono::milliseconds deadline);

    /// Called by devices: the far side does not answer `call`.
    void reportSilence(const QString &call);

Q_SIGNALS:
    /// The far side has introduced itself.
    void ready();
    /// It has told of other instruments than before.
    void instrumentsChanged();
    /// The connection is over; `why` is a sentence.
    void lost(const QString &why);
    /// The far side does not answer `call`.
    void silent(const QString &call);

private:
    void read();
    void hear(const wire::Told &told);
    void waitFor(const bool &flag, std::chrono::milliseconds time);
    void introduce(const wire::Told &told);
    void ask();
    void expectAnswer();

    std::shared_ptr<grpc::Channel> m_channel;
    std::unique_ptr<wire::Instruments::Stub> m_stub;
    std::shared_ptr<WatchClient> m_watch;
    bool m_isReady = false;
    bool m_hasWaited = false;
    bool m_knowsInstruments = false;
    bool m_isAsked = false;
    quint64 m_question = 0;
    bool m_hasResults = false;
    std::vector<wire::KeptResult> m_results;
    QList<devices::DeviceInfo> m_instruments;
    QStringList m_drivers;
    std::vector<wire::Plugin> m_plugins;
    std::chrono::milliseconds m_grace{0};
    std::chrono::milliseconds m_deadline{2000};
};

} // namespace qel::rpc

#endif
