#ifndef QELFRONTEND_RUN_H
#define QELFRONTEND_RUN_H

#include "export.h"

#include <qeldevices/device.h>

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

#include <chrono>
#include <functional>
#include <optional>

namespace qel::frontend {

/// How a run ended.
struct QELFRONTEND_EXPORT Outcome
{
    /// The ways in which a run can end.
    enum Kind {
        Unfinished,    ///< not ended, for instance because the application was told to quit
        Result,        ///< done; `result` holds what the device delivered, shaped as it has to be
        Refused,       ///< not begun: no such feature, or the driver or the caller said no at once
        CannotOpen,    ///< the device did not open
        Failed,        ///< begun, and ended by the device without a result that is one
        AbortedByUser, ///< ended by Run::cancel() or Run::abortAction()
        TimedOut,      ///< ended by the deadline or the stall limit
        DeviceGone,    ///< the device was closed, unplugged or deleted in the middle
    };

    Kind kind = Unfinished; ///< how it ended
    /// The device's error, if it reported one during the run; 0 otherwise. An error from before the
    /// run is never taken for the run's.
    int code = 0;
    QString trId;           ///< the translation id of `code`; empty when `code` is 0
    QString sentence;       ///< what happened, translated; empty for Result
    QString additionalInfo; ///< the driver's details of the error, translated; may be empty
    QVariant result;        ///< invalid unless `kind` is Result
    QVariant delivered;  ///< what the device delivered in a run that has no result: a value that is
                         ///< not shaped as it has to be, or one that came too late. It may be all
                         ///< there is of a measurement; no reader may take it for a result.
                         ///< Invalid where nothing came
    QDateTime startedAt; ///< when the feature was executed, or start() was called where it was not;
                         ///< in UTC
    std::chrono::milliseconds elapsed{0}; ///< from `startedAt` to the end

    /// Whether the run delivered its result.
    bool isResult() const;
};

/// What a run is to do.
struct RunRequest
{
    /// Makes the configuration once the device is open and its descriptor is known. To refuse the
    /// run it returns nothing and leaves a sentence in `problem`. An invalid value is a
    /// configuration, too.
    using Configure =
        std::function<std::optional<QVariant>(const QVariant &descriptor, QString *problem)>;

    /// The feature to run. Without one, the run ends with a result as soon as the device is open.
    std::optional<devices::Device::DeviceFeature> feature;
    /// Without one, the device keeps the configuration that it has.
    Configure configure;
    /// How long the run may take in all, opening and waiting for the user included. 0 or less: for
    /// ever, so that a driver that never answers is only ended by cancel().
    std::chrono::milliseconds deadline{0};
    /// How long the feature may run without a sign of life, such as progress; waiting for the user
    /// does not count. 0 or less: for ever. Ends the run like the deadline.
    std::chrono::milliseconds stallLimit{0};
    /// How long the device gets for each of its last chances: to obey a step of a cancellation, to
    /// offer the feature after it has opened, to report the end after it was closed.
    std::chrono::milliseconds grace{2000};
};

/// One run of one feature on one device: opens the device if needed, configures it, executes the
/// feature and ends in exactly one Outcome, whatever the driver does.
///
/// A run waits while the device is busy with something else, since its answer could not be told
/// from the answer to this run. It leaves the device open. It does not own the device and does not
/// delete it.
///
/// cancel() and the deadline climb a ladder until the device obeys: Device::abortAction() of open
/// requests, Device::reset(), Device::close(), each with RunRequest::grace to take effect; then the
/// run ends without it. A device that is not yet open is closed at once. A device that is busy with
/// something else is left alone.
///
/// What the driver reports after the end is ignored. An `executed` for the same feature that
/// belongs to an execution from before the run cannot be told from the run's own if it arrives
/// while the run executes.
///
/// Lives in the device's thread and needs its event loop. Slots connected to any signal but
/// finished() are called from within the driver's own code: do not delete the device or the run
/// there.
class QELFRONTEND_EXPORT Run : public QObject
{
    Q_OBJECT

public:
    /// Where a run stands.
    enum State {
        NotStarted,
        Opening,   ///< waiting for the device to open
        Preparing, ///< open, waiting for the device to offer the feature
        Waiting,   ///< waiting for the device to be no longer busy with something else
        Starting,  ///< the device is told to execute; an end now is a refusal
        Executing, ///< waiting for the feature's result
        Losing,   ///< the device has closed or is unplugged; it may still end what runs and say why
        Stopping, ///< on the ladder
        Ending,   ///< over; the device may still say why
        Finished, ///< the outcome stands
    };
    Q_ENUM(State)

    /// Prepares a run on `device`, which must not be null.
    Run(devices::Device *device, RunRequest request, QObject *parent = nullptr);
    /// Leaves the device as it is; to stop it, cancel() and wait for finished().
    ~Run() override;

    /// Starts the run; once. Returns before the device is touched.
    void start();

    /// Where the run stands.
    State state() const;
    /// How the run ended; meaningful from finished() on.
    const Outcome &outcome() const;

public Q_SLOTS:
    /// Ends the run as AbortedByUser. A run that was not started ends, too; repeating it does
    /// nothing.
    void cancel();
    /// Tells the driver that the user has done what the request `actionId` of this run asked for.
    /// Any other number is ignored.
    void confirmAction(int actionId);
    /// Tells the driver that the user will not do it, and cancels the run. Any other number is
    /// ignored.
    void abortAction(int actionId);

Q_SIGNALS:
    /// The run has gone on to `state`.
    void stateChanged(qel::frontend::Run::State state);
    /// The feature's progress, from 0 to 1; it only rises.
    void progressChanged(double progress);
    /// A value that the driver sent meanwhile, of this or another feature; progress is left out.
    void transientValue(qel::devices::Device::DeviceFeature feature, const QVariant &value);
    /// The driver asks the user for an action. Answer with confirmAction() or abortAction().
    /// @param text what the user is to do, translated
    void actionRequired(int actionId, const QString &text);
    /// The run has ended. Emitted once, from the event loop, never from within a call of this
    /// class or the driver's code: the device and the run may be deleted here.
    void finished(const qel::frontend::Outcome &outcome);

private:
    enum class Rung { Abort, Reset, Close, End };

    void begin();
    void watchDevice();
    void prepare();
    void execute(const std::optional<QVariant> &configuration);
    void stop(Outcome::Kind kind);
    void climb();
    void setState(State state);
    void lose();
    void end(Outcome::Kind kind, const QString &sentence = QString(),
             const QVariant &value = QVariant());
    void deliver();
    QString sentenceFor(Outcome::Kind kind) const;

    void onOpenChanged(bool open);
    void onBusyChanged(bool busy);
    void onFeaturesChanged();
    void onErrorChanged();
    void onTransientValue(devices::Device::DeviceFeature feature, const QVariant &value);
    void onActionRequired(int actionId, const QString &action);
    void onExecuted(devices::Device::DeviceFeature feature, bool ok, const QVariant &result);
    void judge(const QVariant &result);
    void onGraceOver();
    bool isAtWork() const;
    void showLife();

    QPointer<devices::Device> m_device;
    const RunRequest m_request;
    Outcome m_outcome;
    State m_state = NotStarted;
    Rung m_rung = Rung::Abort;
    Outcome::Kind m_stopKind = Outcome::AbortedByUser;
    double m_progress = -1;
    QSet<int> m_openActions;
    QString m_earlierErrorTrId;
    QElapsedTimer m_clock;
    QTimer m_deadline;
    QTimer m_stall;
    QTimer m_grace;
};

} // namespace qel::frontend

Q_DECLARE_METATYPE(qel::frontend::Outcome)

#endif
