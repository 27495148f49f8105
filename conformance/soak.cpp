#include "soak.h"

#include "worker_p.h"

#include <qelisolation/childprocess.h>
#include <qelvalues/printable.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace qel::conformance {

namespace {

// What one process has seen.
struct Attempt
{
    QStringList steps; // the last sequence that was begun
    int sequences = 0;
    QString fault;
    QStringList signalsSeen;
    QString error;
};

} // namespace

static QStringList strings(const QJsonValue &array)
{
    QStringList list;
    const QJsonArray items = array.toArray();
    for (const QJsonValue &item : items)
        list += item.toString();
    return list;
}

static Attempt attempt(const QString &program, const Assignment &assignment,
                       Reservation *reservation)
{
    isolation::ChildProcess process;
    process.start(program, {QLatin1String(workerArgument)});
    process.send(QJsonDocument(assignment.toJson()).toJson(QJsonDocument::Compact));
    Attempt attempt;
    attempt.steps = assignment.steps;
    QString call;
    bool isDone = false;
    while (!isDone) {
        const auto message = process.receive(QDeadlineTimer(assignment.limits.silent));
        if (!message)
            break;
        const QJsonObject answer = QJsonDocument::fromJson(*message).object();
        if (answer.contains(keyCall))
            call = answer.value(keyCall).toString();
        if (answer.contains(keyReserve))
            process.send(reservation->take(answer.value(keyReserve).toString()).toUtf8());
        if (answer.contains(keySteps)) {
            attempt.steps = strings(answer.value(keySteps));
            ++attempt.sequences;
        }
        attempt.error = answer.value(keyUnmet).toString();
        attempt.fault = answer.value(keyFault).toString();
        attempt.signalsSeen = strings(answer.value(keySignals));
        isDone = answer.contains(keyFault) || answer.contains(keyUnmet);
    }
    const bool isHung = !isDone && process.isRunning();
    const int grace = 3000;
    const isolation::Ending ending = process.finish(QDeadlineTimer(grace));
    if (!isDone && attempt.steps.isEmpty())
        attempt.error = ending.text();
    else if (!isDone)
        attempt.fault = QStringLiteral("%1, in or after %2")
                            .arg(isHung ? QStringLiteral("the plugin hangs") : ending.text(), call);
    return attempt;
}

// Leaves out one step after the other as long as the fault stays.
static Attempt shrink(const QString &program, Assignment assignment, Attempt found,
                      Reservation *reservation)
{
    const int patience = 60000;
    QElapsedTimer clock;
    clock.start();
    for (int i = found.steps.size() - 1; i >= 0 && !clock.hasExpired(patience); --i) {
        assignment.steps = found.steps;
        assignment.steps.removeAt(i);
        if (assignment.steps.isEmpty())
            break;
        const Attempt shorter = attempt(program, assignment, reservation);
        if (!shorter.fault.isEmpty()) {
            const int sequences = found.sequences;
            found = shorter;
            found.sequences = sequences;
        }
    }
    return found;
}

SoakReport soak(const Request &request, int seconds, quint32 seed)
{
    SoakReport report;
    report.seed = seed;
    const QString program = request.workerProgram.isEmpty()
        ? QCoreApplication::applicationFilePath()
        : request.workerProgram;
    Assignment assignment;
    assignment.fileName = QFileInfo(request.fileName).absoluteFilePath();
    assignment.host = request.host;
    assignment.driver = request.driver;
    assignment.serial = request.serial;
    assignment.isUnsafe = request.isUnsafe;
    // Nobody can prepare an instrument for a random sequence.
    assignment.answers = request.answers == Answers::Confirm ? Answers::Confirm : Answers::Decline;
    assignment.limits = request.limits;
    assignment.seed = seed;
    assignment.soakSeconds = seconds;
    Reservation reservation;
    Attempt found = attempt(program, assignment, &reservation);
    if (!found.fault.isEmpty())
        found = shrink(program, assignment, found, &reservation);
    report.sequences = found.sequences;
    report.error = found.error;
    report.fault = found.fault;
    if (!found.fault.isEmpty()) {
        report.steps = found.steps;
        report.signalsSeen = found.signalsSeen;
    }
    return report;
}

// The English text is the id of its translation, and stands where there is none.
static QString translated(const char *english)
{
    return qtTrId(english);
}

QString toText(const SoakReport &report)
{
    QString text = translated("seed %1, %2 sequences").arg(report.seed).arg(report.sequences)
        + QLatin1Char('\n');
    if (report.fault.isEmpty())
        return text + translated("What must hold at any time did.") + QLatin1Char('\n');
    text += translated("FAILED: %1").arg(values::printable(report.fault)) + QLatin1Char('\n');
    text += translated("The shortest sequence found:") + QLatin1Char('\n');
    for (const QString &step : report.steps)
        text += QStringLiteral("  %1\n").arg(step);
    text += translated("signals of the device:") + QLatin1Char('\n');
    for (const QString &line : report.signalsSeen)
        text += QStringLiteral("  %1\n").arg(values::printable(line));
    return text;
}

} // namespace qel::conformance
