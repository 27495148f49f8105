#include "worker.h"

#include "subject.h"
#include "worker_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <csignal>
#include <memory>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

namespace qel::conformance {

// The parent's end of the standard output; the plugin's own output goes to the standard error.
static int answers = -1;

static void answer(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    qint64 written = 0;
    while (written < line.size()) {
        const qint64 count = ::write(answers, line.constData() + written, line.size() - written);
        if (count < 0)
            ::_exit(exitUnheard);
        written += count;
    }
}

// One line of the standard input; none at its end.
static std::optional<QByteArray> readLine()
{
    QByteArray line;
    char character = 0;
    while (::read(STDIN_FILENO, &character, 1) == 1) {
        if (character == '\n')
            return line;
        line += character;
    }
    return std::nullopt;
}

static void prepareProcess()
{
    // A crash is an expected answer and needs no core file.
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // On Ctrl-C the parent goes, and the end of the standard input tells this process.
    std::signal(SIGINT, SIG_IGN);
    // What the plugin says last is shown when it crashes, so the library need not say much.
    QLoggingCategory::setFilterRules(
        QStringLiteral("qel.devices*.debug=false\nqel.devices*.info=false"));
    answers = ::dup(STDOUT_FILENO);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

// @param isFit whether the plugin can be held to further rules in this process
static QJsonObject judge(const Rule &rule, Subject &subject, bool *isFit)
{
    *isFit = true;
    QJsonObject result = {{keyRule, rule.number}};
    const auto conclude = [&](const QString &outcome, const QString &why) {
        result.insert(keyOutcome, outcome);
        result.insert(keySeen, why);
    };
    try {
        rule.check(subject);
        conclude(outcomePassed, {});
    } catch (const Broken &broken) {
        conclude(outcomeBroken, broken.seen);
        const QStringList around = broken.signalsSeen;
        result.insert(keySignals,
                      QJsonArray::fromStringList(
                          around.isEmpty() && !broken.isRecorded ? subject.signalsSeen() : around));
        *isFit = broken.isRecorded;
    } catch (const NotApplicable &none) {
        conclude(outcomeNotApplicable, none.why);
    } catch (const Hindered &hindered) {
        conclude(outcomeNotRun, hindered.why);
    } catch (const Unmet &unmet) {
        conclude(outcomeNotRun, unmet.why);
        result.insert(keyNeeds, int(unmet.needs));
        result.insert(keySelection, unmet.isSelection);
    }
    result.insert(keyTally, subject.takeTally());
    return result;
}

bool isWorker(int argc, char *const *argv)
{
    return argc == 2 && qstrcmp(argv[1], workerArgument) == 0;
}

int runWorker(int argc, char **argv)
{
    prepareProcess();
    QCoreApplication application(argc, argv);
    const auto request = readLine();
    if (!request)
        return EXIT_FAILURE;
    const Assignment assignment = Assignment::fromJson(QJsonDocument::fromJson(*request).object());

    std::optional<bool> reply;
    QSocketNotifier parent(STDIN_FILENO, QSocketNotifier::Read);
    std::unique_ptr<Subject> subject;
    const auto ask = [&](const QString &text) {
        reply.reset();
        answer({{keyAsk, text}});
        // Persons take their time, and the instrument goes on meanwhile.
        while (!reply)
            subject->waitFor(assignment.limits.silent, [&] { return reply.has_value(); });
        return *reply;
    };
    subject = std::make_unique<Subject>(assignment, answer, ask);
    QObject::connect(&parent, &QSocketNotifier::activated, &parent, [&] {
        if (const auto line = readLine()) {
            reply = *line == "yes";
            return;
        }
        parent.setEnabled(false);
        subject->closeAll();
        ::_exit(EXIT_FAILURE);
    });
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &pulse, [&] {
        // Whoever waits for ever in a loop of events shows no life.
        if (!subject->isOverdue())
            answer({});
    });
    pulse.start(assignment.limits.silent / 5);

    for (const Rule &rule : allRules()) {
        if (!assignment.rules.contains(rule.number))
            continue;
        answer({{keyRule, rule.number}});
        bool isFit = true;
        const QJsonObject result = judge(rule, *subject, &isFit);
        answer(result);
        if (rule.coversExit)
            return EXIT_SUCCESS;
        // After a fault nobody knows what the plugin does to the rules that follow.
        if (!isFit)
            break;
    }
    // The end of the process is a rule of its own.
    ::_exit(EXIT_SUCCESS);
}

} // namespace qel::conformance
