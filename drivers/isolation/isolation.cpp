#include "isolation.h"

#include "pluginfiles.h"

#include <driverhost.h>
#include <texts.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QPointer>

#include <algorithm>

namespace qel::isolated {

constexpr int startUpTime = 1000;        // ms
constexpr int longestStartUpTime = 3000; // ms, for who wants to know

Isolation *Isolation::instance()
{
    static QPointer<Isolation> isolation;
    if (!isolation)
        isolation = new Isolation(QCoreApplication::instance());
    isolation->setObjectName(QLatin1String(isolationName));
    return isolation;
}

void Isolation::registerDrivers()
{
    const QStringList files = pluginFiles();
    // All of them start before any of them is waited for.
    for (const QString &file : files) {
        const bool isKnown = std::any_of(m_hosts.cbegin(), m_hosts.cend(),
                                         [&](auto *host) { return host->pluginFile() == file; });
        if (!isKnown)
            m_hosts.append(new rpc::DriverHost(file, this));
    }
    const QDeadlineTimer deadline(startUpTime);
    for (rpc::DriverHost *host : qAsConst(m_hosts)) {
        host->link()->waitUntilReady(std::chrono::milliseconds(deadline.remainingTime()));
        host->registerDrivers();
    }
}

static QString stateOf(rpc::DriverHost *host)
{
    using qel::isolation::Ending;
    const auto trouble = host->trouble();
    if (!trouble)
        return host->link()->plugins().empty() ? QStringLiteral("refused")
                                               : QStringLiteral("serving");
    switch (trouble->ending.kind) {
    case Ending::NotStarted:
        return QStringLiteral("not-started");
    case Ending::Exited:
        return QStringLiteral("exited");
    case Ending::Crashed:
        return QStringLiteral("crashed");
    case Ending::Running:
    case Ending::Hung:
    case Ending::Garbled:
        break;
    }
    return QStringLiteral("silent");
}

QVariantList Isolation::hosts()
{
    const QDeadlineTimer deadline(longestStartUpTime);
    QVariantList all;
    for (rpc::DriverHost *host : qAsConst(m_hosts)) {
        host->settle(std::chrono::milliseconds(deadline.remainingTime()));
        const auto trouble = host->trouble().value_or(rpc::HostTrouble());
        const auto last = host->lastTrouble();
        all.append(QVariantMap{
            {QStringLiteral("file"), host->pluginFile()},
            {QStringLiteral("drivers"), host->link()->drivers()},
            {QStringLiteral("state"), stateOf(host)},
            {QStringLiteral("trouble"), host->trouble() ? trouble.text() : QString()},
            {QStringLiteral("endings"), host->endings()},
            {QStringLiteral("lastTrouble"), last ? last->text() : QString()},
            {QStringLiteral("code"), trouble.ending.code},
            {QStringLiteral("driver"), trouble.lastCall.driver},
            {QStringLiteral("call"), trouble.lastCall.name()},
            {QStringLiteral("hasReturned"), trouble.lastCall.hasReturned},
        });
    }
    return all;
}

} // namespace qel::isolated

extern "C" Q_DECL_EXPORT void qelRegisterDrivers()
{
    qel::rpc::FarTexts::instance();
    qel::isolated::Isolation::instance()->registerDrivers();
}
