#include "startup.h"

#include "frontend.h"
#include "messages_p.h"
#include "provenance_p.h"

#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QDir>

namespace qel::frontend {

using qel::devices::DeviceBroker;

static QStringList foldersOfEnvironment()
{
    return qEnvironmentVariable("QELDEVICES_PLUGIN_PATH")
        .split(QDir::listSeparator(), Qt::SkipEmptyParts);
}

QStringList startLibrary(const QStringList &pluginFolders)
{
    registerMetaTypes();
    installTranslations();
    QStringList problems;
    {
        const RegistrationWatch watch;
        // Before init(), so that it finds their catalogues; registered again after it, so that they
        // replace installed drivers of the same name.
        const QStringList folders = foldersOfEnvironment() + pluginFolders;
        for (const QString &folder : folders) {
            // An empty name would mean the current folder, and a relative path is sought elsewhere.
            if (!folder.isEmpty() && QDir(folder).exists())
                DeviceBroker::loadAllDevicePlugins(QDir(folder).absolutePath());
            else
                problems.append(message("qelfrontend-start-no-folder", printable(folder)));
        }
        const auto preferred = DeviceBroker::DRIVERS;
        qel::devices::init();
        for (const auto &driver : preferred)
            DeviceBroker::addDriver(driver);
    }
    return problems;
}

} // namespace qel::frontend
