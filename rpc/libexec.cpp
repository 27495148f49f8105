#include "libexec.h"

#include <qeldevices/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <QtCore/QStringList>

#include <dlfcn.h>

namespace qel::rpc {

using namespace devices;

QString libexecFile(const QString &name)
{
    // In a program, the file of this code is called as the program was: perhaps by a name that has
    // to be looked up, which must not lead into the current folder.
    QStringList places{QCoreApplication::applicationDirPath()};
    Dl_info here;
    if (::dladdr(reinterpret_cast<void *>(&libexecFile), &here) != 0
        && QDir::isAbsolutePath(QFile::decodeName(here.dli_fname)))
        places.prepend(QFileInfo(QFile::decodeName(here.dli_fname)).absolutePath());
    QStringList folders;
    for (const QString &place : qAsConst(places))
        folders +=
            {place, place + QStringLiteral("/.."), place + QStringLiteral("/../libexec/qeldevices"),
             place + QStringLiteral("/../../libexec/qeldevices")};
    folders += QStringLiteral(QELDEVICES_LIBEXEC);
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
