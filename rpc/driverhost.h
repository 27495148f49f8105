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

/// What keeps a host from serving its drivers.
struct HostTrouble
{
    isolation::Ending ending; ///< Running when it does not answer
    LastCall lastCall;

    /// For instance "the process ended with signal 11 (Segmentation fault), in acme: open()".
    QString text() const;
};

/// One plugin file in a process of its own, which is started again whenever it ends, after a pause
/// that grows from 100 ms to 10 s.
///
/// A process that shows no life for some seconds is ended, also when nothing is asked of it.
class DriverHost : public QObject
{
    Q_OBJECT

public:
    DriverHost(const QString &pluginFile, QObject *parent);

    QString pluginFile() const;
    /// The process, 0 while there is none.
    qint64 processId() const;
    Link *link();

    /// Blocks until it is known whether the process serves its drivers.
    void settle(std::chrono::milliseconds time);
    /// Nothing once the process has told of its instruments.
    std::optional<HostTrouble> trouble() const;
    /// What happened to the last process that has ended, and how many have.
    std::optional<HostTrouble> lastTrouble() const;
    int endings() const;

    /// Registers the drivers of the plugin with DeviceBroker, now or as soon as they are known.
    void registerDrivers();

private:
    void start();
    void onLost();
    void endSilent(const QString &call);
    void feelPulse();
    void onEnded();
    void startLater();

    const QString m_pluginFile;
    HostProcess m_process;
    Link m_link; // goes first: the process ends with it
    QTimer m_pulse;
    QTimer m_end;   // until the process has ended
    QTimer m_pause; // until it is started again
    quint32 m_beats = 0;
    int m_missed = 0;                     // how often there was no beat since the last look
    std::optional<HostTrouble> m_trouble; // of the last process that has ended
    int m_endings = 0;
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
