#include "isolation.h"

#include "pluginfiles.h"

#include <driverhost.h>
#include <texts.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QPointer>

#include <algorithm>

namespace qel::isolated {

constexpr int startUpTime = 1000; // ms

Isolation *Isolation::instance()
{
    static QPointer<Isolation> isolation;
    if (!isolation)
        isolation = new Isolation(QCoreApplication::instance());
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

} // namespace qel::isolated

extern "C" Q_DECL_EXPORT void qelRegisterDrivers()
{
    qel::rpc::FarTexts::instance();
    qel::isolated::Isolation::instance()->registerDrivers();
}
