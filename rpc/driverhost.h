#ifndef RPC_DRIVERHOST_H
#define RPC_DRIVERHOST_H

#include "hostprocess.h"
#include "link.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

namespace qel::rpc {

/// One plugin file in a process of its own, which is started again whenever it ends, after a pause
/// that grows from 100 ms to 10 s.
class DriverHost : public QObject
{
    Q_OBJECT

public:
    DriverHost(const QString &pluginFile, QObject *parent);

    QString pluginFile() const;
    /// The process, 0 while there is none.
    qint64 processId() const;
    Link *link();

    /// Registers the drivers of the plugin with DeviceBroker, now or as soon as they are known.
    void registerDrivers();

private:
    void start();
    void onLost();
    void onSilent(const QString &call);
    void onEnded();
    void startLater();

    const QString m_pluginFile;
    HostProcess m_process;
    Link m_link;    // goes first: the process ends with it
    QTimer m_end;   // until the process has ended
    QTimer m_pause; // until it is started again
    QElapsedTimer m_age;
    QElapsedTimer m_sinceLost;
    std::chrono::milliseconds m_nextPause;
    bool m_isWanted = false;
};

/// Lists and creates the devices of one driver that lives behind a Link.
class HostedDriver : public devices::DeviceDriver
{
public:
    HostedDriver(QString name, Link *link);

    QString name() override;
    devices::Device *createDevice(const devices::DeviceInfo &info) override;
    QList<devices::DeviceInfo> availableDevices() override;

private:
    const QString m_name;
    const QPointer<Link> m_link;
};

} // namespace qel::rpc

#endif
