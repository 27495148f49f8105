#include "pluginfiles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>

namespace qel::isolated {

QStringList pluginFiles()
{
    const QString named = QFile::decodeName(qgetenv("QELDEVICES_ISOLATED"));
    if (QFileInfo(named).isFile())
        return {QFileInfo(named).canonicalFilePath()};
    const QString name = QStringLiteral("/devicedrivers-isolated");
    QStringList folders{QCoreApplication::applicationDirPath() + name,
                        QLibraryInfo::location(QLibraryInfo::PluginsPath) + name};
    folders += named.split(QLatin1Char(':'), Qt::SkipEmptyParts);
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

} // namespace qel::isolated
