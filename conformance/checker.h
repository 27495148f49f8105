#ifndef QEL_CONFORMANCE_CHECKER_H
#define QEL_CONFORMANCE_CHECKER_H

#include "rule.h"
#include "timelimits.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <functional>
#include <optional>

class QProcess;

namespace qel::conformance {

/// How a rule was judged.
enum class Outcome {
    Passed,
    Failed,        ///< the rule is broken
    Warning,       ///< a recommendation is not kept
    NotApplicable, ///< the driver has nothing that the rule speaks of
    NotRun,        ///< something was missing: the permission, an instrument, an earlier rule
};

/// The judgement of one rule.
struct Result
{
    const Rule *rule = nullptr;
    Outcome outcome = Outcome::NotRun;
    QString seen;            ///< what was seen instead, or what is missing
    QStringList signalsSeen; ///< the device's signals in order, when the rule is broken
};

/// What is to be judged, and how.
struct Request
{
    QString fileName;      ///< the plugin file
    QString driver;        ///< the driver; empty when the plugin has one only
    QString serial;        ///< the serial number of the instrument; empty for the first
    bool isUnsafe = false; ///< whether parts of the instrument may be moved
    QVector<int> rules;    ///< the rules to judge; empty for all
    Limits limits;
    /// The program that loads the plugin: one that calls runWorker(). Empty for this program.
    QString workerProgram;
};

/// All that came out.
struct Report
{
    QVector<Result> results; ///< by ascending number
    QString error;           ///< why nothing could be judged as asked for; empty otherwise

    int count(Outcome outcome) const;
};

/// Holds a driver plugin to the rules.
///
/// The plugin is loaded into processes of their own, so that its faults stay there: a crash or a
/// hang is a broken rule. After each broken rule the next one gets a fresh process. When this
/// process ends early, the others close the instrument and follow.
class Checker
{
public:
    explicit Checker(const Request &request);

    /// Judges the rules; takes seconds to minutes and needs no event loop.
    /// @param report called with each result as soon as it is known
    Report run(const std::function<void(const Result &)> &report = {});

private:
    void runBatch(QVector<const Rule *> *pending);
    void startWorker(QProcess *process, const QVector<const Rule *> &rules) const;
    std::optional<QJsonObject> nextAnswer(QProcess *process, bool *isHung) const;
    void finish(QProcess *process, bool *isHung) const;
    void conclude(const Result &result);
    void concludeByEnd(const Rule &rule, QProcess *process, bool isHung);
    void take(const Rule &rule, const QJsonObject &answer);
    QString endOf(QProcess *process, bool isHung) const;
    QString whyNot(const Rule &rule) const;

    Request m_request;
    Report m_report;
    std::optional<Unmet> m_unmet;
    std::function<void(const Result &)> m_sink;
};

} // namespace qel::conformance

#endif
