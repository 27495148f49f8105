#include "tour.h"

#include "configurations.h"

#include <algorithm>
#include <iterator>

namespace qel::conformance {

using devices::Device;
using Feature = Device::DeviceFeature;

int Run::endingIndex() const
{
    const auto ending = std::find_if(events.cbegin(), events.cend(), [](const Event &event) {
        return event.kind == Event::Executed;
    });
    return ending == events.cend() ? -1 : int(std::distance(events.cbegin(), ending));
}

bool Run::hasRequest() const
{
    return std::any_of(events.cbegin(), events.cend(),
                       [](const Event &event) { return event.kind == Event::ActionRequired; });
}

static QVector<Run> ended(const QVector<Run> &runs, bool isForbidden)
{
    QVector<Run> some;
    std::copy_if(runs.cbegin(), runs.cend(), std::back_inserter(some),
                 [&](const Run &run) { return run.isEnded && run.isForbidden == isForbidden; });
    return some;
}

QVector<Run> Tour::allowed() const
{
    return ended(runs, false);
}

QVector<Run> Tour::forbidden() const
{
    return ended(runs, true);
}

void Offences::add(const QString &seen, const QVector<Event> &around)
{
    m_seen += seen;
    if (m_seen.size() > 1)
        m_signals += QString();
    m_signals += toLines(around);
}

void Offences::add(const QString &seen, const Run &run)
{
    add(run.what + QStringLiteral(": ") + seen, run.events);
}

void Offences::addStuck(const Subject &subject, int rule)
{
    for (const Stuck &stuck : subject.stuck()) {
        if (stuck.rule == rule)
            m_seen += stuck.why;
    }
}

void Offences::conclude() const
{
    if (!m_seen.isEmpty())
        throw Broken{m_seen.join(QStringLiteral("; ")), m_signals, true};
}

namespace {

// Makes one run after the other with the instrument that is open.
class Guide
{
public:
    explicit Guide(Subject &subject)
        : m_subject(subject)
    { }

    Tour make();

private:
    void visit(Feature feature);
    void tryForbidden(Feature feature);
    Run begin(Feature feature, const QVariant &configuration, const QString &what);
    void end(Instrument &instrument, Run *run, int start);
    void add(Feature feature, const QVariant &configuration, const QString &what);
    void provoke();
    void overlap();

    Subject &m_subject;
    Tour m_tour;
    // What brings the device into an error at once, if there is anything.
    Feature m_refused = Device::DF_None;
    QVariant m_refusedConfiguration;
};

} // namespace

static QString nameOf(Feature feature, const QString &what)
{
    return what.isEmpty() ? featureName(feature)
                          : QStringLiteral("%1 %2").arg(featureName(feature), what);
}

// Sets the configuration and notes how things stand.
Run Guide::begin(Feature feature, const QVariant &configuration, const QString &what)
{
    Instrument &instrument = m_subject.opened();
    if (configuration.isValid() || instrument->configuration(feature).isValid())
        instrument->setConfiguration(feature, configuration);
    Run run;
    run.feature = feature;
    run.what = nameOf(feature, what);
    run.descriptor = instrument->descriptor(feature);
    run.configuration = configuration;
    run.oldError = instrument->errorCode();
    run.startedAt = QDateTime::currentDateTimeUtc();
    return run;
}

void Guide::end(Instrument &instrument, Run *run, int start)
{
    run->endedAt = QDateTime::currentDateTimeUtc();
    run->events = instrument.seen().events(start);
    run->isEnded = run->endingIndex() >= 0;
    if (!instrument.device())
        return;
    run->isOpenAfter = instrument->isOpen();
    run->isBusyAfter = instrument->isBusy();
    run->isOfferedAfter = instrument->hasFeature(run->feature);
    run->descriptorAfter = instrument->descriptor(run->feature);
    run->configurationAfter = instrument->configuration(run->feature);
}

void Guide::add(Feature feature, const QVariant &configuration, const QString &what)
{
    Run run = begin(feature, configuration, what);
    Instrument &instrument = m_subject.opened();
    const int start = instrument.seen().count();
    instrument.callExecute(feature);
    run.eventsWithin = instrument.seen().count() - start;
    run.isBusyOnReturn = instrument->isBusy();
    try {
        instrument.awaitRun(feature, start, true);
        run.endedAt = QDateTime::currentDateTimeUtc();
        m_subject.settle();
    } catch (const Hindered &) {
        // Reported, and the record shows a run without an ending.
    }
    end(instrument, &run, start);
    m_tour.runs += run;
}

void Guide::tryForbidden(Feature feature)
{
    const auto wrong = wrongConfigurations(feature, m_subject.opened()->descriptor(feature));
    for (const WrongConfiguration &configuration : wrong) {
        Run run =
            begin(feature, configuration.value, QStringLiteral("with %1").arg(configuration.what));
        run.isForbidden = true;
        Instrument &instrument = m_subject.opened();
        const int start = instrument.seen().count();
        try {
            instrument.run(feature);
        } catch (const Hindered &) {
            end(instrument, &run, start);
            m_tour.runs += run;
            return;
        }
        end(instrument, &run, start);
        if (instrument.device())
            instrument->setConfiguration(feature, QVariant());
        if (instrument.device() && instrument->errorCode() != 0) {
            m_refused = feature;
            m_refusedConfiguration = configuration.value;
        }
        m_tour.runs += run;
    }
}

// So that the next run begins with an old error.
void Guide::provoke()
{
    if (m_refused == Device::DF_None)
        return;
    Instrument &instrument = m_subject.opened();
    instrument->setConfiguration(m_refused, m_refusedConfiguration);
    instrument.run(m_refused);
    instrument->setConfiguration(m_refused, QVariant());
}

void Guide::visit(Feature feature)
{
    Instrument &instrument = m_subject.opened();
    const auto runnable = instrument.runnable();
    if (!runnable.contains(feature))
        return;
    provoke();
    add(feature, shortConfiguration(feature, instrument->descriptor(feature)), {});
}

void Guide::overlap()
{
    Instrument &instrument = m_subject.opened();
    try {
        const Feature feature = instrument.startLongRun();
        Run run;
        run.feature = feature;
        run.what = nameOf(feature, QStringLiteral("executed once more during its run"));
        const int start = instrument.runStart();
        instrument.callExecute(feature);
        if (!instrument.awaitEndings(start, 2, true)) {
            m_subject.reportStuck(
                {feature, 610, QStringLiteral("%1 has fewer than two endings").arg(run.what)});
        }
        m_subject.settle();
        end(instrument, &run, start);
        m_tour.overlap = run;
    } catch (const NotApplicable &) {
        // No run lasts.
    }
}

Tour Guide::make()
{
    Instrument &instrument = m_subject.opened();
    const int start = instrument.seen().count();
    m_subject.settle();
    m_tour.idle = instrument.seen().events(start);

    const auto configurable = instrument.configurable();
    try {
        for (const Feature feature : configurable)
            tryForbidden(feature);
        for (const Feature feature : configurable)
            visit(feature);
        overlap();
    } catch (const Unmet &) {
        // The instrument was lost on the way: what has been seen until then counts.
    }
    return m_tour;
}

Tour makeTour(Subject &subject)
{
    return Guide(subject).make();
}

} // namespace qel::conformance
