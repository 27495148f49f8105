#include "libexec.h"

#include <qeldevices/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <QtCore/QStringList>

#include <dlfcn.h>

namespace qel::rpc {

using namespace devices;

QString libexecFile(const QString &name)
{
    QStringList folders;
    Dl_info here;
    if (::dladdr(reinterpret_cast<void *>(&libexecFile), &here) != 0) {
        const QString folder = QFileInfo(QFile::decodeName(here.dli_fname)).absolutePath();
        folders += {folder, folder + QStringLiteral("/.."),
                    folder + QStringLiteral("/../../libexec/qeldevices")};
    }
    folders += {QCoreApplication::applicationDirPath(), QStringLiteral(QELDEVICES_LIBEXEC)};
    for (const QString &folder : qAsConst(folders)) {
        const QFileInfo file(folder + QLatin1Char('/') + name);
        if (file.isFile())
            return file.canonicalFilePath();
    }
    return {};
}

void registerDriversOf(const QString &name)
{
    const QString file = libexecFile(name);
    QLibrary library(file);
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto registerDrivers = file.isEmpty() ? nullptr : library.resolve("qelRegisterDrivers");
    if (registerDrivers)
        registerDrivers();
    else
        qCWarning(LogCDevices) << "cannot load" << name << "\n\tReason:"
                               << (file.isEmpty() ? QStringLiteral("it is not installed")
                                                  : library.errorString());
}

} // namespace qel::rpc
