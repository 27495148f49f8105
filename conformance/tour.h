#ifndef QEL_CONFORMANCE_TOUR_H
#define QEL_CONFORMANCE_TOUR_H

#include "probeddevice.h"

#include <QtCore/QDateTime>

namespace qel::conformance {

/// One run, as it was seen from execute() until a quiet moment after its ending.
struct Run
{
    using Feature = devices::Device::DeviceFeature;

    Feature feature = devices::Device::DF_None;
    QString what; ///< the feature, and what is special about the run, for people
    enum Kind {
        Short,     ///< with the configuration that makes for the shortest run
        Defaults,  ///< without a configuration
        Other,     ///< with another one that is allowed
        Changed,   ///< with another one being set right after execute()
        Forbidden, ///< with one that the descriptor forbids
    };
    Kind kind = Short;
    QVariant descriptor;    ///< at the start
    QVariant configuration; ///< as it was set
    QDateTime startedAt;    ///< UTC, a moment before execute()
    QDateTime endedAt;      ///< UTC, a moment after the ending
    int oldError = 0;       ///< the error of the device before execute()
    bool isEnded = false;   ///< whether there was an ending
    int eventsWithin = 0;   ///< how many events there were when execute() returned
    bool isBusyOnReturn = false;
    bool isOpenAfter = false;
    bool isBusyAfter = false;
    bool isOfferedAfter = false;
    QVariant descriptorAfter;
    QVariant configurationAfter;
    QVector<Event> events;
    int threadsAfter = 0; ///< of the whole process
    int filesAfter = 0;   ///< that the whole process has open

    /// The index of the first ending among the events; -1 without one.
    int endingIndex() const;
    /// The first ending. Only where there is one.
    const Event &ending() const
    {
        return events.at(endingIndex());
    }
    /// How many endings there are, of whatever feature.
    int endingCount() const;
    bool isSuccess() const
    {
        return isEnded && ending().flag;
    }
    /// Whether a request for action was raised in the run.
    bool hasRequest() const;
};

/// What is seen when every feature that may be run is run: with its shortest configuration, with
/// others, and with those that the descriptor forbids; and when a run is started during another, or
/// by the receiver of an ending.
struct Tour
{
    QVector<Event> idle; ///< of the device before the first run
    QVector<Run> runs;
    /// A run during which the same feature was executed once more.
    std::optional<Run> overlap;
    /// Runs whose ending made its receiver execute the same feature once more.
    QVector<Run> chains;

    /// The runs with a configuration that is allowed and an ending.
    QVector<Run> allowed() const;
    /// Of these, the ones that succeeded.
    QVector<Run> successful() const;
    /// The runs with a configuration that is forbidden and an ending.
    QVector<Run> forbidden() const;
};

/// Whether the result of a run that succeeded has not the shape that its feature delivers.
bool isMisshapen(const Run &run);
/// What is wrong with that shape, in words.
QString shapeFault(const Run &run);

/// Makes the tour with the instrument under test.
Tour makeTour(Subject &subject);

/// Collects all offences against a rule that the record of a tour shows.
class Offences
{
public:
    void add(const QString &seen, const QVector<Event> &around);
    void add(const QString &seen, const Run &run);
    /// Adds the runs without an end that break `rule`, seen by whatever rule.
    void addStuck(const Subject &subject, int rule);
    /// Throws Broken when there are any.
    void conclude() const;

private:
    QStringList m_seen;
    QStringList m_signals;
};

/// Throws Broken with all that `faults` says of the runs, when it says something.
void judge(const QVector<Run> &runs, const std::function<QStringList(const Run &)> &faults);

/// The runs among `runs` that `isMeant` picks. Throws NotApplicable, because of `none`, when there
/// are none.
QVector<Run> only(const QVector<Run> &runs, const std::function<bool(const Run &)> &isMeant,
                  const QString &none);

} // namespace qel::conformance

#endif
