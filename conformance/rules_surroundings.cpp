#include "tour.h"

#include <QtCore/QMap>

#include <algorithm>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Surroundings";

// Judges what everything that the driver has done until now has changed.
static void expectNone(Subject &subject, const std::function<QString()> &change)
{
    try {
        subject.tour();
    } catch (const Unmet &) {
        // Loading and enumerating can change enough.
    }
    const QString text = change();
    if (!text.isEmpty())
        throw Broken{text, {}, true};
}

static void checkLocale(Subject &subject)
{
    expectNone(subject, [&] { return subject.surroundings().localeChange(); });
}

static void checkFolder(Subject &subject)
{
    expectNone(subject, [&] { return subject.surroundings().folderChange(); });
}

static void checkEnvironment(Subject &subject)
{
    expectNone(subject, [&] { return subject.surroundings().environmentChange(); });
}

static void checkSignals(Subject &subject)
{
    expectNone(subject, [&] { return subject.surroundings().signalChange(); });
}

static void checkMessageHandler(Subject &subject)
{
    expectNone(subject, [&] { return subject.surroundings().messageHandlerChange(); });
}

static void checkOutput(Subject &subject)
{
    expectNone(subject, [] {
        const QByteArray output = collectedOutput();
        return output.isEmpty()
            ? QString()
            : QStringLiteral("the standard output holds '%1'").arg(QString::fromLocal8Bit(output));
    });
}

static void checkQuit(Subject &subject)
{
    expectNone(subject, [&] {
        return subject.isQuit() ? QStringLiteral("QCoreApplication::exit() or quit() was called")
                                : QString();
    });
}

// Something of each run stays: a thread or a file more after each of at least three.
static void checkRunsLeaveNothing(Subject &subject)
{
    const Tour &tour = subject.tour();
    const QVector<Run> all = tour.runs + tour.chains;
    Offences offences;
    QMap<Device::DeviceFeature, QVector<Run>> byFeature;
    for (const Run &run : all) {
        if (run.kind != Run::Forbidden)
            byFeature[run.feature] += run;
    }
    for (const QVector<Run> &runs : qAsConst(byFeature)) {
        int between = 0;
        for (int i = 1; i < runs.size(); ++i)
            between += runs.at(i).endingCount();
        const int threads = runs.constLast().threadsAfter - runs.constFirst().threadsAfter;
        const int files = runs.constLast().filesAfter - runs.constFirst().filesAfter;
        if (between > 1 && (threads >= between || files >= between))
            offences.add(QStringLiteral("%1 more runs have left %2 threads and %3 open files")
                             .arg(between)
                             .arg(std::max(threads, 0))
                             .arg(std::max(files, 0)),
                         runs.constLast());
    }
    offences.conclude();
    if (all.isEmpty())
        throw NotApplicable{QStringLiteral("no feature may be run")};
}

QVector<Rule> surroundingsRules()
{
    return {
        {1301, group, Severity::Failure, false, Needs::Plugin,
         "A driver leaves the locale of the process alone.",
         "With another decimal sign the application reads and writes wrong numbers.",
         "Use QLocale::c() and QByteArray::number(); never setlocale() or QLocale::setDefault().",
         checkLocale},
        {1302, group, Severity::Failure, false, Needs::Plugin,
         "A driver leaves the working folder and the file mask alone.",
         "The application's relative paths lead elsewhere, and results are saved where nobody "
         "looks.",
         "Use absolute paths.", checkFolder},
        {1303, group, Severity::Failure, false, Needs::Plugin,
         "A driver leaves the environment alone.",
         "Other drivers, and programs that the application starts, read it.",
         "Pass a QProcessEnvironment to what the driver starts itself.", checkEnvironment},
        {1304, group, Severity::Failure, false, Needs::Plugin,
         "A driver installs no signal handlers.",
         "The application closes its instruments on the signals that end it; two handlers do not "
         "go together.",
         "Use MSG_NOSIGNAL where a write could raise SIGPIPE, and no library that takes signals.",
         checkSignals},
        {1305, group, Severity::Failure, false, Needs::Plugin,
         "A driver installs no message handler.",
         "The application's log loses what all others say.",
         "Log to a category of your own; who wants the messages in a file sets that up outside.",
         checkMessageHandler},
        {1306, group, Severity::Failure, false, Needs::Plugin,
         "A driver writes nothing to the standard output.",
         "Tools print their data there, and what a driver says ends up among measured values.",
         "Log to a category of your own (QLoggingCategory).", checkOutput},
        {1307, group, Severity::Failure, false, Needs::Plugin,
         "A driver does not end the application: no QCoreApplication::quit() or exit().",
         "Whatever else the application is doing is lost.", "Report an error with setError().",
         checkQuit},
        {1308, group, Severity::Failure, false, Needs::Open,
         "A run leaves no thread and no open file behind.",
         "After some hundred plates the process can open no more files, and all fails at once.",
         "Close what a run opens on every way out of it.", checkRunsLeaveNothing},
    };
}

} // namespace qel::conformance
