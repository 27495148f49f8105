#include "subject.h"
#include "values.h"

#include <QtCore/QMetaEnum>

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::DeviceDriver;
using devices::DeviceInfo;

Instrument::Instrument(Subject &subject)
    : m_subject(subject)
    , m_recorder(std::make_shared<Recorder>())
{
    const DeviceInfo record = subject.record();
    DeviceDriver *driver = subject.driver();
    subject.timed(QStringLiteral("createDevice()"),
                  [&] { m_device = driver->createDevice(record); });
    if (!m_device) {
        throw Unmet{Needs::Instrument,
                    QStringLiteral("the driver creates no device for an instrument it lists")};
    }
    m_recorder->attach(m_device);
    subject.m_lastRecorder = m_recorder;
    subject.m_instruments += this;
}

Instrument::~Instrument()
{
    m_recorder->setReaction({});
    if (m_device && (m_device->isOpen() || m_device->isBusy())) {
        m_device->close();
        m_subject.waitFor(m_subject.limits().quiet,
                          [this] { return !m_device || !m_device->isOpen(); });
    }
    m_subject.m_instruments.removeOne(this);
    delete m_device;
}

bool Instrument::callOpen()
{
    bool accepted = false;
    m_subject.timed(QStringLiteral("open()"), [&] { accepted = m_device->open(); });
    return accepted;
}

void Instrument::callClose()
{
    m_subject.timed(QStringLiteral("close()"), [this] { m_device->close(); });
}

void Instrument::callReset()
{
    m_subject.timed(QStringLiteral("reset()"), [this] { m_device->reset(); });
}

void Instrument::callUpdate()
{
    m_subject.timed(QStringLiteral("update()"), [this] { m_device->update(); });
}

void Instrument::callExecute(Feature feature)
{
    m_subject.timed(QStringLiteral("execute(%1)").arg(featureName(feature)),
                    [this, feature] { m_device->execute(feature); });
}

void Instrument::confirm(int actionId)
{
    m_subject.timed(QStringLiteral("confirmAction()"),
                    [this, actionId] { m_device->confirmAction(actionId); });
}

void Instrument::abort(int actionId)
{
    m_subject.timed(QStringLiteral("abortAction()"),
                    [this, actionId] { m_device->abortAction(actionId); });
}

void Instrument::destroy()
{
    m_subject.timed(QStringLiteral("the destructor"), [this] { delete m_device; });
}

void Instrument::open()
{
    if (callOpen()) {
        m_subject.waitFor(m_subject.limits().open,
                          [this] { return m_device->isOpen() || m_device->errorCode() != 0; });
    }
    if (!m_device->isOpen()) {
        throw Unmet{Needs::Open,
                    QStringLiteral("the instrument does not open, error %1")
                        .arg(errorName(m_device->errorCode()))};
    }
    m_subject.settle();
}

void Instrument::close()
{
    callClose();
    m_subject.settle();
    if (m_device->isOpen())
        throw Hindered{QStringLiteral("the instrument does not close")};
}

QVector<Instrument::Feature> Instrument::offered() const
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

QVector<Instrument::Feature> Instrument::runnable() const
{
    QVector<Feature> features = configurable();
    features.removeOne(Device::DF_FirmwareUpdate);
    return features;
}

QVector<Instrument::Feature> Instrument::configurable() const
{
    QVector<Feature> features;
    const QVector<Feature> all = offered();
    for (const Feature feature : all) {
        if (feature != Device::DF_None && (m_subject.isUnsafe() || !isMoving(feature)))
            features += feature;
    }
    return features;
}

bool Instrument::awaitEndings(int start, int endings, bool confirms)
{
    const int patience = 5;
    int handled = start;
    int confirmed = 0;
    return m_subject.waitFor(m_subject.limits().run, [&] {
        const QVector<Event> events = m_recorder->events(handled);
        handled += events.size();
        for (const Event &event : events) {
            if (event.kind != Event::ActionRequired)
                continue;
            if (confirms && ++confirmed <= patience)
                confirm(event.actionId);
            else
                abort(event.actionId);
        }
        return m_recorder->count(Event::Executed, start) >= endings;
    });
}

Event Instrument::run(Feature feature, bool confirms)
{
    const int start = m_recorder->count();
    callExecute(feature);
    if (!awaitEndings(start, 1, confirms))
        throw Hindered{QStringLiteral("a run of %1 has no end").arg(featureName(feature))};
    const QVector<Event> events = m_recorder->events(start);
    return *std::find_if(events.cbegin(), events.cend(),
                         [](const Event &event) { return event.kind == Event::Executed; });
}

Event Instrument::runShort(Feature feature, bool confirms)
{
    const QVariant configuration = shortConfiguration(feature, m_device->descriptor(feature));
    if (configuration.isValid() || m_device->configuration(feature).isValid())
        m_device->setConfiguration(feature, configuration);
    return run(feature, confirms);
}

Instrument::Feature Instrument::startLongRun()
{
    QVector<Feature> features = runnable();
    // The moving ones last longest.
    std::stable_partition(features.begin(), features.end(), isMoving);
    for (const Feature feature : std::as_const(features)) {
        const int start = m_recorder->count();
        const QVariant configuration = shortConfiguration(feature, m_device->descriptor(feature));
        if (configuration.isValid())
            m_device->setConfiguration(feature, configuration);
        callExecute(feature);
        const auto ended = [&] { return m_recorder->count(Event::Executed, start) > 0; };
        if (ended())
            continue;
        if (isMoving(feature)) {
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

int Instrument::startRequest(Feature *feature)
{
    QVector<Feature> features = runnable();
    // Where requests are to be expected first, so that no plate is measured in vain.
    std::stable_partition(features.begin(), features.end(),
                          [](Feature f) { return f == Device::DF_Calibration; });
    for (const Feature candidate : std::as_const(features)) {
        const int start = m_recorder->count();
        const QVariant configuration =
            shortConfiguration(candidate, m_device->descriptor(candidate));
        if (configuration.isValid())
            m_device->setConfiguration(candidate, configuration);
        callExecute(candidate);
        m_subject.waitFor(m_subject.limits().run, [&] {
            return m_recorder->count(Event::Executed, start) > 0
                || m_recorder->count(Event::ActionRequired, start) > 0;
        });
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

int Instrument::provokeError()
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
