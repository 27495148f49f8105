#ifndef QEL_CONFORMANCE_CHECKER_H
#define QEL_CONFORMANCE_CHECKER_H

#include "assignment.h"
#include "reservation.h"
#include "rule.h"

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <functional>
#include <optional>

namespace qel::isolation {
class ChildProcess;
struct Ending;
} // namespace qel::isolation

namespace qel::conformance {

/// How a rule was judged.
enum class Judgement {
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
    Judgement judgement = Judgement::NotRun;
    QString seen;            ///< what was seen instead, or what is missing
    QStringList signalsSeen; ///< the device's signals in order, when the rule is broken
    bool isLeftOut = false;  ///< when not run: whether the caller has left it out on purpose
};

/// What is to be judged, and how.
struct Request
{
    QString fileName; ///< the plugin file
    /// The plugin that has drivers in processes of their own, where the file is to be judged from
    /// outside of such a process. Empty to load it directly.
    QString host;
    QString driver;        ///< the driver; empty when the plugin has one only
    QString serial;        ///< the serial number of the instrument; empty for the first
    bool isUnsafe = false; ///< whether parts of the instrument may be moved
    bool isGuided = false; ///< whether a person is there whose hands do what rules need
    Answers answers = Answers::Decline; ///< how requests for user action are answered
    /// Has a person do what the sentence asks for; whether it has been done. For Answers::Ask and
    /// guided checks.
    std::function<bool(const QString &)> ask;
    QVector<int> rules; ///< the rules to judge; empty for all
    Limits limits;
    /// The program that loads the plugin: one that calls runWorker(). Empty for this program.
    QString workerProgram;
};

/// What has been seen of one feature that the instrument offers.
struct FeatureTally
{
    devices::Device::DeviceFeature feature = devices::Device::DF_None;
    int succeeded = 0;   ///< runs that ended with success
    int failed = 0;      ///< runs that did not
    int lastError = 0;   ///< the last error code that a failed run left; 0 when none did
    bool isTried = true; ///< whether it could be run at all: permitted, and no firmware update
};

/// All that came out.
struct Report
{
    QVector<Result> results;        ///< by ascending number
    QVector<FeatureTally> features; ///< by ascending feature
    QString error;                  ///< why nothing could be judged as asked for; empty otherwise
    bool isUnsafe = false;          ///< whether parts of the instrument might be moved
    bool isSelection = false;       ///< whether some rules only were asked for

    int count(Judgement judgement) const;
    /// Whether no rule is broken, and yet the driver cannot be said to keep the rules: something
    /// was missing that the caller did not leave out on purpose.
    bool isIncomplete() const;
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
    void startWorker(isolation::ChildProcess *process, const QVector<const Rule *> &rules);
    bool takeNote(isolation::ChildProcess *process, const QJsonObject &answer);
    void conclude(const Result &result);
    void concludeByEnd(const Rule &rule, const isolation::ChildProcess &process,
                       const isolation::Ending &ending);
    void concludeByEnd(const Rule &rule, const QString &end, const QString &words);
    void take(const Rule &rule, const QJsonObject &answer);
    void takeTally(const QJsonObject &tally);
    QString endOf(const isolation::Ending &ending) const;
    bool isPermitted(const Rule &rule) const;
    QString whyNot(const Rule &rule) const;
    void leaveOut(const Rule &rule);

    Request m_request;
    Report m_report;
    std::optional<Unmet> m_unmet;
    std::function<void(const Result &)> m_sink;
    std::unique_ptr<Reservation> m_reservation;
    // What the present process was last heard to call, and whether it was still in there.
    QString m_call;
    bool m_isInCall = false;
    int m_callFeature = 0;
    // What earlier processes have taught.
    QStringList m_hung;
    QVector<Stuck> m_stuck;
    QMap<QString, int> m_ends; // the rule by which each way of dying was seen first
};

} // namespace qel::conformance

#endif
