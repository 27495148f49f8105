#include "worker.h"

#include "soak_p.h"
#include "worker_p.h"

#include <qelisolation/parentlink.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <memory>
#include <optional>

#include <unistd.h>

namespace qel::conformance {

static void quietenLibrary()
{
    // What the plugin says last is shown when it crashes, so the library need not say much.
    QLoggingCategory::setFilterRules(
        QStringLiteral("qel.devices*.debug=false\nqel.devices*.info=false"));
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
    isolation::ParentLink link;
    quietenLibrary();
    QCoreApplication application(argc, argv);
    const auto request = link.receive();
    if (!request)
        return EXIT_FAILURE;
    const Assignment assignment = Assignment::fromJson(QJsonDocument::fromJson(*request).object());

    // For the host, and before anybody looks at what the plugin changes of the environment.
    if (!assignment.host.isEmpty())
        qputenv("QELDEVICES_ISOLATED", QFile::encodeName(assignment.fileName));

    const auto answer = [&link](const QJsonObject &object) {
        if (!link.send(QJsonDocument(object).toJson(QJsonDocument::Compact)))
            ::_exit(exitUnheard);
    };
    std::optional<bool> reply;
    QSocketNotifier parent(link.descriptor(), QSocketNotifier::Read);
    std::unique_ptr<Subject> subject;
    const auto ask = [&](const QString &text) {
        reply.reset();
        answer({{keyAsk, text}});
        // Persons take their time, and the instrument goes on meanwhile.
        while (!reply)
            subject->waitFor(assignment.limits.silent, [&] { return reply.has_value(); });
        return *reply;
    };
    const auto reserve = [&](const QString &instrument) {
        answer({{keyReserve, instrument}});
        const auto other = link.receive();
        if (!other)
            ::_exit(EXIT_FAILURE);
        return QString::fromUtf8(*other);
    };
    subject = std::make_unique<Subject>(assignment, Subject::Parent{answer, ask, reserve});
    QObject::connect(&parent, &QSocketNotifier::activated, &parent, [&] {
        if (const auto message = link.receive()) {
            reply = *message == "yes";
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

    if (assignment.soakSeconds > 0 || !assignment.steps.isEmpty()) {
        soakInWorker(*subject, assignment, answer);
        ::_exit(EXIT_SUCCESS);
    }
    for (const int number : assignment.rules) {
        const Rule &rule = *findRule(number);
        answer({{keyRule, rule.number}});
        bool isFit = true;
        const QJsonObject result = judge(rule, *subject, &isFit);
        const QString end = subject->hostEnd();
        if (!end.isEmpty()) {
            answer({{keyRule, rule.number}, {keyEnd, end}, {keyTally, result.value(keyTally)}});
            break;
        }
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
