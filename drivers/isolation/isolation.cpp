#include "isolation.h"

#include "pluginfiles.h"

#include <driverhost.h>
#include <texts.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <algorithm>
#include <utility>

namespace qel::isolated {

using devices::DeviceBroker;

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
        noteRegistered(host);
    }
    // By then all plugins have been loaded; what is loaded later replaces drivers on purpose.
    QTimer::singleShot(0, this, &Isolation::warnOfReplaced);
}

void Isolation::noteRegistered(rpc::DriverHost *host)
{
    const QStringList names = host->link()->drivers();
    for (const QString &name : names)
        m_registered.insert(name, DeviceBroker::DRIVERS.value(name));
}

// In the category of drivers: applications silence the other one for what they tell themselves.
void Isolation::warnOfReplaced()
{
    const auto registered = std::exchange(m_registered, {});
    for (auto it = registered.cbegin(); it != registered.cend(); ++it) {
        const auto now = DeviceBroker::DRIVERS.value(it.key());
        if (now && now != it.value())
            qCWarning(LogCDriver).noquote()
                << QStringLiteral("The driver '%1' is not isolated: another plugin has replaced it "
                                  "in this process. Does its plugin stand in 'devicedrivers', too?")
                       .arg(it.key());
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
