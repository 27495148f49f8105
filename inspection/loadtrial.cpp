#include "loadtrial.h"

#include "hosts.h"

#include <qelisolation/childprocess.h>
#include <qelisolation/parentlink.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <utility>

namespace qel::inspection {

using devices::DeviceBroker;

namespace {

// One message for each file before it is loaded, before each of its drivers is asked for its
// instruments, and at the end: the number of the file; the driver that is asked; whether the file
// was taken, the reason if not. The last two tell the names it has registered, the last one also
// what became of plugins that this one runs in processes of their own.
const QLatin1String fileKey("file");
const QLatin1String askedKey("asked");
const QLatin1String loadedKey("loaded");
const QLatin1String reasonKey("reason");
const QLatin1String driversKey("drivers");
const QLatin1String hostsKey("hosts");

constexpr int maximumCulprits = 10;

QByteArray encoded(const QJsonObject &message)
{
    return QJsonDocument(message).toJson(QJsonDocument::Compact);
}

Sentence reasonOf(const isolation::Ending &ending)
{
    switch (ending.kind) {
    case isolation::Ending::Exited:
        return {"the process was ended by exit(%1)", {QString::number(ending.code)}};
    case isolation::Ending::Crashed:
        return {"the process ended with signal %1 (%2)",
                {QString::number(ending.code), QString::fromLocal8Bit(::strsignal(ending.code))}};
    case isolation::Ending::Garbled:
        return "the process sent something that is no message";
    default:
        return "the process did not come back";
    }
}

class TrialRun
{
public:
    TrialRun(const QStringList &files, std::chrono::milliseconds timeLimit);

    // False when the process ended, or had to be ended, while it was at a file.
    bool run(const QString &program, const QStringList &arguments);
    const QVector<LoadOutcome> &outcomes() const
    {
        return m_outcomes;
    }

private:
    void note(const QJsonObject &message);
    void noteEnd(const isolation::Ending &ending);

    QVector<LoadOutcome> m_outcomes;
    std::chrono::milliseconds m_timeLimit;
    int m_current = -1;
};

TrialRun::TrialRun(const QStringList &files, std::chrono::milliseconds timeLimit)
    : m_timeLimit(timeLimit)
{
    for (const QString &file : files)
        m_outcomes.append({file, LoadOutcome::Kind::NotTried, {}, {}, {}, {}});
}

bool TrialRun::run(const QString &program, const QStringList &arguments)
{
    QStringList files;
    for (const LoadOutcome &outcome : std::as_const(m_outcomes))
        files.append(outcome.file);
    isolation::ChildProcess child;
    if (!child.start(program, arguments))
        return true;
    child.send(encoded({{fileKey, QJsonArray::fromStringList(files)}}));
    while (const auto message = child.receive(QDeadlineTimer(m_timeLimit)))
        note(QJsonDocument::fromJson(*message).object());
    noteEnd(child.isRunning() ? child.kill() : child.ending());
    return m_current < 0;
}

void TrialRun::note(const QJsonObject &message)
{
    m_current = message.value(fileKey).toInt(-1);
    if (m_current < 0 || m_current >= m_outcomes.size()) {
        m_current = -1;
        return;
    }
    LoadOutcome &outcome = m_outcomes[m_current];
    outcome.asked = message.value(askedKey).toString();
    outcome.drivers.clear();
    const auto drivers = message.value(driversKey).toArray();
    for (const QJsonValue &driver : drivers)
        outcome.drivers.append(driver.toString());
    if (!message.contains(loadedKey))
        return;
    const bool isLoaded = message.value(loadedKey).toBool();
    outcome.kind = isLoaded ? LoadOutcome::Kind::Loaded : LoadOutcome::Kind::Refused;
    QString reason = message.value(reasonKey).toString();
    if (reason.endsWith(QLatin1Char('.')))
        reason.chop(1);
    outcome.reason = reason;
    outcome.hosted = outcomesOf(message.value(hostsKey).toArray().toVariantList());
    m_current = -1;
}

void TrialRun::noteEnd(const isolation::Ending &ending)
{
    if (m_current < 0)
        return;
    LoadOutcome &culprit = m_outcomes[m_current];
    const bool isHung = ending.kind == isolation::Ending::Hung;
    culprit.kind = isHung ? LoadOutcome::Kind::TimedOut : LoadOutcome::Kind::Crashed;
    culprit.reason = isHung
        ? Sentence("it did not come back within %1 ms", {QString::number(m_timeLimit.count())})
        : reasonOf(ending);
}

// Loads a file and asks its drivers for their instruments; `tell` is told before each step.
QJsonObject loadOne(const QString &file, const std::function<void(const QJsonObject &)> &tell)
{
    // The copy keeps the drivers that are replaced, so that no new one can have an old address.
    const auto before = DeviceBroker::DRIVERS;
    const int loader = DeviceBroker::LOADERS.size();
    tell({});
    if (!DeviceBroker::loadPlugin(file)) {
        return {{loadedKey, false}, {reasonKey, DeviceBroker::LOADERS.constLast()->errorString()}};
    }
    const auto after = DeviceBroker::DRIVERS;
    QStringList names;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (before.value(it.key()) != it.value())
            names.append(it.key());
    }
    names.sort();
    const QJsonArray drivers = QJsonArray::fromStringList(names);
    for (const QString &name : std::as_const(names)) {
        tell({{askedKey, name}, {driversKey, drivers}});
        after.value(name)->availableDevices();
    }
    const QVariantList hosts = hostsOf(DeviceBroker::LOADERS.at(loader)->instance());
    return {
        {loadedKey, true}, {driversKey, drivers}, {hostsKey, QJsonArray::fromVariantList(hosts)}};
}

// What is wrong with a file that was not loaded, or not to the end.
void addRefusal(const LoadOutcome &outcome, FileReport *report)
{
    const char *remedy = "Report this to the maker of the driver; until then move the file out of "
                         "the plugin folder.";
    report->addProblem(outcome.asked.isEmpty() ? QStringLiteral("does-not-load")
                                               : QStringLiteral("does-not-list"),
                       outcome.sentence(), remedy);
}

void addRegistration(const LoadOutcome &outcome, FileReport *report)
{
    report->drivers = outcome.drivers;
    if (outcome.kind == LoadOutcome::Kind::NotTried) {
        report->addWarning(QStringLiteral("not-tried"),
                           "It could not be tried what loading it does.",
                           "Mend what is said of the other files and ask again.");
    } else if (outcome.kind != LoadOutcome::Kind::Loaded) {
        addRefusal(outcome, report);
    } else if (outcome.drivers.isEmpty()) {
        report->addWarning(QStringLiteral("no-driver"), "It loads, but registers no driver.",
                           "Have registerDrivers() call DeviceBroker::addDriver().");
    }
}

FolderReport &folderAt(const QString &path, QVector<FolderReport> *folders)
{
    for (FolderReport &folder : *folders) {
        if (folder.path == path)
            return folder;
    }
    folders->append(FolderReport{path, true, {}});
    return folders->last();
}

void addHosted(const LoadOutcome &outcome, QVector<FolderReport> *folders)
{
    FileReport report = inspectFile(outcome.file);
    // Otherwise it is known better why it was not loaded.
    if (report.verdict() != Verdict::NotUsable)
        addRegistration(outcome, &report);
    folderAt(QFileInfo(outcome.file).path(), folders).files.append(report);
}

} // namespace

Sentence LoadOutcome::sentence() const
{
    if (asked.isEmpty())
        return {"It does not load: %1.", {reason}};
    return {"It loads, but when its driver \"%1\" is asked for its instruments: %2.",
            {asked, reason}};
}

QVector<LoadOutcome> tryLoading(const QStringList &files, const QString &program,
                                const QStringList &arguments, std::chrono::milliseconds timeLimit)
{
    QVector<LoadOutcome> outcomes;
    QVector<int> remaining; // indexes of the files that are tried; a file may be there twice
    for (const QString &file : files) {
        remaining.append(outcomes.size());
        outcomes.append({file, LoadOutcome::Kind::NotTried, {}, {}, {}, {}});
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
    isolation::ParentLink parent;
    parent.dieWithParent();
    const auto request = parent.receive();
    if (!request)
        return EXIT_FAILURE;
    const QJsonArray files = QJsonDocument::fromJson(*request).object().value(fileKey).toArray();
    for (int i = 0; i < files.size(); ++i) {
        const auto tell = [&](QJsonObject message) {
            message.insert(fileKey, i);
            parent.send(encoded(message));
        };
        tell(loadOne(files.at(i).toString(), tell));
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
        addRegistration(outcome, report);
        for (const QString &driver : outcome.drivers) {
            const int owner = owners.value(driver);
            if (owner == i)
                continue;
            report->addWarning(QStringLiteral("shadowed"),
                               {"Its driver \"%1\" is replaced by the one of %2.",
                                {driver, outcomes.at(owner).file}},
                               "Remove one of the two.");
        }
    }
}

void tryLoading(QVector<FolderReport> *folders, const QString &program,
                const QStringList &arguments)
{
    QVector<FileReport *> candidates;
    QStringList files;
    for (FolderReport &folder : *folders) {
        for (FileReport &file : folder.files) {
            if (file.verdict() == Verdict::NotUsable)
                continue;
            candidates.append(&file);
            files.append(file.path);
        }
    }
    const auto outcomes = tryLoading(files, program, arguments);
    addOutcomes(outcomes, candidates);
    for (const LoadOutcome &outcome : outcomes) {
        for (const LoadOutcome &hosted : outcome.hosted)
            addHosted(hosted, folders);
    }
}

} // namespace qel::inspection
