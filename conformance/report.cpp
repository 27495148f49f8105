#include "report.h"

#include "recorder.h"

#include <qelvalues/printable.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace qel::conformance {

// What people read. The English text is the id of its translation, and stands where there is none;
// what programs read is English always.
static QString translated(const char *english)
{
    return qtTrId(english);
}

static QString english(const char *text)
{
    return QString::fromLatin1(text);
}

using Language = QString (*)(const char *);

static const char *name(Judgement judgement)
{
    switch (judgement) {
    case Judgement::Passed:
        return "passed";
    case Judgement::Failed:
        return "failed";
    case Judgement::Warning:
        return "warning";
    case Judgement::NotApplicable:
        return "not applicable";
    case Judgement::NotRun:
        return "not run";
    }
    return "";
}

// What a plugin says may hold anything; neither a terminal nor an XML reader must act on it.
static QString printable(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    std::transform(lines.begin(), lines.end(), lines.begin(), values::printable);
    return lines.join(QLatin1Char('\n'));
}

static QJsonArray featuresToJson(const Report &report)
{
    QJsonArray features;
    for (const FeatureTally &tally : report.features) {
        QJsonObject feature = {{QStringLiteral("feature"), featureName(tally.feature)},
                               {QStringLiteral("succeeded"), tally.succeeded},
                               {QStringLiteral("failed"), tally.failed}};
        if (tally.failed > 0)
            feature.insert(QStringLiteral("lastError"), errorName(tally.lastError));
        features += feature;
    }
    return features;
}

static bool isBroken(const Result &result)
{
    return result.judgement == Judgement::Failed || result.judgement == Judgement::Warning;
}

// What a person needs to understand a broken rule.
static QStringList explanation(const Result &result, Language in)
{
    QStringList lines = {in("seen:   %1").arg(result.seen),
                         in("why:    %1").arg(in(result.rule->reason)),
                         in("remedy: %1").arg(in(result.rule->remedy))};
    if (!result.signalsSeen.isEmpty())
        lines += in("signals of the device:");
    for (const QString &line : result.signalsSeen)
        lines += QStringLiteral("  ") + line;
    return lines;
}

QString toText(const Result &result, const Result *previous)
{
    QString text;
    if (!previous || qstrcmp(previous->rule->group, result.rule->group) != 0)
        text += QStringLiteral("%1\n").arg(translated(result.rule->group));
    const QString judgement = translated(name(result.judgement));
    text += QStringLiteral("  %1 %2 %3\n")
                .arg(result.rule->number, 4)
                .arg(isBroken(result) ? judgement.toUpper() : judgement, -14)
                .arg(translated(result.rule->statement));
    const QString indent = QStringLiteral("                      ");
    if (isBroken(result)) {
        const auto lines = explanation(result, translated);
        for (const QString &line : lines)
            text += indent + line + QLatin1Char('\n');
    } else if (!result.seen.isEmpty()) {
        text += QStringLiteral("%1(%2)\n").arg(indent, result.seen);
    }
    return printable(text);
}

// "601 to 604, 702".
static QString numbers(const QVector<const Result *> &results)
{
    QStringList ranges;
    const auto &rules = allRules();
    for (int i = 0; i < results.size();) {
        const Rule *first = results.at(i)->rule;
        const Rule *last = first;
        while (++i < results.size() && results.at(i)->rule == last + 1 && last + 1 < rules.cend())
            last = results.at(i)->rule;
        ranges += first == last ? QString::number(first->number)
                                : translated("%1 to %2").arg(first->number).arg(last->number);
    }
    return ranges.join(QStringLiteral(", "));
}

static QString state(const FeatureTally &tally, bool isUnsafe)
{
    if (tally.succeeded > 0)
        return translated("succeeded %1 times").arg(tally.succeeded);
    if (tally.feature == devices::Device::DF_FirmwareUpdate)
        return translated("not judged: firmware is never written");
    if (!tally.isTried && !isUnsafe)
        return translated("not judged: running it moves parts of the instrument");
    if (tally.failed == 0)
        return translated("NOT JUDGED: it was never run to its end");
    return translated("NOT JUDGED: none of %1 runs succeeded, the last error was %2")
        .arg(tally.failed)
        .arg(errorName(tally.lastError));
}

QString summary(const Report &report)
{
    QString text =
        translated("%1 rules hold, %2 failed, %3 warnings, %4 not applicable, %5 not run")
            .arg(report.count(Judgement::Passed))
            .arg(report.count(Judgement::Failed))
            .arg(report.count(Judgement::Warning))
            .arg(report.count(Judgement::NotApplicable))
            .arg(report.count(Judgement::NotRun))
        + QLatin1Char('\n');
    if (!report.features.isEmpty())
        text += QStringLiteral("\n%1\n").arg(translated("What the instrument did"));
    for (const FeatureTally &tally : report.features)
        text += QStringLiteral("  %1  %2\n")
                    .arg(featureName(tally.feature), -26)
                    .arg(state(tally, report.isUnsafe));

    // Rules that lack the same thing stand together.
    QMap<QString, QVector<const Result *>> lacking;
    bool isUnmoved = false;
    for (const Result &result : report.results) {
        if (result.judgement == Judgement::NotRun)
            lacking[result.seen] += &result;
        isUnmoved |= result.isLeftOut && result.rule->isUnsafe;
    }
    if (!lacking.isEmpty())
        text += QStringLiteral("\n%1\n").arg(translated("What was not judged"));
    for (auto it = lacking.cbegin(); it != lacking.cend(); ++it)
        text += QStringLiteral("  %1: %2\n").arg(numbers(*it), it.key());
    // %1 breaks the line, which an id cannot do.
    if (isUnmoved)
        text += QStringLiteral("\n%1\n").arg(
            translated("Without --unsafe nothing that moves was run: no measurement and no "
                       "calibration, and none of their values was%1seen. Prepare the instrument "
                       "and check with --unsafe to have them judged.")
                .arg(QLatin1Char('\n')));
    if (report.isIncomplete())
        text += QStringLiteral("\n%1\n").arg(
            translated("INCOMPLETE: no rule is broken, but what is named above was not judged."));
    return printable(text);
}

QJsonObject toJson(const Report &report, const QString &fileName)
{
    QJsonArray rules;
    for (const Result &result : report.results) {
        QJsonObject rule = {{QStringLiteral("number"), result.rule->number},
                            {QStringLiteral("group"), QLatin1String(result.rule->group)},
                            {QStringLiteral("statement"), QLatin1String(result.rule->statement)},
                            {QStringLiteral("outcome"), QLatin1String(name(result.judgement))}};
        if (!result.seen.isEmpty())
            rule.insert(QStringLiteral("seen"), result.seen);
        if (isBroken(result)) {
            rule.insert(QStringLiteral("reason"), QLatin1String(result.rule->reason));
            rule.insert(QStringLiteral("remedy"), QLatin1String(result.rule->remedy));
            rule.insert(QStringLiteral("signals"), QJsonArray::fromStringList(result.signalsSeen));
        }
        rules += rule;
    }
    QJsonObject object = {{QStringLiteral("plugin"), fileName},
                          {QStringLiteral("passed"), report.count(Judgement::Passed)},
                          {QStringLiteral("failed"), report.count(Judgement::Failed)},
                          {QStringLiteral("warnings"), report.count(Judgement::Warning)},
                          {QStringLiteral("notApplicable"), report.count(Judgement::NotApplicable)},
                          {QStringLiteral("notRun"), report.count(Judgement::NotRun)},
                          {QStringLiteral("incomplete"), report.isIncomplete()},
                          {QStringLiteral("features"), featuresToJson(report)},
                          {QStringLiteral("rules"), rules}};
    if (!report.error.isEmpty())
        object.insert(QStringLiteral("error"), report.error);
    return object;
}

static void writeCase(QXmlStreamWriter &xml, const Result &result)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), QLatin1String(result.rule->group));
    xml.writeAttribute(QStringLiteral("name"),
                       QStringLiteral("%1 %2")
                           .arg(result.rule->number)
                           .arg(QLatin1String(result.rule->statement)));
    const QString text = isBroken(result)
        ? printable(explanation(result, english).join(QLatin1Char('\n')))
        : QString();
    if (result.judgement == Judgement::Failed) {
        xml.writeStartElement(QStringLiteral("failure"));
        xml.writeAttribute(QStringLiteral("message"), printable(result.seen));
        xml.writeCharacters(text);
        xml.writeEndElement();
    } else if (result.judgement == Judgement::Warning) {
        xml.writeTextElement(QStringLiteral("system-out"), text);
    } else if (result.judgement != Judgement::Passed) {
        xml.writeEmptyElement(QStringLiteral("skipped"));
        xml.writeAttribute(QStringLiteral("message"), printable(result.seen));
    }
    xml.writeEndElement();
}

QByteArray toJUnit(const Report &report, const QString &fileName)
{
    QByteArray document;
    QXmlStreamWriter xml(&document);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), fileName);
    xml.writeAttribute(QStringLiteral("tests"), QString::number(report.results.size()));
    xml.writeAttribute(QStringLiteral("failures"),
                       QString::number(report.count(Judgement::Failed)));
    xml.writeAttribute(QStringLiteral("errors"),
                       report.error.isEmpty() ? QStringLiteral("0") : QStringLiteral("1"));
    xml.writeAttribute(
        QStringLiteral("skipped"),
        QString::number(report.count(Judgement::NotApplicable) + report.count(Judgement::NotRun)));
    for (const Result &result : report.results)
        writeCase(xml, result);
    if (!report.error.isEmpty())
        xml.writeTextElement(QStringLiteral("system-err"), printable(report.error));
    xml.writeEndElement();
    xml.writeEndDocument();
    return document;
}

} // namespace qel::conformance
