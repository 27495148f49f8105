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
            ::_exit(EXIT_FAILURE);
        written += count;
    }
}

static QJsonObject readRequest()
{
    QByteArray line;
    char character = 0;
    while (::read(STDIN_FILENO, &character, 1) == 1 && character != '\n')
        line += character;
    return QJsonDocument::fromJson(line).object();
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

static QJsonObject judge(const Rule &rule, Subject &subject)
{
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
        result.insert(keySignals, QJsonArray::fromStringList(subject.signalsSeen()));
    } catch (const NotApplicable &none) {
        conclude(outcomeNotApplicable, none.why);
    } catch (const Hindered &hindered) {
        conclude(outcomeNotRun, hindered.why);
    } catch (const Unmet &unmet) {
        conclude(outcomeNotRun, unmet.why);
        result.insert(keyNeeds, int(unmet.needs));
        result.insert(keySelection, unmet.isSelection);
    }
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
    const QJsonObject request = readRequest();
    const Limits limits = Limits::fromJson(request.value(keyLimits).toObject());
    Subject subject(request.value(keyFile).toString(), request.value(keyDriver).toString(),
                    request.value(keySerial).toString(), request.value(keyUnsafe).toBool(), limits);

    QSocketNotifier parent(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&parent, &QSocketNotifier::activated, &parent, [&] {
        parent.setEnabled(false);
        subject.closeAll();
        subject.settle();
        ::_exit(EXIT_FAILURE);
    });
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &pulse, [] { answer({}); });
    pulse.start(limits.silent / 5);

    const QJsonArray numbers = request.value(keyRules).toArray();
    for (const Rule &rule : allRules()) {
        if (!numbers.contains(rule.number))
            continue;
        answer({{keyRule, rule.number}});
        const QJsonObject result = judge(rule, subject);
        answer(result);
        if (rule.coversExit)
            return EXIT_SUCCESS;
        // After a fault nobody knows what the plugin does to the rules that follow.
        if (result.value(keyOutcome) == outcomeBroken)
            break;
    }
    // The end of the process is a rule of its own.
    ::_exit(EXIT_SUCCESS);
}

} // namespace qel::conformance
