#include "probeddevice.h"

#include "configurations.h"

#include <qelvalues/features.h>

#include <QtCore/QMetaEnum>

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::DeviceInfo;

// For whoever must not throw: what the plugin hangs in is left out.
static void unlessHung(Subject &subject, const QString &name, const std::function<void()> &work)
{
    if (!subject.isHung(name))
        subject.timed(name, work);
}

// Of most instruments there can be one open device only.
static DeviceInfo releasedRecord(Subject &subject)
{
    subject.releaseOpened();
    return subject.record();
}

ProbedDevice::ProbedDevice(Subject &subject)
    : ProbedDevice(subject, releasedRecord(subject))
{ }

ProbedDevice::ProbedDevice(Subject &subject, const DeviceInfo &record)
    : m_subject(subject)
    , m_recorder(std::make_shared<Recorder>())
{
    m_device = subject.create(record);
    if (!m_device) {
        throw Unmet{Needs::Instrument,
                    QStringLiteral("the driver creates no device for an instrument it lists")};
    }
    m_recorder->attach(m_device);
    subject.m_lastRecorder = m_recorder;
    subject.m_recorders += Subject::Watched{m_recorder};
    subject.m_instruments += this;
}

ProbedDevice::~ProbedDevice()
{
    m_recorder->setReaction({});
    if (m_device && (m_device->isOpen() || m_device->isBusy())) {
        unlessHung(m_subject, QStringLiteral("close()"), [this] { m_device->close(); });
        awaitClosed();
    }
    m_subject.m_instruments.removeOne(this);
    unlessHung(m_subject, QStringLiteral("the destructor"), [this] { delete m_device; });
}

bool ProbedDevice::callOpen()
{
    bool accepted = false;
    m_subject.timed(QStringLiteral("open()"), [&] { accepted = m_device->open(); });
    return accepted;
}

void ProbedDevice::callClose()
{
    m_subject.timed(QStringLiteral("close()"), [this] { m_device->close(); });
}

void ProbedDevice::callReset()
{
    m_subject.timed(QStringLiteral("reset()"), [this] { m_device->reset(); });
}

void ProbedDevice::callUpdate()
{
    m_subject.timed(QStringLiteral("update()"), [this] { m_device->update(); });
}

void ProbedDevice::callExecute(Feature feature)
{
    m_runStart = m_recorder->count();
    m_subject.timed(
        QStringLiteral("execute(%1)").arg(featureName(feature)),
        [this, feature] { m_device->execute(feature); }, feature);
}

void ProbedDevice::executeAgain(Feature feature)
{
    m_runStart = m_recorder->count();
    m_device->execute(feature);
}

void ProbedDevice::confirm(int actionId)
{
    const bool isKnown = m_recorder->hasRequest(actionId);
    m_subject.timed(isKnown ? QStringLiteral("confirmAction()")
                            : QStringLiteral("confirmAction() of an unknown request"),
                    [this, actionId] { m_device->confirmAction(actionId); });
}

void ProbedDevice::abort(int actionId)
{
    const bool isKnown = m_recorder->hasRequest(actionId);
    m_subject.timed(isKnown ? QStringLiteral("abortAction()")
                            : QStringLiteral("abortAction() of an unknown request"),
                    [this, actionId] { m_device->abortAction(actionId); });
}

void ProbedDevice::destroy()
{
    m_subject.timed(QStringLiteral("the destructor"), [this] { delete m_device; });
}

void ProbedDevice::open()
{
    if (callOpen()) {
        m_subject.waitFor(m_subject.limits().open,
                          [this] { return m_device->isOpen() || m_device->errorCode() != 0; });
    }
    if (!m_device->isOpen()) {
        const QString why = QStringLiteral("the instrument does not open, error %1")
                                .arg(errorName(m_device->errorCode()));
        m_subject.noteUnopened(why);
        throw Unmet{Needs::Open, why};
    }
    m_subject.awaitTable(m_device);
    m_subject.m_offered = offered();
}

bool ProbedDevice::awaitClosed()
{
    return m_subject.waitFor(m_subject.limits().open, [this] {
        return !m_device || (!m_device->isOpen() && !m_device->isBusy());
    });
}

void ProbedDevice::close()
{
    callClose();
    if (!awaitClosed())
        throw Hindered{QStringLiteral("the instrument does not close")};
    m_subject.settle();
}

QVector<ProbedDevice::Feature> ProbedDevice::offered() const
{
    QVector<Feature> features;
    const auto all = QMetaEnum::fromType<Feature>();
    for (int i = 0; i < all.keyCount(); ++i) {
        const auto feature = Feature(all.value(i));
        if (m_device->hasFeature(feature))
            features += feature;
    }
    return features;
}

QVector<ProbedDevice::Feature> ProbedDevice::runnable() const
{
    QVector<Feature> features = configurable();
    features.removeOne(Device::DF_FirmwareUpdate);
    return features;
}

QVector<ProbedDevice::Feature> ProbedDevice::configurable() const
{
    QVector<Feature> features;
    const QVector<Feature> all = offered();
    for (const Feature feature : all) {
        const auto &stuck = m_subject.stuck();
        const bool isStuck = std::any_of(stuck.cbegin(), stuck.cend(), [feature](const Stuck &s) {
            return s.feature == feature;
        });
        if (feature != Device::DF_None && !isStuck
            && (m_subject.isUnsafe() || !values::isMoving(feature)))
            features += feature;
    }
    return features;
}

bool ProbedDevice::awaitEndings(int start, int endings, bool confirms)
{
    const int patience = 5;
    // Progress may rise for long, but not for ever.
    const qint64 longest = 15 * qint64(m_subject.limits().run);
    QElapsedTimer clock;
    clock.start();
    int handled = start;
    int confirmed = 0;
    double progress = -1;
    const auto ended = [&] { return m_recorder->count(Event::Executed, start) >= endings; };
    while (!ended() && clock.elapsed() < longest) {
        QVector<Event> requests;
        const bool isAlive = m_subject.waitFor(m_subject.limits().run, [&] {
            bool rises = false;
            const QVector<Event> events = m_recorder->events(handled);
            handled += events.size();
            for (const Event &event : events) {
                if (event.kind == Event::ActionRequired)
                    requests += event;
                const double now =
                    event.value.toHash().value(QStringLiteral("progress")).toDouble();
                rises |= event.kind == Event::TransientValue && now > progress;
                progress = std::max(progress, now);
            }
            return rises || !requests.isEmpty() || ended();
        });
        for (const Event &request : qAsConst(requests)) {
            if (!m_device)
                break;
            if (confirms && ++confirmed <= patience && m_subject.permits(request.action))
                confirm(request.actionId);
            else
                abort(request.actionId);
        }
        if (!isAlive)
            break;
    }
    return ended();
}

// Whose fault it is shows in what happened to the requests of the run.
void ProbedDevice::reportStuck(Feature feature, int start, bool confirms)
{
    const bool asked = m_recorder->count(Event::ActionRequired, start) > 0;
    const bool confirmed = m_recorder->count(Event::ActionConfirmed, start) > 0;
    const int rule = !asked ? 601 : confirms && confirmed ? 702 : 703;
    const QString after = !asked ? QString()
        : rule == 702            ? QStringLiteral(", its request confirmed,")
                                 : QStringLiteral(", its request aborted,");
    m_subject.reportStuck({feature, rule,
                           QStringLiteral("a run of %1%2 has no end within %3 ms")
                               .arg(featureName(feature), after)
                               .arg(m_subject.limits().run)});
}

void ProbedDevice::awaitRun(Feature feature, int start, bool confirms)
{
    if (awaitEndings(start, 1, confirms))
        return;
    reportStuck(feature, start, confirms);
    throw Hindered{m_subject.stuck().constLast().why};
}

Event ProbedDevice::run(Feature feature, bool confirms)
{
    const int start = m_recorder->count();
    callExecute(feature);
    awaitRun(feature, start, confirms);
    const QVector<Event> events = m_recorder->events(start);
    return *std::find_if(events.cbegin(), events.cend(),
                         [](const Event &event) { return event.kind == Event::Executed; });
}

void ProbedDevice::setShortConfiguration(Feature feature)
{
    const QVariant configuration = shortConfiguration(feature, m_device->descriptor(feature));
    if (configuration.isValid() || m_device->configuration(feature).isValid())
        m_device->setConfiguration(feature, configuration);
}

Event ProbedDevice::runShort(Feature feature, bool confirms)
{
    setShortConfiguration(feature);
    return run(feature, confirms);
}

ProbedDevice::Feature ProbedDevice::startLongRun()
{
    QVector<Feature> features = runnable();
    // The moving ones last longest.
    std::stable_partition(features.begin(), features.end(), values::isMoving);
    for (const Feature feature : std::as_const(features)) {
        const int start = m_recorder->count();
        setShortConfiguration(feature);
        callExecute(feature);
        const auto ended = [&] { return m_recorder->count(Event::Executed, start) > 0; };
        if (ended())
            continue;
        if (values::isMoving(feature)) {
            m_subject.waitFor(m_subject.limits().quiet, [&] {
                return ended() || m_recorder->count(Event::TransientValue, start) > 1;
            });
            if (ended() && m_device)
                callExecute(feature);
        }
        return feature;
    }
    throw NotApplicable{m_subject.isUnsafe()
                            ? QStringLiteral("every run ends before execute() returns")
                            : QStringLiteral("every run allowed without --unsafe ends before "
                                             "execute() returns")};
}

int ProbedDevice::startRequest(Feature *feature)
{
    QVector<Feature> features = runnable();
    // Where requests are to be expected first, so that no plate is measured in vain.
    std::stable_partition(features.begin(), features.end(),
                          [](Feature f) { return f == Device::DF_Calibration; });
    for (const Feature candidate : std::as_const(features)) {
        const int start = m_recorder->count();
        setShortConfiguration(candidate);
        callExecute(candidate);
        if (!m_subject.waitFor(m_subject.limits().run, [&] {
                return m_recorder->count(Event::Executed, start) > 0
                    || m_recorder->count(Event::ActionRequired, start) > 0;
            })) {
            reportStuck(candidate, start, false);
            throw Hindered{m_subject.stuck().constLast().why};
        }
        const QVector<Event> events = m_recorder->events(start);
        for (const Event &event : events) {
            if (event.kind == Event::ActionRequired) {
                *feature = candidate;
                return event.actionId;
            }
        }
    }
    throw NotApplicable{QStringLiteral("no run asks the user for anything")};
}

int ProbedDevice::provokeError()
{
    const QVector<Feature> features = configurable();
    for (const Feature feature : features) {
        const auto wrong = wrongConfigurations(feature, m_device->descriptor(feature));
        for (const WrongConfiguration &configuration : wrong) {
            m_device->setConfiguration(feature, configuration.value);
            run(feature);
            m_device->setConfiguration(feature, QVariant());
            if (m_device->errorCode() != 0)
                return m_device->errorCode();
        }
    }
    throw NotApplicable{QStringLiteral("there is no harmless way to bring about an error")};
}

} // namespace qel::conformance
