#include "run.h"

#include "frontend.h"
#include "messages_p.h"
#include "problems.h"
#include "selection.h"
#include "trail.h"

#include <qeldevices/deviceerrors.h>
#include <qelvalues/names.h>
#include <qelvalues/results.h>

#include <QtCore/QStringList>

#include <cmath>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

bool Outcome::isResult() const
{
    return kind == Result;
}

Run::Run(Device *device, RunRequest request, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_request(std::move(request))
{
    Q_ASSERT(device && device->thread() == thread());
    qRegisterMetaType<Outcome>();
    qRegisterMetaType<State>();
    m_deadline.setSingleShot(true);
    m_grace.setSingleShot(true);
    m_grace.setInterval(m_request.grace);
    m_stall.setSingleShot(true);
    m_stall.setInterval(m_request.stallLimit);
    connect(&m_deadline, &QTimer::timeout, this, [this] { stop(Outcome::TimedOut); });
    connect(&m_stall, &QTimer::timeout, this, [this] { stop(Outcome::TimedOut); });
    connect(&m_grace, &QTimer::timeout, this, &Run::onGraceOver);
}

Run::~Run() = default;

Run::State Run::state() const
{
    return m_state;
}

const Outcome &Run::outcome() const
{
    return m_outcome;
}

void Run::start()
{
    Q_ASSERT(!m_clock.isValid());
    m_outcome.startedAt = QDateTime::currentDateTimeUtc();
    m_clock.start();
    if (m_request.deadline.count() > 0)
        m_deadline.start(m_request.deadline);
    QMetaObject::invokeMethod(this, &Run::begin, Qt::QueuedConnection);
}

void Run::cancel()
{
    stop(Outcome::AbortedByUser);
}

void Run::confirmAction(int actionId)
{
    if (!m_device || !m_openActions.remove(actionId))
        return;
    const TrailMark mark(m_device->driver(), "confirmAction()");
    showLife();
    m_device->confirmAction(actionId);
}

void Run::abortAction(int actionId)
{
    if (m_openActions.contains(actionId))
        cancel();
}

void Run::begin()
{
    if (m_state != NotStarted)
        return;
    if (!m_device) {
        end(Outcome::DeviceGone);
        return;
    }
    watchDevice();
    if (m_device->isOpen()) {
        setState(Preparing);
        prepare();
        return;
    }

    setState(Opening);
    if (m_state != Opening)
        return;
    const QPointer<Run> self(this);
    const TrailMark mark(m_device->driver(), "open()");
    const bool accepted = m_device->open();
    // Everything may have happened in there.
    if (self && m_state == Opening && !accepted)
        end(Outcome::CannotOpen);
}

void Run::watchDevice()
{
    if (m_device->errorCode() != NO_DEVICE_ERROR)
        m_earlierErrorTrId = m_device->errorTrId();
    connect(m_device, &Device::openChanged, this, &Run::onOpenChanged);
    connect(m_device, &Device::busyChanged, this, &Run::onBusyChanged);
    connect(m_device, &Device::featuresChanged, this, &Run::onFeaturesChanged);
    connect(m_device, &Device::descriptorChanged, this, &Run::onFeaturesChanged);
    connect(m_device, &Device::errorChanged, this, &Run::onErrorChanged);
    connect(m_device, &Device::transientValue, this, &Run::onTransientValue);
    connect(m_device, &Device::actionRequired, this, &Run::onActionRequired);
    connect(m_device, &Device::executed, this, &Run::onExecuted);
    connect(m_device, &QObject::destroyed, this, [this] { end(Outcome::DeviceGone); });
}

void Run::prepare()
{
    if (m_state != Preparing && m_state != Waiting)
        return;
    if (!m_request.feature) {
        end(Outcome::Result);
        return;
    }
    if (!m_device->hasFeature(*m_request.feature)) {
        // Drivers may go on to find out what the device can do after they have opened it.
        setState(Preparing);
        if (!m_grace.isActive())
            m_grace.start();
        return;
    }
    if (m_device->isBusy()) {
        m_grace.stop();
        setState(Waiting);
        return;
    }
    m_grace.stop();

    std::optional<QVariant> configuration;
    if (m_request.configure) {
        QString problem;
        configuration = m_request.configure(m_device->descriptor(*m_request.feature), &problem);
        if (!configuration) {
            end(Outcome::Refused, problem);
            return;
        }
    }
    execute(configuration);
}

void Run::execute(const std::optional<QVariant> &configuration)
{
    const QPointer<Run> self(this);
    const State before = m_state;
    if (configuration)
        m_device->setConfiguration(*m_request.feature, *configuration);
    if (!self || m_state != before)
        return;
    setState(Starting);
    if (!self || m_state != Starting)
        return;
    m_outcome.startedAt = QDateTime::currentDateTimeUtc();
    m_clock.start();
    showLife();
    const TrailMark mark(m_device->driver(), "execute()");
    m_device->execute(*m_request.feature);
    if (self && m_state == Starting)
        setState(Executing);
}

void Run::stop(Outcome::Kind kind)
{
    switch (m_state) {
    case Ending:
    case Finished:
    case Stopping:
        return;
    case NotStarted:
    case Preparing:
    case Losing:
        end(kind);
        return;
    case Waiting:
        end(kind, kind == Outcome::TimedOut ? message("qelfrontend-run-busy") : QString());
        return;
    case Opening:
        m_rung = Rung::Close;
        break;
    case Starting:
    case Executing:
        m_rung = m_openActions.isEmpty() ? Rung::Reset : Rung::Abort;
        break;
    }
    m_stopKind = kind;
    setState(Stopping);
    climb();
}

// Each step is the last thing that is done here: it may end the run.
void Run::climb()
{
    if (m_state != Stopping)
        return;
    const QPointer<Run> self(this);
    m_grace.start();
    const char *const calls[] = {"abortAction()", "reset()", "close()", ""};
    const TrailMark mark(m_device ? m_device->driver() : QString(), calls[int(m_rung)]);
    switch (m_rung) {
    case Rung::Abort: {
        m_rung = Rung::Reset;
        const QSet<int> actions = std::exchange(m_openActions, {});
        for (const int action : actions) {
            m_device->abortAction(action);
            if (!self || m_state != Stopping)
                return;
        }
        return;
    }
    case Rung::Reset:
        m_rung = Rung::Close;
        m_device->reset();
        return;
    case Rung::Close:
        m_rung = Rung::End;
        m_device->close();
        if (self && m_state == Stopping && !m_device->isOpen())
            end(m_stopKind);
        return;
    case Rung::End:
        end(m_stopKind);
        return;
    }
}

void Run::setState(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit stateChanged(state);
}

// The device will hardly answer any more, but may be about to say why.
void Run::lose()
{
    m_grace.start();
    setState(Losing);
}

// Only what is known by now goes into the outcome; the error may still be on its way behind the
// report of the end, so the rest waits for deliver().
void Run::end(Outcome::Kind kind, const QString &sentence, const QVariant &value)
{
    if (m_state >= Ending)
        return;
    m_deadline.stop();
    m_stall.stop();
    m_grace.stop();
    m_openActions.clear();
    m_outcome.kind = kind;
    m_outcome.sentence = sentence;
    (kind == Outcome::Result ? m_outcome.result : m_outcome.delivered) = value;
    if (m_clock.isValid())
        m_outcome.elapsed = std::chrono::milliseconds(m_clock.elapsed());
    else
        m_outcome.startedAt = QDateTime::currentDateTimeUtc();
    QMetaObject::invokeMethod(this, &Run::deliver, Qt::QueuedConnection);
    setState(Ending);
}

void Run::deliver()
{
    if (m_device)
        m_device->disconnect(this);
    // A refusal with a sentence is this side's own, whatever the device says.
    if (m_outcome.kind == Outcome::Refused && m_outcome.sentence.isEmpty() && m_outcome.code != 0)
        m_outcome.kind = Outcome::Failed;
    if (m_outcome.kind == Outcome::Failed && m_outcome.code == ERROR_DEVICE_DISCONNECTED)
        m_outcome.kind = Outcome::DeviceGone;
    if (m_outcome.sentence.isEmpty())
        m_outcome.sentence = sentenceFor(m_outcome.kind);
    setState(Finished);
    emit finished(m_outcome);
}

QString Run::sentenceFor(Outcome::Kind kind) const
{
    const bool hasReason = m_outcome.code != NO_DEVICE_ERROR;
    QString sentence;
    switch (kind) {
    case Outcome::Unfinished:
    case Outcome::Result:
        return QString();
    case Outcome::AbortedByUser:
        return message("qelfrontend-run-aborted");
    case Outcome::TimedOut:
        if (m_request.deadline.count() <= 0) {
            return message("qelfrontend-run-stalled",
                           QLocale().toString(double(m_request.stallLimit.count()) / 1000));
        }
        return message("qelfrontend-run-timeout",
                       QLocale().toString(double(m_request.deadline.count()) / 1000));
    case Outcome::DeviceGone:
        return hasReason ? translated(m_outcome.trId) : message("qelfrontend-run-gone");
    case Outcome::CannotOpen:
        if (hasReason)
            return translated(m_outcome.trId);
        sentence = message("qelfrontend-run-closed");
        break;
    case Outcome::Refused:
        sentence = message("qelfrontend-run-refused", featureArgument(*m_request.feature));
        break;
    case Outcome::Failed:
        if (hasReason)
            return translated(m_outcome.trId);
        sentence = message("qelfrontend-run-failed");
        break;
    }
    // The same error twice in a row is not reported a second time: it may be the reason, or not.
    if (!m_earlierErrorTrId.isEmpty())
        sentence += message("qelfrontend-run-earlier-error", translated(m_earlierErrorTrId));
    return sentence;
}

void Run::onOpenChanged(bool open)
{
    switch (m_state) {
    case Opening:
        if (!open)
            return;
        // Later, since drivers fill in the features after they have reported the device open.
        QMetaObject::invokeMethod(this, &Run::prepare, Qt::QueuedConnection);
        setState(Preparing);
        return;
    case Preparing:
    case Waiting:
    case Starting:
    case Executing:
        if (!open)
            lose();
        return;
    case Losing:
        return;
    case Stopping:
        if (!open && m_rung == Rung::End)
            end(m_stopKind);
        return;
    case NotStarted:
    case Ending:
    case Finished:
        return;
    }
}

void Run::onBusyChanged(bool busy)
{
    // Later, since the end of the busy state may come before the report of what ended.
    if (!busy && m_state == Waiting)
        QMetaObject::invokeMethod(this, &Run::prepare, Qt::QueuedConnection);
}

void Run::onFeaturesChanged()
{
    // Later, since a driver may describe a feature after it has added it.
    if (m_state == Preparing && m_grace.isActive())
        QMetaObject::invokeMethod(this, &Run::prepare, Qt::QueuedConnection);
}

void Run::onErrorChanged()
{
    const int code = m_device->errorCode();
    // A reason may follow the report of a failure. Nothing else that comes after the end counts,
    // not even that the error is gone.
    const bool wantsReason = m_outcome.code == NO_DEVICE_ERROR
        && (m_outcome.kind == Outcome::Failed || m_outcome.kind == Outcome::Refused
            || m_outcome.kind == Outcome::CannotOpen);
    if (m_state == Ending && !wantsReason)
        return;
    m_earlierErrorTrId.clear();
    m_outcome.code = code;
    m_outcome.trId = code == NO_DEVICE_ERROR ? QString() : m_device->errorTrId();
    const QString details = m_device->errorAdditionalInfoTrId();
    m_outcome.additionalInfo = details.isEmpty() ? QString() : translated(details);
    if (code == NO_DEVICE_ERROR)
        return;
    if (m_state == Opening)
        end(Outcome::CannotOpen);
    else if (code == ERROR_DEVICE_DISCONNECTED
             && (m_state == Preparing || m_state == Waiting || isAtWork()))
        lose();
}

void Run::onTransientValue(Device::DeviceFeature feature, const QVariant &value)
{
    if (!isAtWork())
        return;
    if (feature == m_request.feature)
        showLife();
    const QVariant progress = value.toHash().value(QStringLiteral("progress"));
    if (feature != m_request.feature || progress.userType() != QMetaType::Double) {
        emit transientValue(feature, value);
        return;
    }
    const double done = progress.toDouble();
    if (done > m_progress && done >= 0 && done <= 1) {
        m_progress = done;
        emit progressChanged(done);
    }
}

void Run::onActionRequired(int actionId, const QString &action)
{
    if (m_state == Stopping) {
        // Nobody is asked any more.
        m_device->abortAction(actionId);
        return;
    }
    if (m_state >= Ending)
        return;
    m_openActions.insert(actionId);
    m_stall.stop(); // the user takes his time
    emit actionRequired(actionId, translated(action));
}

void Run::onExecuted(Device::DeviceFeature feature, bool ok, const QVariant &result)
{
    if (feature != m_request.feature)
        return;
    if (m_state == Stopping)
        end(m_stopKind, QString(), result);
    else if (!isAtWork() && m_state != Losing)
        return;
    else if (ok)
        judge(result);
    else if (m_state == Losing && m_outcome.code == NO_DEVICE_ERROR)
        end(Outcome::DeviceGone, QString(), result);
    else
        end(m_state == Starting ? Outcome::Refused : Outcome::Failed, QString(), result);
}

// What is not shaped as the feature's results are is none: nobody could tell what was measured.
void Run::judge(const QVariant &result)
{
    const auto feature = *m_request.feature;
    const auto problems = checkResult(feature, m_device->descriptor(feature),
                                      m_device->configuration(feature), result);
    if (problems.isEmpty())
        end(Outcome::Result, QString(), result);
    else
        end(Outcome::Failed, explain(problems.first()), result);
}

bool Run::isAtWork() const
{
    return m_state == Starting || m_state == Executing;
}

// The feature runs on: its time without a sign of life begins anew.
void Run::showLife()
{
    if (isAtWork() && m_request.stallLimit.count() > 0)
        m_stall.start();
}

void Run::onGraceOver()
{
    if (m_state == Stopping) {
        climb();
    } else if (m_state == Losing) {
        end(Outcome::DeviceGone);
    } else if (m_state == Preparing && m_device->hasFeature(*m_request.feature)) {
        // A descriptor without content makes a feature available without a signal.
        prepare();
    } else if (m_state == Preparing) {
        QStringList offered;
        const auto known = offeredFeatures(*m_device);
        for (const auto feature : known)
            offered += featureArgument(feature);
        end(Outcome::Refused,
            message("qelfrontend-run-no-feature", featureArgument(*m_request.feature),
                    offered.join(QStringLiteral(", "))));
    }
}

} // namespace qel::frontend
