#include "checker.h"

#include "worker_p.h"

#include <qelisolation/childprocess.h>
#include <qelvalues/features.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace qel::conformance {

int Report::count(Judgement judgement) const
{
    return int(std::count_if(results.cbegin(), results.cend(), [judgement](const Result &result) {
        return result.judgement == judgement;
    }));
}

bool Report::isIncomplete() const
{
    if (!error.isEmpty() || count(Judgement::Failed) > 0)
        return false;
    const bool lacks = std::any_of(results.cbegin(), results.cend(), [](const Result &result) {
        return result.judgement == Judgement::NotRun && !result.isLeftOut;
    });
    // Who asks for single rules wants to know no more than these.
    if (lacks || isSelection)
        return lacks;
    const bool isSeen = std::any_of(features.cbegin(), features.cend(),
                                    [](const FeatureTally &f) { return f.succeeded > 0; });
    return !isSeen || std::any_of(features.cbegin(), features.cend(), [](const FeatureTally &f) {
        return f.isTried && f.succeeded == 0;
    });
}

Checker::Checker(const Request &request)
    : m_request(request)
{
    if (m_request.workerProgram.isEmpty())
        m_request.workerProgram = QCoreApplication::applicationFilePath();
}

Report Checker::run(const std::function<void(const Result &)> &report)
{
    m_report = {};
    m_report.isUnsafe = m_request.isUnsafe;
    m_report.isSelection = !m_request.rules.isEmpty();
    m_unmet.reset();
    m_hung.clear();
    m_stuck.clear();
    m_ends.clear();
    m_sink = report;
    m_reservation = std::make_unique<Reservation>();
    const QFileInfo file(m_request.fileName);
    if (!file.isFile()) {
        m_report.error = QStringLiteral("there is no file '%1'").arg(m_request.fileName);
        return m_report;
    }
    m_request.fileName = file.absoluteFilePath();

    QVector<const Rule *> pending;
    for (const Rule &rule : allRules()) {
        if (m_request.rules.isEmpty() || m_request.rules.contains(rule.number))
            pending += &rule;
    }
    // Whatever the other rules have recorded is gone with the process.
    std::stable_partition(pending.begin(), pending.end(),
                          [](const Rule *rule) { return !rule->coversExit; });
    while (!pending.isEmpty() && m_report.error.isEmpty()) {
        const QString why = whyNot(*pending.constFirst());
        if (why.isEmpty())
            runBatch(&pending);
        else
            leaveOut(*pending.takeFirst());
    }
    m_reservation.reset();
    std::sort(m_report.results.begin(), m_report.results.end(),
              [](const Result &a, const Result &b) { return a.rule->number < b.rule->number; });
    return m_report;
}

void Checker::conclude(const Result &result)
{
    m_report.results += result;
    if (m_sink)
        m_sink(result);
}

bool Checker::isPermitted(const Rule &rule) const
{
    return (!rule.isUnsafe || m_request.isUnsafe) && (!rule.needsPerson || m_request.isGuided);
}

// Why a rule need not be tried; empty when it must be.
QString Checker::whyNot(const Rule &rule) const
{
    if (!isPermitted(rule))
        return rule.needsPerson ? QStringLiteral("takes a person at the instrument: needs --guided")
                                : QStringLiteral("moves parts of the instrument: needs --unsafe");
    return m_unmet && rule.needs >= m_unmet->needs ? m_unmet->why : QString();
}

void Checker::leaveOut(const Rule &rule)
{
    conclude({&rule, Judgement::NotRun, whyNot(rule), {}, !isPermitted(rule)});
}

void Checker::startWorker(isolation::ChildProcess *process, const QVector<const Rule *> &rules)
{
    Assignment assignment;
    assignment.fileName = m_request.fileName;
    assignment.host = m_request.host;
    assignment.driver = m_request.driver;
    assignment.serial = m_request.serial;
    assignment.isUnsafe = m_request.isUnsafe;
    assignment.answers = m_request.answers;
    assignment.limits = m_request.limits;
    assignment.hung = m_hung;
    assignment.stuck = m_stuck;
    for (const Rule *rule : rules) {
        if (whyNot(*rule).isEmpty())
            assignment.rules += rule->number;
    }
    m_call.clear();
    m_isInCall = false;
    process->start(m_request.workerProgram, {QLatin1String(workerArgument)});
    process->send(QJsonDocument(assignment.toJson()).toJson(QJsonDocument::Compact));
}

// Takes what a process says besides its judgements; whether it was that.
bool Checker::takeNote(isolation::ChildProcess *process, const QJsonObject &answer)
{
    if (answer.contains(keyCall)) {
        m_call = answer.value(keyCall).toString();
        m_callFeature = answer.value(keyFeature).toInt();
        m_isInCall = true;
    } else if (answer.contains(keyReturned)) {
        m_isInCall = false;
    } else if (answer.contains(keyStuck)) {
        m_stuck += stuckFromJson(answer.value(keyStuck).toObject());
    } else if (answer.contains(keyReserve)) {
        process->send(m_reservation->take(answer.value(keyReserve).toString()).toUtf8());
    } else if (answer.contains(keyAsk)) {
        const QByteArray sentence = answer.value(keyAsk).toString().toUtf8();
        // The checker's own sentences are the ids of their translations.
        const bool isDone = m_request.ask && m_request.ask(qtTrId(sentence.constData()));
        process->send(isDone ? "yes" : "no");
    } else {
        return !answer.contains(keyRule);
    }
    return true;
}

void Checker::takeTally(const QJsonObject &tally)
{
    const auto entry = [this](int number) -> FeatureTally & {
        const auto feature = devices::Device::DeviceFeature(number);
        auto place = std::lower_bound(
            m_report.features.begin(), m_report.features.end(), feature,
            [](const FeatureTally &known, auto wanted) { return known.feature < wanted; });
        if (place == m_report.features.end() || place->feature != feature) {
            FeatureTally fresh;
            fresh.feature = feature;
            fresh.isTried = feature != devices::Device::DF_FirmwareUpdate
                && (m_request.isUnsafe || !values::isMoving(feature));
            place = m_report.features.insert(place, fresh);
        }
        return *place;
    };
    const QJsonArray offered = tally.value(keyOffered).toArray();
    for (const QJsonValue &feature : offered)
        entry(feature.toInt());
    const QJsonArray endings = tally.value(keyEndings).toArray();
    for (const QJsonValue &value : endings) {
        const QJsonArray ending = value.toArray();
        FeatureTally &feature = entry(ending.at(0).toInt());
        if (ending.at(1).toBool()) {
            ++feature.succeeded;
        } else {
            ++feature.failed;
            // A run that was aborted on purpose leaves none.
            if (const int code = ending.at(2).toInt())
                feature.lastError = code;
        }
    }
}

void Checker::take(const Rule &rule, const QJsonObject &answer)
{
    takeTally(answer.value(keyTally).toObject());
    Result result = {&rule, Judgement::NotRun, answer.value(keySeen).toString(), {}};
    const QString outcome = answer.value(keyOutcome).toString();
    if (outcome == outcomePassed)
        result.judgement = Judgement::Passed;
    else if (outcome == outcomeNotApplicable)
        result.judgement = Judgement::NotApplicable;
    else if (outcome == outcomeBroken)
        result.judgement =
            rule.severity == Severity::Failure ? Judgement::Failed : Judgement::Warning;
    const auto emitted = answer.value(keySignals).toArray();
    for (const QJsonValue &line : emitted)
        result.signalsSeen += line.toString();
    if (answer.contains(keyNeeds)) {
        m_unmet = Unmet{Needs(answer.value(keyNeeds).toInt()), result.seen};
        if (answer.value(keySelection).toBool())
            m_report.error = result.seen;
    }
    conclude(result);
}

// Says how a process ended that should have gone on.
QString Checker::endOf(const isolation::Ending &ending) const
{
    QString end;
    if (ending.kind == isolation::Ending::Hung)
        end = QStringLiteral("the plugin held the event loop for more than %1 ms")
                  .arg(m_request.limits.silent);
    else if (ending.kind == isolation::Ending::Exited && ending.code == exitUnheard)
        end = QStringLiteral("the plugin closed the checker's connection");
    else
        end = ending.text();
    if (m_isInCall)
        end += QStringLiteral(", in %1").arg(m_call);
    else if (!m_call.isEmpty())
        end += QStringLiteral(", after %1").arg(m_call);
    return end;
}

static QString lastWords(const isolation::ChildProcess &process)
{
    const QStringList words =
        QString::fromLocal8Bit(process.lastWords()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const int few = 4;
    return words.isEmpty() ? QString()
                           : QStringLiteral("; its last words: ")
            + words.mid(std::max(0, words.size() - few)).join(QStringLiteral(" | "));
}

// Has one process judge as many of the pending rules as it gets to, and removes those.
void Checker::runBatch(QVector<const Rule *> *pending)
{
    const int before = pending->size();
    isolation::ChildProcess process;
    startWorker(&process, *pending);
    // The rule that the process is at.
    const Rule *current = nullptr;
    while (const auto message = process.receive(QDeadlineTimer(m_request.limits.silent))) {
        const QJsonObject answer = QJsonDocument::fromJson(*message).object();
        if (takeNote(&process, answer))
            continue;
        const int number = answer.value(keyRule).toInt();
        while (pending->constFirst()->number != number) {
            const Rule *left = pending->takeFirst();
            leaveOut(*left);
        }
        current = pending->constFirst();
        if (answer.contains(keyEnd)) {
            takeTally(answer.value(keyTally).toObject());
            concludeByEnd(*pending->takeFirst(), answer.value(keyEnd).toString(), {});
            current = nullptr;
            break;
        }
        const bool waitsForExit = current->coversExit && answer.value(keyOutcome) == outcomePassed;
        if (!answer.contains(keyOutcome) || waitsForExit)
            continue;
        take(*pending->takeFirst(), answer);
        current = nullptr;
        if (m_unmet)
            break;
    }
    const bool isSilent = current && process.isRunning();
    // The end of its input makes the process close the instrument.
    const int grace = 3000;
    isolation::Ending ending = process.finish(QDeadlineTimer(grace));
    if (isSilent)
        ending.kind = isolation::Ending::Hung;
    if (current) {
        pending->removeFirst();
        concludeByEnd(*current, process, ending);
    } else if (pending->size() == before) {
        m_report.error = QStringLiteral("'%1' does not load plugins for the checker: %2")
                             .arg(m_request.workerProgram, endOf(ending) + lastWords(process));
    }
}

// Judges a rule by how the process ended that was at it.
void Checker::concludeByEnd(const Rule &rule, const isolation::ChildProcess &process,
                            const isolation::Ending &ending)
{
    if (rule.coversExit && ending.isClean()) {
        conclude({&rule, Judgement::Passed, {}, {}});
        return;
    }
    const QString end = endOf(ending);
    const bool isHung = ending.kind == isolation::Ending::Hung;
    if (isHung && m_isInCall)
        m_hung += m_call;
    else if (isHung && m_callFeature != devices::Device::DF_None)
        m_stuck += Stuck{devices::Device::DeviceFeature(m_callFeature), rule.number, end};
    concludeByEnd(rule, end, lastWords(process));
}

// One end fails one rule; others that meet with it cannot be judged.
void Checker::concludeByEnd(const Rule &rule, const QString &end, const QString &words)
{
    Result result = {&rule, Judgement::NotRun, {}, {}};
    const int first = m_ends.value(end, rule.number);
    m_ends.insert(end, first);
    if (first != rule.number) {
        result.seen = QStringLiteral("as in rule %1: %2").arg(first).arg(end);
    } else {
        result.judgement =
            rule.severity == Severity::Failure ? Judgement::Failed : Judgement::Warning;
        result.seen = end + words;
    }
    conclude(result);
}

} // namespace qel::conformance
