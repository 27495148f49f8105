#ifndef QEL_CONFORMANCE_RECORDER_H
#define QEL_CONFORMANCE_RECORDER_H

#include <qeldevices/device.h>
#include <qelvalues/names.h>
#include <qelvalues/observer.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

namespace qel::conformance {

using values::featureName;

/// An event, and when it was seen.
struct Event : values::Event
{
    qint64 milliseconds = 0; ///< since the recorder began

    /// As a line for people.
    QString toString() const;
};

/// Writes down every signal of one device in order.
///
/// The events outlive the device. Signals from other threads are recorded too.
class Recorder
{
public:
    Recorder();

    /// Starts to record `device`. Called once.
    void attach(devices::Device *device);

    /// Calls `reaction` for each event right after it was recorded, inside the emission.
    void setReaction(std::function<void(const Event &)> reaction);

    /// The events from index `from` on.
    QVector<Event> events(int from = 0) const;
    /// How many events there are: the index of the next.
    int count() const;
    /// How many events of `kind` there are from index `from` on.
    int count(Event::Kind kind, int from) const;
    /// Whether the device has raised the request `actionId`.
    bool hasRequest(int actionId) const;

private:
    void add(const values::Event &seen);

    mutable QMutex m_mutex;
    QElapsedTimer m_clock;
    QVector<Event> m_events;
    std::function<void(const Event &)> m_reaction;
};

/// Events as lines for people; of a long list the middle is left out.
QStringList toLines(const QVector<Event> &events);

/// "ERROR_DEVICE_TIMEOUT (0x8004)".
QString errorName(int code);

} // namespace qel::conformance

#endif
