#include "isolation.h"

#include <driverhost.h>
#include <texts.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QLibraryInfo>
#include <QtCore/QPointer>

#include <algorithm>

namespace qel::isolated {

constexpr int startUpTime = 1000; // ms

static QStringList pluginFiles()
{
    const QString name = QStringLiteral("/devicedrivers-isolated");
    QStringList folders{QCoreApplication::applicationDirPath() + name,
                        QLibraryInfo::location(QLibraryInfo::PluginsPath) + name};
    folders += QFile::decodeName(qgetenv("QELDEVICES_ISOLATED"))
                   .split(QLatin1Char(':'), Qt::SkipEmptyParts);
    QStringList all;
    for (const QString &folder : qAsConst(folders)) {
        QStringList files;
        QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            files.append(QFileInfo(it.next()).canonicalFilePath());
        files.sort();
        all += files;
    }
    all.removeDuplicates();
    return all;
}

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

void Plugin::registerDrivers()
{
    rpc::FarTexts::instance();
    Isolation::instance()->registerDrivers();
}

} // namespace qel::isolated
