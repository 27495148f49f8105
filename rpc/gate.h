#ifndef RPC_GATE_H
#define RPC_GATE_H

#include "instruments.pb.h"

#include <qeldevices/device.h>
#include <qeldevices/deviceinfo.h>

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>

namespace qel::rpc {

/// A feature that a device executes or has executed.
struct FarRun
{
    devices::Device::DeviceFeature feature;
    QVariant descriptor;    ///< as it was at the start
    QVariant configuration; ///< as it was at the start
    QDateTime startedAt;
    QElapsedTimer clock; ///< since then
};

/// Decides what the peers of a DeviceServer may do, and hears what they do. Used in the server's
/// thread.
class Gate
{
public:
    virtual ~Gate() = default;

    /// Why `peer` is not let in, as a sentence; empty when it is. Asked with every command.
    virtual QString refusal(const QString &peer) = 0;
    /// Why `peer` may have no more streams, as a sentence; when it may, it has one until leave().
    virtual QString enter(const QString &)
    {
        return {};
    }
    virtual void leave(const QString &) { }
    /// Why `peer` may not make a call of that many bytes now, as a sentence; empty when it may.
    virtual QString callRefusal(const QString &, quint64)
    {
        return {};
    }
    /// What `peer` says was refused for another reason, a sentence.
    virtual void noteRefusal(const QString &, const QString &) { }
    /// A peer begins to watch the instruments.
    virtual void noteConnect(const QString &) { }
    /// Why `peer` may not execute `feature`; an empty text when it may.
    virtual wire::Text executeRefusal(const QString &peer,
                                      devices::Device::DeviceFeature feature) = 0;
    /// Why `peer` may not open `info` with `session` now; with an empty text, it has it until
    /// release().
    virtual wire::Text acquire(const QString &peer, const void *session,
                               const devices::DeviceInfo &info) = 0;
    /// `session` does not use its instrument any more, if it did.
    virtual void release(const void *session) = 0;
    /// A run of `peer` begins.
    virtual void noteStart(const QString &peer, const devices::Device &device,
                           const FarRun &run) = 0;
    /// A run of `peer` has ended.
    virtual void noteRun(const QString &peer, const devices::Device &device, const FarRun &run,
                         bool ok) = 0;
    /// Keeps a result, before `peer` is told of it: it is nowhere else until the peer has it.
    /// @return under which name; empty when it could not be kept
    virtual QString keepResult(const QString &peer, const devices::Device &device,
                               const FarRun &run, const QVariant &result) = 0;
    /// The peer has the result.
    virtual void dropResult(const QString &name) = 0;
    /// The peer has gone without a word on the result.
    virtual void noteKept(const QString &peer, const QString &name) = 0;
    /// The names of the results that are kept for `peer`.
    virtual QStringList keptResults(const QString &peer) = 0;
    /// The document of one of them; empty when there is none of that name.
    virtual QByteArray keptResult(const QString &peer, const QString &name) = 0;
};

} // namespace qel::rpc

#endif
