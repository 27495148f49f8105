#ifndef RPC_REMOTEDEVICE_H
#define RPC_REMOTEDEVICE_H

#include "farsession.h"

#include <qeldevices/device.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <functional>
#include <memory>

namespace qel::rpc {

/// The near end of a device: keeps the state of the far one, says everything that it says, in its
/// order, and passes on what it is told to do.
///
/// No call waits for the far side. Where the contract of Device asks for something at once, the
/// near end does it: the device is busy from execute() on, and what the far one was still about to
/// say when it is closed or reset is not heard any more.
///
/// When the session with the far side is lost, the device is what the contract calls disconnected.
/// It can be opened again once the far side is back.
class RemoteDevice final : public devices::Device
{
    Q_OBJECT

public:
    /// @param info the identity here
    /// @param farInfo the record by which the far side knows the instrument
    /// @param link the connection to it, which may die before the device
    RemoteDevice(const devices::DeviceInfo &info, const devices::DeviceInfo &farInfo, Link *link);
    ~RemoteDevice() override;

    /// From now on it shows what the instrument does for whoever has opened it there, until it is
    /// opened or closed here. Nobody is kept from opening it.
    Q_INVOKABLE void observe();

    bool open() override;
    void close() override;
    void update() override;
    void reset() override;

protected:
    void executeImpl(DeviceFeature feature) override;
    void confirmActionImpl(int actionId) override;
    void abortActionImpl(int actionId) override;

private:
    bool connectFar(bool observes = false);
    void stopObserving();
    void confirmReceipt(quint64 number);
    void sendConfiguration(DeviceFeature feature);
    void lose(const QString &infoTrId);
    void end(DeviceFeature feature, bool ok, const QVariant &result);

    void hear(const wire::Event &event);
    std::function<bool()> sameSession();
    void hearState(const wire::State &state);
    void hearAnswer(quint64 number, wire::Command::WhatCase what, bool result);
    void hearOpen(bool open);
    void hearError(const wire::Error &error);
    void fail(int code, const QString &info);
    void hearBusy(bool busy);
    void hearFeatures(const wire::Features &features);
    void makeAvailable(const wire::Features &features);
    void hearDescriptor(const wire::FeatureValue &value);
    void hearConfiguration(const wire::FeatureValue &value);
    void hearTransient(const wire::FeatureValue &value);
    void hearExecuted(const wire::Executed &executed);
    void hearAction(const wire::Action &action);

    const devices::DeviceInfo m_farInfo;
    const QPointer<Link> m_link;
    std::unique_ptr<FarSession> m_session; // null while there is none
    bool m_isObserving = false;
    bool m_isOpening = false; // open() was called, and nothing has come of it yet
    bool m_isFarBusy = false;
    QSet<int> m_farFeatures;
    // The last close() or reset() that the far side has not carried out yet; 0 is none.
    quint64 m_interruption = 0;
    QList<DeviceFeature> m_runs;      // executed and not yet ended
    QList<DeviceFeature> m_withheld;  // of these, ended by the far side during an interruption
    QSet<int> m_configured;           // features whose configuration belongs to the application
    QHash<int, QString> m_unsendable; // configurations that cannot travel, and why
    bool m_isConfiguring = false;
    QList<quint64> m_unconfirmed; // results that are being handed to the application
    QHash<int, int> m_farActions; // far ids of requests by the near ones
    int m_farAction = 0;          // the request that is being announced
};

} // namespace qel::rpc

#endif
