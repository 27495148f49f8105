#ifndef QEL_CONFORMANCE_RULE_H
#define QEL_CONFORMANCE_RULE_H

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::conformance {

class Subject;

/// Whether breaking a rule is a fault or only unkind to applications.
enum class Severity {
    Failure,        ///< the contract demands it
    Recommendation, ///< the contract leaves freedom; breaking it is a warning
};

/// What must be at hand before a rule can be judged. Each level includes those before it.
enum class Needs {
    File,       ///< nothing but the file
    Plugin,     ///< a plugin that loads
    Driver,     ///< a driver that the plugin registers
    Instrument, ///< an instrument that the driver lists, and a device created for it
    Open,       ///< an instrument that opens
};

/// One thing that must hold of a driver plugin.
///
/// Texts are ASCII, live as long as the program, and stand in the report and in the generated page
/// of rules alike.
struct Rule
{
    int number;            ///< hundreds are the group; never used for another rule
    const char *group;     ///< title of the group
    Severity severity;     ///< what breaking it means
    bool isUnsafe;         ///< whether judging it moves parts of the instrument
    Needs needs;           ///< what must be at hand
    const char *statement; ///< one sentence of what must hold
    const char *reason;    ///< why it matters
    const char *remedy;    ///< what a driver's author does about it
    /// Judges the rule: returns when it holds, otherwise throws one of the types below.
    void (*check)(Subject &subject);
    /// Whether a clean end of the whole process is part of the rule.
    bool coversExit = false;
    /// Whether judging it takes a person's hands at the instrument.
    bool needsPerson = false;
};

/// Thrown by a check when the rule does not hold.
struct Broken
{
    QString seen; ///< what was seen instead
    /// The device's signals around the offence; empty for those that came last.
    QStringList signalsSeen = {};
    /// Whether this was read from the record of earlier runs: the plugin is as good as before.
    bool isRecorded = false;
};

/// Thrown by a check when the driver has nothing that the rule speaks of.
struct NotApplicable
{
    QString why; ///< what is missing
};

/// Thrown by a check when what it needs is not at hand. Rules with the same needs are not tried.
struct Unmet
{
    Needs needs;              ///< the level that is not reached
    QString why;              ///< what is missing
    bool isSelection = false; ///< whether the caller has asked for something that is not there
};

/// Thrown by a check that cannot go on because another rule is broken, or something is not
/// permitted.
struct Hindered
{
    QString why; ///< what is in the way
};

/// All rules, by ascending number.
const QVector<Rule> &allRules();

/// The rule with that number; null when there is none.
const Rule *findRule(int number);

/// The page of documentation that lists all rules, in Markdown.
QString rulesPage();

// The groups, each in its own file.
QVector<Rule> pluginFileRules();
QVector<Rule> enumerationRules();
QVector<Rule> identityRules();
QVector<Rule> openRules();
QVector<Rule> featureRules();
QVector<Rule> executionRules();
QVector<Rule> actionRules();
QVector<Rule> errorRules();
QVector<Rule> lifeRules();
QVector<Rule> timeRules();
QVector<Rule> resultRules();
QVector<Rule> surroundingsRules();
QVector<Rule> byHandRules();

} // namespace qel::conformance

#endif
