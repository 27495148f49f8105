#include "tour.h"

#include "configurations.h"

#include <qelvalues/features.h>
#include <qelvalues/results.h>

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

int Run::endingCount() const
{
    return int(std::count_if(events.cbegin(), events.cend(),
                             [](const Event &event) { return event.kind == Event::Executed; }));
}

bool Run::hasRequest() const
{
    return std::any_of(events.cbegin(), events.cend(),
                       [](const Event &event) { return event.kind == Event::ActionRequired; });
}

static QVector<Run> ended(const QVector<Run> &runs, bool isForbidden)
{
    QVector<Run> some;
    std::copy_if(runs.cbegin(), runs.cend(), std::back_inserter(some), [&](const Run &run) {
        return run.isEnded && (run.kind == Run::Forbidden) == isForbidden;
    });
    return some;
}

QVector<Run> Tour::allowed() const
{
    return ended(runs, false);
}

QVector<Run> Tour::successful() const
{
    QVector<Run> some;
    const QVector<Run> all = allowed();
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(some),
                 [](const Run &run) { return run.isSuccess(); });
    return some;
}

QVector<Run> Tour::forbidden() const
{
    return ended(runs, true);
}

QString shapeFault(const Run &run)
{
    QStringList texts;
    const auto problems =
        values::checkResult(run.feature, run.descriptor, run.configuration, run.ending().value);
    for (const values::Problem &problem : problems) {
        // What does not fit its run is a matter of values, not of shape.
        if (problem.code != values::Problem::NotAsConfigured
            && problem.code != values::Problem::NotAsDescribed
            && problem.code != values::Problem::NotSelected)
            texts += values::toString(problem);
    }
    return texts.join(QStringLiteral(", "));
}

bool isMisshapen(const Run &run)
{
    return !shapeFault(run).isEmpty();
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

void judge(const QVector<Run> &runs, const std::function<QStringList(const Run &)> &faults)
{
    Offences offences;
    for (const Run &run : runs) {
        const QStringList all = faults(run);
        for (const QString &fault : all)
            offences.add(fault, run);
    }
    offences.conclude();
}

QVector<Run> only(const QVector<Run> &runs, const std::function<bool(const Run &)> &isMeant,
                  const QString &none)
{
    QVector<Run> some;
    std::copy_if(runs.cbegin(), runs.cend(), std::back_inserter(some), isMeant);
    if (some.isEmpty())
        throw NotApplicable{none};
    return some;
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
    void end(ProbedDevice &instrument, Run *run, int start);
    void add(Feature feature, Run::Kind kind, const QVariant &configuration, const QString &what,
             const QVariant &next = {});
    void chain(Feature feature);
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
    ProbedDevice &instrument = m_subject.opened();
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

void Guide::end(ProbedDevice &instrument, Run *run, int start)
{
    run->endedAt = QDateTime::currentDateTimeUtc();
    run->events = instrument.seen().events(start);
    run->isEnded = run->endingIndex() >= 0;
    run->threadsAfter = threadCount();
    run->filesAfter = openFileCount();
    if (!instrument.device())
        return;
    run->isOpenAfter = instrument->isOpen();
    run->isBusyAfter = instrument->isBusy();
    run->isOfferedAfter = instrument->hasFeature(run->feature);
    run->descriptorAfter = instrument->descriptor(run->feature);
    run->configurationAfter = instrument->configuration(run->feature);
}

// @param next the configuration that is set when execute() has returned; invalid for none
void Guide::add(Feature feature, Run::Kind kind, const QVariant &configuration, const QString &what,
                const QVariant &next)
{
    Run run = begin(feature, configuration, what);
    run.kind = kind;
    ProbedDevice &instrument = m_subject.opened();
    const int start = instrument.seen().count();
    instrument.callExecute(feature);
    run.eventsWithin = instrument.seen().count() - start;
    run.isBusyOnReturn = instrument->isBusy();
    if (next.isValid())
        instrument->setConfiguration(feature, next);
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
        run.kind = Run::Forbidden;
        ProbedDevice &instrument = m_subject.opened();
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
    ProbedDevice &instrument = m_subject.opened();
    instrument->setConfiguration(m_refused, m_refusedConfiguration);
    instrument.run(m_refused);
    instrument->setConfiguration(m_refused, QVariant());
}

void Guide::visit(Feature feature)
{
    const auto isRunnable = [&] { return m_subject.opened().runnable().contains(feature); };
    if (!isRunnable())
        return;
    const QVariant descriptor = m_subject.opened()->descriptor(feature);
    const QVariant shortest = shortConfiguration(feature, descriptor);
    provoke();
    add(feature, Run::Short, shortest, {});
    // What it says of a run that fails has been seen.
    const bool isFailed = !m_tour.runs.constLast().isSuccess();
    if (shortest.isValid() && hasDefaults(descriptor) && !isFailed && isRunnable())
        add(feature, Run::Defaults, {}, QStringLiteral("without a configuration"));
    const auto others = otherConfigurations(feature, descriptor);
    for (const OtherConfiguration &other : others) {
        if (!isFailed && isRunnable())
            add(feature, Run::Other, other.value, QStringLiteral("with ") + other.what);
    }
    if (!others.isEmpty() && !isFailed && isRunnable()) {
        add(feature, Run::Changed, shortest,
            QStringLiteral("with another configuration set during the run"),
            others.constFirst().value);
    }
}

void Guide::chain(Feature feature)
{
    ProbedDevice &instrument = m_subject.opened();
    instrument.setShortConfiguration(feature);
    int left = 1;
    instrument.recorder().setReaction([&](const Event &event) {
        if (event.kind == Event::Executed && left-- > 0)
            instrument.callExecute(feature);
    });
    Run run = begin(feature, shortConfiguration(feature, instrument->descriptor(feature)),
                    QStringLiteral("executed again by the receiver of its ending"));
    const int start = instrument.seen().count();
    instrument.callExecute(feature);
    if (!instrument.awaitEndings(start, 2, true)) {
        m_subject.reportStuck(
            {feature, 615, QStringLiteral("%1 has fewer than two endings").arg(run.what)});
    }
    m_subject.settle();
    instrument.recorder().setReaction({});
    end(instrument, &run, start);
    m_tour.chains += run;
}

void Guide::overlap()
{
    ProbedDevice &instrument = m_subject.opened();
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
    ProbedDevice &instrument = m_subject.opened();
    m_subject.settle();
    m_tour.idle = instrument.seen().events();

    const auto configurable = instrument.configurable();
    try {
        for (const Feature feature : configurable)
            tryForbidden(feature);
        for (const Feature feature : configurable)
            visit(feature);
        overlap();
        for (const Feature feature : configurable) {
            if (!values::isMoving(feature) && m_subject.opened().runnable().contains(feature))
                chain(feature);
        }
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
