#include "checker.h"

#include "worker_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace qel::conformance {

int Report::count(Outcome outcome) const
{
    return int(std::count_if(results.cbegin(), results.cend(), [outcome](const Result &result) {
        return result.outcome == outcome;
    }));
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
    m_unmet.reset();
    m_sink = report;
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
    while (!pending.isEmpty() && m_report.error.isEmpty()) {
        const QString why = whyNot(*pending.constFirst());
        if (why.isEmpty())
            runBatch(&pending);
        else
            conclude({pending.takeFirst(), Outcome::NotRun, why, {}});
    }
    return m_report;
}

void Checker::conclude(const Result &result)
{
    m_report.results += result;
    if (m_sink)
        m_sink(result);
}

// Why a rule need not be tried; empty when it must be.
QString Checker::whyNot(const Rule &rule) const
{
    if (rule.isUnsafe && !m_request.isUnsafe)
        return QStringLiteral("moves parts of the instrument: needs --unsafe");
    return m_unmet && rule.needs >= m_unmet->needs ? m_unmet->why : QString();
}

void Checker::startWorker(QProcess *process, const QVector<const Rule *> &rules) const
{
    QJsonArray numbers;
    for (const Rule *rule : rules) {
        if (whyNot(*rule).isEmpty())
            numbers += rule->number;
    }
    QJsonObject request = {{keyFile, m_request.fileName},          {keyDriver, m_request.driver},
                           {keySerial, m_request.serial},          {keyUnsafe, m_request.isUnsafe},
                           {keyLimits, m_request.limits.toJson()}, {keyRules, numbers}};
    process->start(m_request.workerProgram, {QLatin1String(workerArgument)});
    process->write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
}

void Checker::take(const Rule &rule, const QJsonObject &answer)
{
    Result result = {&rule, Outcome::NotRun, answer.value(keySeen).toString(), {}};
    const QString outcome = answer.value(keyOutcome).toString();
    if (outcome == outcomePassed)
        result.outcome = Outcome::Passed;
    else if (outcome == outcomeNotApplicable)
        result.outcome = Outcome::NotApplicable;
    else if (outcome == outcomeBroken)
        result.outcome = rule.severity == Severity::Failure ? Outcome::Failed : Outcome::Warning;
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

// Says how a process ended that should have gone on, with its last words.
QString Checker::endOf(QProcess *process, bool isHung) const
{
    QString end;
    if (isHung)
        end = QStringLiteral("the plugin held the event loop for more than %1 ms")
                  .arg(m_request.limits.silent);
    else if (process->exitStatus() == QProcess::CrashExit)
        end = QStringLiteral("the process ended with signal %1 (%2)")
                  .arg(process->exitCode())
                  .arg(QString::fromLocal8Bit(::strsignal(process->exitCode())));
    else
        end = QStringLiteral("the plugin ended the process with exit code %1")
                  .arg(process->exitCode());
    QStringList words = QString::fromLocal8Bit(process->readAllStandardError())
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const int few = 4;
    words = words.mid(std::max(0, words.size() - few));
    if (!words.isEmpty())
        end += QStringLiteral("; its last words: ") + words.join(QStringLiteral(" | "));
    return end;
}

// The next answer of a process; none when it has ended, or is silent for too long.
std::optional<QJsonObject> Checker::nextAnswer(QProcess *process, bool *isHung) const
{
    const int silent = m_request.limits.silent;
    QElapsedTimer clock;
    clock.start();
    while (!process->canReadLine()) {
        const int left = silent - int(clock.elapsed());
        if (left > 0 && process->waitForReadyRead(left))
            continue;
        // Its output may have ended a moment before the process itself.
        *isHung = process->state() != QProcess::NotRunning
            && !process->waitForFinished(std::max(0, silent - int(clock.elapsed())));
        return std::nullopt;
    }
    return QJsonDocument::fromJson(process->readLine()).object();
}

// Has one process judge as many of the pending rules as it gets to, and removes those.
void Checker::runBatch(QVector<const Rule *> *pending)
{
    const int before = pending->size();
    QProcess process;
    startWorker(&process, *pending);
    // The rule that the process is at.
    const Rule *current = nullptr;
    bool isHung = false;
    while (const auto answer = nextAnswer(&process, &isHung)) {
        if (!answer->contains(keyRule))
            continue;
        const int number = answer->value(keyRule).toInt();
        while (pending->constFirst()->number != number) {
            const Rule *left = pending->takeFirst();
            conclude({left, Outcome::NotRun, whyNot(*left), {}});
        }
        current = pending->constFirst();
        const bool waitsForExit = current->coversExit && answer->value(keyOutcome) == outcomePassed;
        if (!answer->contains(keyOutcome) || waitsForExit)
            continue;
        take(*pending->takeFirst(), *answer);
        current = nullptr;
        if (m_unmet)
            break;
    }
    finish(&process, &isHung);
    if (current) {
        pending->removeFirst();
        concludeByEnd(*current, &process, isHung);
    } else if (pending->size() == before) {
        m_report.error = QStringLiteral("'%1' does not load plugins for the checker: %2")
                             .arg(m_request.workerProgram, endOf(&process, isHung));
    }
}

void Checker::finish(QProcess *process, bool *isHung) const
{
    // The end of its input makes the process close the instrument.
    process->closeWriteChannel();
    const int grace = 3000;
    if (process->state() != QProcess::NotRunning && !process->waitForFinished(grace)) {
        *isHung = true;
        process->kill();
        process->waitForFinished();
    }
}

// Judges a rule by how the process ended that was at it.
void Checker::concludeByEnd(const Rule &rule, QProcess *process, bool isHung)
{
    const bool isClean = rule.coversExit && !isHung && process->exitStatus() == QProcess::NormalExit
        && process->exitCode() == EXIT_SUCCESS;
    Result result = {&rule, Outcome::Passed, {}, {}};
    if (!isClean) {
        result.outcome = rule.severity == Severity::Failure ? Outcome::Failed : Outcome::Warning;
        result.seen = endOf(process, isHung);
    }
    conclude(result);
}

} // namespace qel::conformance
