#ifndef QEL_CONFORMANCE_SUBJECT_H
#define QEL_CONFORMANCE_SUBJECT_H

#include "recorder.h"
#include "rule.h"
#include "timelimits.h"

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>

#include <functional>
#include <memory>

namespace qel::conformance {

class Instrument;

/// The plugin under test, seen from the process that has loaded it.
///
/// Rules reach the plugin only through it. What a rule needs and does not get is thrown as Unmet.
class Subject
{
public:
    /// @param fileName the plugin file
    /// @param driverName the driver to judge; empty when the plugin has one only
    /// @param serial the instrument to judge; empty for the first
    /// @param isUnsafe whether parts of the instrument may be moved
    Subject(const QString &fileName, const QString &driverName, const QString &serial,
            bool isUnsafe, const Limits &limits);

    const Limits &limits() const
    {
        return m_limits;
    }
    bool isUnsafe() const
    {
        return m_isUnsafe;
    }

    /// The metadata object of the file, loaded or not.
    QJsonObject metaData() const;
    /// The root object; throws when the file does not load.
    QObject *root();
    /// The plugin, without having registered anything.
    devices::DevicePlugin *plugin();
    /// Has the plugin register its drivers, once. Their names, sorted.
    QStringList driverNames();
    /// The driver under test.
    devices::DeviceDriver *driver();
    /// What the driver lists, sorted.
    QList<devices::DeviceInfo> records();
    /// The instrument under test.
    devices::DeviceInfo record();

    /// Does `work` and notes how long it took under `name`.
    void timed(const QString &name, const std::function<void()> &work);
    /// Runs the event loop until `condition` holds or `milliseconds` have passed; whether it holds.
    bool waitFor(int milliseconds, const std::function<bool()> &condition);
    /// Runs the event loop for as long as it takes to hear what must not come.
    void settle();

    /// The longest time of each kind of call since the last call of this function, and under an
    /// empty name the longest hold-up of the event loop between calls.
    QMap<QString, qint64> takeTimes();

    /// The languages whose catalogue of the plugin lacks `id`, in words; empty when none does.
    /// Languages without a catalogue are left out.
    QString translationFault(const QString &id) const;
    /// The folders of the plugin's catalogues.
    QStringList catalogueFolders() const;

    /// Closes all instruments that are in use, so that none stays at work when the process ends.
    void closeAll();
    /// What the signals of the instrument used last were.
    QStringList signalsSeen() const;

private:
    friend class Instrument;
    void beat();

    Limits m_limits;
    QString m_driverName;
    QString m_serial;
    bool m_isUnsafe;
    QPluginLoader m_loader;
    bool m_isRegistered = false;
    QMap<QString, qint64> m_times;
    QElapsedTimer m_beat;
    QVector<Instrument *> m_instruments;
    std::shared_ptr<Recorder> m_lastRecorder;
};

/// A device of the instrument under test, watched. Closed and deleted at the end of its life.
class Instrument
{
public:
    using Feature = devices::Device::DeviceFeature;

    /// Creates the device, closed. Throws Unmet when there is none.
    explicit Instrument(Subject &subject);
    ~Instrument();
    Q_DISABLE_COPY(Instrument)

    /// The device; null once it is deleted.
    devices::Device *device() const
    {
        return m_device;
    }
    devices::Device *operator->() const
    {
        return m_device;
    }
    const Recorder &seen() const
    {
        return *m_recorder;
    }
    Recorder &recorder()
    {
        return *m_recorder;
    }

    // The calls of the device, with their time noted. Nothing waits.
    bool callOpen();
    void callClose();
    void callReset();
    void callUpdate();
    void callExecute(Feature feature);
    void confirm(int actionId);
    void abort(int actionId);
    void destroy();

    /// Opens the device and lets it settle. Throws Unmet when it does not open.
    void open();
    /// Closes the device and lets it settle. Throws Hindered when it stays open.
    void close();

    /// The features offered.
    QVector<Feature> offered() const;
    /// The features that may be run: those offered, without the moving ones unless allowed, and
    /// never the firmware update, for which nobody has an image.
    QVector<Feature> runnable() const;
    /// The features whose configuration may be tried: as runnable(), with the firmware update when
    /// moving parts is allowed.
    QVector<Feature> configurable() const;

    /// Waits until `endings` runs have ended since event `start`, answering the driver's requests
    /// since then; whether they have. A driver that asks for ever has its requests aborted.
    bool awaitEndings(int start, int endings, bool confirms);
    /// Executes `feature` and waits for its ending, confirming the driver's requests on the way, or
    /// aborting them. Throws Hindered when there is no ending.
    Event run(Feature feature, bool confirms = true);
    /// As run(), with the shortest valid configuration.
    Event runShort(Feature feature, bool confirms = true);
    /// Starts a run that is still at work when the call returns, if possible after its first
    /// progress. Throws NotApplicable when there is none.
    Feature startLongRun();
    /// Starts a run that waits for the user; the id of the request. Throws NotApplicable when no
    /// feature asks.
    int startRequest(Feature *feature);
    /// Brings the device into an error; the code. Throws NotApplicable when there is no way.
    int provokeError();

private:
    Subject &m_subject;
    QPointer<devices::Device> m_device;
    std::shared_ptr<Recorder> m_recorder;
};

} // namespace qel::conformance

#endif
