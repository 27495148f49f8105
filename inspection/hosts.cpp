#include "hosts.h"

#include <QtCore/QMetaObject>
#include <QtCore/QObject>

#include <cstring>

namespace qel::inspection {

namespace {

Sentence reasonOf(const QString &state, int code)
{
    if (state == QLatin1String("crashed"))
        return {"the process ended with signal %1 (%2)",
                {QString::number(code), QString::fromLocal8Bit(::strsignal(code))}};
    if (state == QLatin1String("exited"))
        return {"the process was ended by exit(%1)", {QString::number(code)}};
    if (state == QLatin1String("not-started"))
        return "the process could not be started";
    if (state == QLatin1String("refused"))
        return "it is no driver, or something that it needs is missing";
    return "the process did not come back";
}

LoadOutcome outcomeOf(const QVariantMap &host)
{
    using Kind = LoadOutcome::Kind;
    const QString state = host.value(QStringLiteral("state")).toString();
    LoadOutcome outcome;
    outcome.file = host.value(QStringLiteral("file")).toString();
    outcome.drivers = host.value(QStringLiteral("drivers")).toStringList();
    outcome.asked = host.value(QStringLiteral("driver")).toString();
    if (state == QLatin1String("serving"))
        outcome.kind = Kind::Loaded;
    else if (state == QLatin1String("silent"))
        outcome.kind = Kind::TimedOut;
    else if (state == QLatin1String("crashed") || state == QLatin1String("exited"))
        outcome.kind = Kind::Crashed;
    else
        outcome.kind = Kind::Refused;
    if (outcome.kind == Kind::Loaded)
        return outcome;
    outcome.reason = reasonOf(state, host.value(QStringLiteral("code")).toInt());
    if (host.value(QStringLiteral("hasReturned")).toBool() && outcome.kind != Kind::Refused)
        outcome.reason = {"%1, after the call %2",
                          {outcome.reason, host.value(QStringLiteral("call")).toString()}};
    return outcome;
}

} // namespace

QVariantList hostsOf(QObject *root)
{
    QVariantList hosts;
    if (root && root->metaObject()->indexOfMethod("hosts()") >= 0)
        QMetaObject::invokeMethod(root, "hosts", Q_RETURN_ARG(QVariantList, hosts));
    return hosts;
}

QVector<LoadOutcome> outcomesOf(const QVariantList &hosts)
{
    QVector<LoadOutcome> outcomes;
    for (const QVariant &host : hosts)
        outcomes.append(outcomeOf(host.toMap()));
    return outcomes;
}

} // namespace qel::inspection
