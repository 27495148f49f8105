#include "soak_p.h"

#include "configurations.h"
#include "probeddevice.h"
#include "worker_p.h"

#include <qeldevices/deviceerrors.h>
#include <qelvalues/results.h>

#include <QtCore/QJsonArray>
#include <QtCore/QMetaEnum>
#include <QtCore/QRandomGenerator>

namespace qel::conformance {

using devices::Device;
using Feature = Device::DeviceFeature;

// What must hold of the signals of a device at any time.
class Invariants
{
public:
    void executed(Feature feature)
    {
        m_outstanding += feature;
    }

    // What is wrong with one more event; empty when nothing is.
    QString fault(const Event &event)
    {
        const QString name = featureName(event.feature);
        switch (event.kind) {
        case Event::Executed:
            if (!m_outstanding.removeOne(event.feature))
                return QStringLiteral("%1 ends without having been executed (601)").arg(name);
            if (!event.flag && event.value.isValid())
                return QStringLiteral("%1 fails with a result (605)").arg(name);
            if (m_outstanding.isEmpty() && event.isBusy)
                return QStringLiteral("%1 ends, and the device is busy (602)").arg(name);
            if (event.flag && !event.isOpen)
                return QStringLiteral("%1 succeeds on a closed device (901)").arg(name);
            return {};
        case Event::TransientValue:
            if (!event.isOpen)
                return QStringLiteral("a closed device sends values of %1 (405)").arg(name);
            if (event.feature != Device::DF_PlateDetection
                && !m_outstanding.contains(event.feature))
                return QStringLiteral("an idle device sends values of %1 (613)").arg(name);
            return {};
        case Event::ActionRequired:
            return m_outstanding.isEmpty() ? QStringLiteral("a request comes without a run (706)")
                                           : QString();
        case Event::ErrorChanged:
            if (event.errorCode != 0
                && (event.errorCode < devices::ERROR_DEVICE_UNKNOWN
                    || event.errorCode > devices::ERROR_DEVICE_API_TOO_NEW))
                return QStringLiteral("error %1 (801)").arg(errorName(event.errorCode));
            return {};
        default:
            return {};
        }
    }

    // What is left when everything must have ended.
    QString rest() const
    {
        return m_outstanding.isEmpty()
            ? QString()
            : QStringLiteral("a run of %1 has no end after close() (601)")
                  .arg(featureName(m_outstanding.constFirst()));
    }

private:
    QVector<Feature> m_outstanding;
};

namespace {

// Plays one sequence on one device after the other.
class Player
{
public:
    explicit Player(Subject &subject)
        : m_subject(subject)
    { }

    // The fault that the sequence shows; empty when it shows none.
    QString play(const QStringList &steps);
    QVector<Feature> features();

private:
    void begin();
    void end();
    void step(const QString &verb, const QString &object);
    void execute(Feature feature);
    void judge();

    Subject &m_subject;
    std::unique_ptr<ProbedDevice> m_instrument;
    std::unique_ptr<Invariants> m_invariants;
    int m_judged = 0;
    int m_lastRequest = -1;
};

} // namespace

QVector<Feature> Player::features()
{
    ProbedDevice instrument(m_subject);
    instrument.open();
    return instrument.runnable();
}

void Player::begin()
{
    m_instrument = std::make_unique<ProbedDevice>(m_subject);
    m_invariants = std::make_unique<Invariants>();
    m_judged = 0;
    m_lastRequest = -1;
}

void Player::judge()
{
    const auto events = m_instrument->seen().events(m_judged);
    m_judged += events.size();
    for (const Event &event : events) {
        if (event.kind == Event::ActionRequired)
            m_lastRequest = event.actionId;
        const QString fault = m_invariants->fault(event);
        if (!fault.isEmpty())
            throw Broken{fault};
    }
}

void Player::end()
{
    m_instrument->callClose();
    if (!m_instrument->awaitClosed())
        throw Broken{QStringLiteral("the device does not close (404)")};
    m_subject.settle();
    judge();
    const QString rest = m_invariants->rest();
    if (!rest.isEmpty())
        throw Broken{rest};
}

void Player::execute(Feature feature)
{
    m_invariants->executed(feature);
    m_instrument->callExecute(feature);
}

void Player::step(const QString &verb, const QString &object)
{
    ProbedDevice &instrument = *m_instrument;
    const auto feature =
        Feature(QMetaEnum::fromType<Feature>().keyToValue(object.toLatin1().constData()));
    if (verb == QLatin1String("open"))
        instrument.callOpen();
    else if (verb == QLatin1String("close"))
        instrument.callClose();
    else if (verb == QLatin1String("reset"))
        instrument.callReset();
    else if (verb == QLatin1String("update"))
        instrument.callUpdate();
    else if (verb == QLatin1String("enumerate"))
        m_subject.records();
    else if (verb == QLatin1String("execute"))
        execute(feature);
    else if (verb == QLatin1String("configure"))
        instrument->setConfiguration(feature,
                                     shortConfiguration(feature, instrument->descriptor(feature)));
    else if (verb == QLatin1String("confirm") && m_lastRequest >= 0)
        instrument.confirm(m_lastRequest);
    else if (verb == QLatin1String("abort") && m_lastRequest >= 0)
        instrument.abort(m_lastRequest);
    else if (verb == QLatin1String("wait"))
        m_subject.waitFor(object.toInt(), [] { return false; });
    else if (verb == QLatin1String("delete")) {
        instrument.destroy();
        judge();
        begin();
    }
}

QString Player::play(const QStringList &steps)
{
    try {
        begin();
        for (const QString &text : steps) {
            step(text.section(QLatin1Char(' '), 0, 0), text.section(QLatin1Char(' '), 1));
            judge();
        }
        end();
    } catch (const Broken &broken) {
        return broken.seen;
    }
    return {};
}

static QStringList randomSteps(QRandomGenerator *random, const QVector<Feature> &features,
                               bool mayConfirm)
{
    const auto pick = [random](int count) { return int(random->bounded(quint32(count))); };
    const auto feature = [&] { return featureName(features.at(pick(features.size()))); };
    QStringList steps = {QStringLiteral("open"), QStringLiteral("wait 100")};
    const int length = 3 + pick(12);
    for (int i = 0; i < length; ++i) {
        const int choice = pick(mayConfirm ? 15 : 14);
        if (choice < 4)
            steps += QStringLiteral("execute ") + feature();
        else if (choice < 6)
            steps += QStringLiteral("wait %1").arg(1 << pick(9));
        else
            steps += QStringList{QStringLiteral("open"),
                                 QStringLiteral("close"),
                                 QStringLiteral("reset"),
                                 QStringLiteral("update"),
                                 QStringLiteral("enumerate"),
                                 QStringLiteral("abort"),
                                 QStringLiteral("configure ") + feature(),
                                 QStringLiteral("delete"),
                                 QStringLiteral("confirm")}
                         .value(choice - 6);
    }
    return steps;
}

void soakInWorker(Subject &subject, const Assignment &assignment,
                  const std::function<void(const QJsonObject &)> &tell)
{
    Player player(subject);
    const auto report = [&](const QString &fault) {
        tell({{keyFault, fault}, {keySignals, QJsonArray::fromStringList(subject.signalsSeen())}});
    };
    try {
        if (!assignment.steps.isEmpty())
            return report(player.play(assignment.steps));
        const auto features = player.features();
        if (features.isEmpty())
            throw Unmet{Needs::Open, QStringLiteral("no feature may be run")};
        QRandomGenerator random(assignment.seed);
        QElapsedTimer clock;
        clock.start();
        while (!clock.hasExpired(1000 * qint64(assignment.soakSeconds))) {
            const QStringList steps =
                randomSteps(&random, features, assignment.answers == Answers::Confirm);
            tell({{keySteps, QJsonArray::fromStringList(steps)}});
            const QString fault = player.play(steps);
            if (!fault.isEmpty())
                return report(fault);
        }
        report({});
    } catch (const Unmet &unmet) {
        tell({{keyUnmet, unmet.why}});
    } catch (const Hindered &hindered) {
        tell({{keyUnmet, hindered.why}});
    }
}

} // namespace qel::conformance
