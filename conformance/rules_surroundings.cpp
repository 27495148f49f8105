#include "tour.h"

namespace qel::conformance {

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
    };
}

} // namespace qel::conformance
