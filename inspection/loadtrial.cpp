#include "loadtrial.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <unistd.h>

namespace qel::inspection {

using devices::DeviceBroker;

namespace {

// A line for each file before and after it is loaded: the number of the file, and afterwards
// whether it was taken, the reason if not, the names it registered.
const QLatin1String fileKey("file");
const QLatin1String loadedKey("loaded");
const QLatin1String reasonKey("reason");
const QLatin1String driversKey("drivers");

constexpr int maximumCulprits = 10;

class TrialRun
{
public:
    TrialRun(const QStringList &files, int timeLimit);

    // False when the process ended, or had to be ended, while it was loading a file.
    bool run(const QString &program, const QStringList &arguments);
    const QVector<LoadOutcome> &outcomes() const
    {
        return m_outcomes;
    }

private:
    bool readLines();
    void note(const QJsonObject &line);
    void noteEnd(bool isTimedOut);

    QVector<LoadOutcome> m_outcomes;
    int m_timeLimit;
    int m_current = -1;
    QProcess m_process;
};

TrialRun::TrialRun(const QStringList &files, int timeLimit)
    : m_timeLimit(timeLimit)
{
    for (const QString &file : files)
        m_outcomes.append({file, LoadOutcome::Kind::NotTried, {}, {}});
}

bool TrialRun::run(const QString &program, const QStringList &arguments)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    QStringList files;
    for (const LoadOutcome &outcome : std::as_const(m_outcomes))
        files.append(outcome.file);
    m_process.write(QJsonDocument(QJsonArray::fromStringList(files)).toJson());
    m_process.closeWriteChannel();

    QDeadlineTimer deadline(m_timeLimit);
    while (m_process.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        m_process.waitForReadyRead(int(deadline.remainingTime()));
        if (readLines())
            deadline.setRemainingTime(m_timeLimit);
    }
    const bool isTimedOut = m_process.state() != QProcess::NotRunning;
    if (isTimedOut) {
        m_process.kill();
        m_process.waitForFinished();
    }
    readLines();
    noteEnd(isTimedOut);
    return m_current < 0;
}

bool TrialRun::readLines()
{
    bool any = false;
    while (m_process.canReadLine()) {
        note(QJsonDocument::fromJson(m_process.readLine()).object());
        any = true;
    }
    return any;
}

void TrialRun::note(const QJsonObject &line)
{
    const int file = line.value(fileKey).toInt(-1);
    if (file < 0 || file >= m_outcomes.size())
        return;
    m_current = file;
    if (!line.contains(loadedKey))
        return;
    LoadOutcome &outcome = m_outcomes[file];
    const bool isLoaded = line.value(loadedKey).toBool();
    outcome.kind = isLoaded ? LoadOutcome::Kind::Loaded : LoadOutcome::Kind::Refused;
    outcome.reason = line.value(reasonKey).toString();
    const auto drivers = line.value(driversKey).toArray();
    for (const QJsonValue &driver : drivers)
        outcome.drivers.append(driver.toString());
    m_current = -1;
}

void TrialRun::noteEnd(bool isTimedOut)
{
    if (m_current < 0)
        return;
    LoadOutcome &culprit = m_outcomes[m_current];
    culprit.kind = isTimedOut ? LoadOutcome::Kind::TimedOut : LoadOutcome::Kind::Crashed;
    if (isTimedOut) {
        culprit.reason = QStringLiteral("it did not come back within %1 ms").arg(m_timeLimit);
    } else if (m_process.exitStatus() == QProcess::CrashExit) {
        culprit.reason = QStringLiteral("it crashed: %1")
                             .arg(QString::fromLocal8Bit(strsignal(m_process.exitCode())));
    } else {
        culprit.reason =
            QStringLiteral("it ended the process with code %1").arg(m_process.exitCode());
    }
}

QJsonObject loadOne(const QString &file)
{
    // The copy keeps the drivers that are replaced, so that no new one can have an old address.
    const auto before = DeviceBroker::DRIVERS;
    const bool isLoaded = DeviceBroker::loadPlugin(file);
    QJsonObject line{{loadedKey, isLoaded}};
    if (!isLoaded)
        line.insert(reasonKey, DeviceBroker::LOADERS.constLast()->errorString());
    QStringList names;
    for (auto it = DeviceBroker::DRIVERS.cbegin(); it != DeviceBroker::DRIVERS.cend(); ++it) {
        if (before.value(it.key()) != it.value())
            names.append(it.key());
    }
    names.sort();
    line.insert(driversKey, QJsonArray::fromStringList(names));
    return line;
}

QString refusalText(const LoadOutcome &outcome)
{
    return QStringLiteral("It does not load: %1.")
        .arg(outcome.reason.endsWith(QLatin1Char('.')) ? outcome.reason.chopped(1)
                                                       : outcome.reason);
}

} // namespace

QVector<LoadOutcome> tryLoading(const QStringList &files, const QString &program,
                                const QStringList &arguments, int timeLimit)
{
    QVector<LoadOutcome> outcomes;
    QVector<int> remaining; // indexes of the files that are tried; a file may be there twice
    for (const QString &file : files) {
        remaining.append(outcomes.size());
        outcomes.append({file, LoadOutcome::Kind::NotTried, {}, {}});
    }
    for (int attempt = 0; attempt < maximumCulprits && !remaining.isEmpty(); ++attempt) {
        QStringList tried;
        for (const int index : std::as_const(remaining))
            tried.append(files.at(index));
        TrialRun trial(tried, timeLimit);
        const bool isComplete = trial.run(program, arguments);
        QVector<int> innocent;
        for (int i = 0; i < remaining.size(); ++i) {
            const LoadOutcome &outcome = trial.outcomes().at(i);
            outcomes[remaining.at(i)] = outcome;
            if (outcome.kind != LoadOutcome::Kind::Crashed
                && outcome.kind != LoadOutcome::Kind::TimedOut)
                innocent.append(remaining.at(i));
        }
        if (isComplete)
            break;
        remaining = innocent;
    }
    return outcomes;
}

int serveLoadTrial()
{
    // Plugins may write to the standard output; the report goes where they do not reach it.
    QFile report;
    const int descriptor = ::dup(STDOUT_FILENO);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    QFile input;
    if (!report.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered)
        || !input.open(stdin, QIODevice::ReadOnly))
        return EXIT_FAILURE;

    const QJsonArray files = QJsonDocument::fromJson(input.readAll()).array();
    for (int i = 0; i < files.size(); ++i) {
        const auto write = [&](QJsonObject line) {
            line.insert(fileKey, i);
            report.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
        };
        write({});
        write(loadOne(files.at(i).toString()));
    }
    // Without the plugins' clean-up, which is none of the trial's concern.
    std::_Exit(EXIT_SUCCESS);
}

void addOutcomes(const QVector<LoadOutcome> &outcomes, const QVector<FileReport *> &reports)
{
    QHash<QString, int> owners;
    for (int i = 0; i < outcomes.size(); ++i) {
        for (const QString &driver : outcomes.at(i).drivers)
            owners.insert(driver, i);
    }
    for (int i = 0; i < std::min(outcomes.size(), reports.size()); ++i) {
        const LoadOutcome &outcome = outcomes.at(i);
        FileReport *report = reports.at(i);
        report->drivers = outcome.drivers;
        if (outcome.kind == LoadOutcome::Kind::NotTried) {
            report->addWarning(QStringLiteral("not-tried"),
                               QStringLiteral("It could not be tried what loading it does."),
                               QStringLiteral("Mend what is said of the other files and ask "
                                              "again."));
        } else if (outcome.kind != LoadOutcome::Kind::Loaded) {
            report->addProblem(QStringLiteral("does-not-load"), refusalText(outcome),
                               QStringLiteral("Report this to the maker of the driver; until then "
                                              "move the file out of the plugin folder."));
        } else if (outcome.drivers.isEmpty()) {
            report->addWarning(QStringLiteral("no-driver"),
                               QStringLiteral("It loads, but registers no driver."),
                               QStringLiteral("Have registerDrivers() call "
                                              "DeviceBroker::addDriver()."));
        }
        for (const QString &driver : outcome.drivers) {
            const int owner = owners.value(driver);
            if (owner == i)
                continue;
            report->addWarning(QStringLiteral("shadowed"),
                               QStringLiteral("Its driver \"%1\" is replaced by the one of %2.")
                                   .arg(driver, outcomes.at(owner).file),
                               QStringLiteral("Remove one of the two."));
        }
    }
}

} // namespace qel::inspection
