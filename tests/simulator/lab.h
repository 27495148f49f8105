#ifndef TESTS_SIMULATOR_LAB_H
#define TESTS_SIMULATOR_LAB_H

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>
#include <memory>

using qel::devices::Device;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

/// One simulated lab, its scenario in a temporary file.
class Lab
{
public:
    /// Loads the plugin. Until the first setUp() there are no instruments.
    Lab();

    /// Describes the lab anew; it is seen at the next enumeration.
    void setUp(const QJsonArray &instruments);
    /// Describes one instrument "under test" at "bench-1", at time scale 0, with `rest` on top.
    void setUpOne(const QString &model, QJsonObject rest = {});
    void write(const QByteArray &scenario);

    /// The instruments, enumerated.
    QList<DeviceInfo> instruments() const
    {
        return DeviceBroker::availableDevices();
    }
    /// A device for the first instrument, not open.
    std::unique_ptr<Device> device() const;
    /// The same, open.
    std::unique_ptr<Device> openDevice() const;

private:
    QTemporaryDir m_directory;
    QString m_fileName;
};

/// Keeps what a device emits, each as a short text such as "open 1" or "executed 2 0".
class Recorder : public QObject
{
public:
    explicit Recorder(Device *device);

    QStringList signalsSeen;
    QVector<QVariant> results; ///< of every ending
    QVector<bool> endings;     ///< whether each was a success
    int actionId = -1;         ///< of the last request
    QString action;
    QVector<double> progress;
};

/// Lets the event loop turn, without a pause that would matter at time scale 0, until `condition`
/// holds. False when it does not within five seconds.
bool waitFor(const std::function<bool()> &condition);

/// Lets the event loop turn more often than anything needs at time scale 0, where each step of an
/// instrument takes one turn.
void settle();

#endif
