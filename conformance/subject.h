#ifndef QEL_CONFORMANCE_SUBJECT_H
#define QEL_CONFORMANCE_SUBJECT_H

#include "assignment.h"
#include "recorder.h"
#include "rule.h"
#include "surroundings.h"

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QPluginLoader>

#include <functional>
#include <memory>
#include <optional>

namespace qel::conformance {

class ProbedDevice;
struct Tour;
struct Unplugging;

/// The plugin under test, seen from the process that has loaded it.
///
/// Rules reach the plugin only through it. What a rule needs and does not get is thrown as Unmet.
class Subject
{
public:
    using Feature = devices::Device::DeviceFeature;

    /// The process that has started this one.
    struct Parent
    {
        /// Takes what must be known even if this process ends.
        std::function<void(const QJsonObject &)> tell;
        /// Has a person do what the text says; whether it has been done.
        std::function<bool(const QString &)> ask;
        /// Reserves an instrument; who else has it, in words, or empty.
        std::function<QString(const QString &)> reserve;
    };

    Subject(const Assignment &assignment, const Parent &parent);
    ~Subject();
    Q_DISABLE_COPY(Subject)

    const Limits &limits() const
    {
        return m_assignment.limits;
    }
    bool isUnsafe() const
    {
        return m_assignment.isUnsafe;
    }

    /// The metadata object of the file, loaded or not.
    QJsonObject metaData() const;
    /// The root object; throws when the file does not load.
    QObject *root();
    /// The plugin, without having registered anything, unless it is in a process of its own.
    devices::DevicePlugin *plugin();
    /// How the process that a plugin has to itself has ended; empty while it has not.
    QString hostEnd();
    /// Has the plugin register its drivers, once. Their names, sorted.
    QStringList driverNames();
    /// Has the plugin register its drivers once more.
    void registerAgain();
    /// The driver under test.
    devices::DeviceDriver *driver();
    /// What the driver lists, sorted.
    QList<devices::DeviceInfo> records();
    /// The instrument under test.
    devices::DeviceInfo record();
    /// What the driver's createDevice() returns for `info`.
    devices::Device *create(const devices::DeviceInfo &info);

    /// The instrument under test, open and idle. Shared by the rules that leave it like that.
    ProbedDevice &opened();
    /// Closes and forgets the shared instrument.
    void releaseOpened();
    /// What was seen when every feature was run; done once for all rules that judge runs.
    const Tour &tour();

    /// What was seen when the instrument was unplugged; done once for all rules that judge it.
    const Unplugging &unplugging();

    /// Makes a call of the plugin and announces it, so that its name is known if it never returns.
    /// Throws Hindered when it did not return in an earlier process.
    void call(const QString &name, const std::function<void()> &work,
              Feature feature = devices::Device::DF_None);
    /// As call(), and notes how long it took.
    void timed(const QString &name, const std::function<void()> &work,
               Feature feature = devices::Device::DF_None);
    /// Whether a call of that name did not return in an earlier process.
    bool isHung(const QString &name) const;
    /// Whether the plugin has been in one call, or has kept a wait from ending, for too long.
    bool isOverdue() const;
    /// Runs the event loop until `condition` holds or `milliseconds` have passed; whether it holds.
    bool waitFor(int milliseconds, const std::function<bool()> &condition);
    /// Runs the event loop for as long as it takes to hear what must not come.
    void settle();
    /// Waits until the feature table of a device that has just opened is at rest.
    void awaitTable(const devices::Device *device);

    /// Has the person at the instrument do what `sentence` says. Throws Hindered when nobody does
    /// it.
    void ask(const char *sentence);
    /// Whether what a request for action asks for may be confirmed; has a person do it.
    bool permits(const QString &action);
    /// Notes that a run of `feature` has no end, so that it is not tried again by any rule.
    void reportStuck(const Stuck &stuck);
    /// The features whose runs have no end.
    const QVector<Stuck> &stuck() const
    {
        return m_assignment.stuck;
    }

    /// What the process shared with the plugin before it was loaded.
    const Surroundings &surroundings() const
    {
        return m_surroundings;
    }
    /// Whether the plugin has told the application to quit.
    bool isQuit() const
    {
        return m_isQuit;
    }
    /// What was seen of the plugin in nested event loops, in words; empty when there was none.
    QString nestedLoop() const
    {
        return m_nestedLoop;
    }

    /// The longest time of each kind of call since the last call of this function, and under an
    /// empty name the longest hold-up of the event loop between calls.
    QMap<QString, qint64> takeTimes();
    /// Has takeTimes() yield these times again.
    void returnTimes(const QMap<QString, qint64> &times)
    {
        m_times = times;
    }
    /// Whether a call of that name has been made since the last takeTimes().
    bool hasTimeOf(const QString &name) const
    {
        return m_times.contains(name);
    }
    /// What has been seen of the features since the last call of this function.
    QJsonObject takeTally();
    /// The events so far that came from another thread than the device's.
    QVector<Event> foreignEvents() const;

    /// Closes all instruments that are in use, so that none stays at work when the process ends,
    /// and gives them a moment for it.
    void closeAll();
    /// What the signals of the instrument used last were.
    QStringList signalsSeen() const;

private:
    friend class ProbedDevice;
    struct Watched
    {
        std::shared_ptr<Recorder> recorder;
        int counted = 0;
    };
    void beat();
    void recoverFromQuit();
    QVariantMap hostState();
    void startHost(devices::DevicePlugin *plugin);
    void reserve(const devices::DeviceInfo &record);
    void noteUnopened(const QString &why);

    Assignment m_assignment;
    Parent m_parent;
    bool m_isReserved = false;
    QStringList m_undone; // what a person has refused to do
    QPluginLoader m_loader;
    bool m_isHostStarted = false;
    bool m_isRegistered = false;
    QMap<QString, qint64> m_times;
    QElapsedTimer m_beat;
    QElapsedTimer m_callClock; // valid while the plugin is called
    QElapsedTimer m_waitClock; // valid while waiting
    int m_waitLimit = 0;
    std::optional<int> m_tableTime; // how late after openChanged(true) the table came to rest
    QVector<ProbedDevice *> m_instruments;
    QVector<Watched> m_recorders;
    QVector<Feature> m_offered;
    std::shared_ptr<Recorder> m_lastRecorder;
    Surroundings m_surroundings;
    bool m_isQuit = false;
    int m_callDepth = 0;
    QString m_callName;
    QString m_nestedLoop;
    std::unique_ptr<Tour> m_tour;
    std::unique_ptr<Unplugging> m_unplugging;
    std::unique_ptr<ProbedDevice> m_opened;
};

} // namespace qel::conformance

#endif
