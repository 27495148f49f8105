#include "rule.h"

#include <algorithm>

namespace qel::conformance {

const QVector<Rule> &allRules()
{
    static const QVector<Rule> rules = pluginFileRules() + enumerationRules() + identityRules()
        + openRules() + featureRules() + executionRules() + actionRules() + errorRules()
        + lifeRules() + timeRules() + resultRules() + surroundingsRules() + byHandRules();
    return rules;
}

const Rule *findRule(int number)
{
    const auto &rules = allRules();
    const auto rule = std::find_if(rules.cbegin(), rules.cend(),
                                   [number](const Rule &r) { return r.number == number; });
    return rule == rules.cend() ? nullptr : &*rule;
}

QString rulesPage()
{
    QString page = QStringLiteral(
        "# What a driver is held to\n\n"
        "The rules of `qelctl check`, as it knows them; this page is generated from them. How to "
        "write a driver\nthat keeps them stands in [writing-a-driver.md](writing-a-driver.md).\n\n"
        "A *recommendation* that is not kept is a warning, every other rule a failure. Rules "
        "marked *unsafe* move\nparts of the instrument and are judged with `--unsafe` only; the "
        "others leave out whatever moves unless\nit is given. Rules marked *guided* take a person "
        "at the instrument and are judged with `--guided` only.\n");
    QString group;
    for (const Rule &rule : allRules()) {
        if (group != QLatin1String(rule.group)) {
            group = QString::fromLatin1(rule.group);
            page += QStringLiteral("\n## %1\n").arg(group);
        }
        QString marks;
        if (rule.severity == Severity::Recommendation)
            marks += QStringLiteral(" *(recommendation)*");
        if (rule.isUnsafe)
            marks += QStringLiteral(" *(unsafe)*");
        if (rule.needsPerson)
            marks += QStringLiteral(" *(guided)*");
        page += QStringLiteral("\n**%1.** %2%3\n\n- Why: %4\n- Remedy: %5\n")
                    .arg(rule.number)
                    .arg(QLatin1String(rule.statement), marks, QLatin1String(rule.reason),
                         QLatin1String(rule.remedy));
    }
    return page;
}

} // namespace qel::conformance
