#include "catalogues.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <algorithm>

namespace qel::conformance {

QStringList catalogueFolders()
{
    QStringList folders;
    QDirIterator it(QStringLiteral(":/qel/devices"), QDir::Dirs | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        folders += it.next();
    folders.sort();
    return folders;
}

static bool translates(const QStringList &catalogues, const QString &id)
{
    return std::any_of(catalogues.cbegin(), catalogues.cend(), [&](const QString &catalogue) {
        QTranslator translator;
        return translator.load(catalogue)
            && !translator.translate(nullptr, id.toUtf8().constData()).isEmpty();
    });
}

// A driver whose catalogues are elsewhere installs a translator that follows the default locale.
static bool translatesInstalled(QLatin1String language, const QString &id)
{
    const QLocale before;
    QLocale::setDefault(QLocale(language));
    const QString sentence = qtTrId(id.toUtf8().constData());
    QLocale::setDefault(before);
    return sentence != id;
}

QString translationFault(const QString &id)
{
    const QStringList folders = catalogueFolders();
    for (const char *name : {"en", "de"}) {
        const QLatin1String language(name);
        QStringList catalogues;
        for (const QString &folder : folders)
            catalogues += QStringLiteral("%1/plugin_%2.qm").arg(folder, language);
        const bool isThere = std::any_of(catalogues.cbegin(), catalogues.cend(),
                                         [](const QString &file) { return QFile::exists(file); });
        // The library's own ids serve as well.
        catalogues += QStringLiteral(":/qel/devices/qeldevices_%1.qm").arg(language);
        if (isThere && !translates(catalogues, id) && !translatesInstalled(language, id))
            return QStringLiteral("'%1' is in no catalogue for '%2'").arg(id, language);
    }
    return {};
}

QString pluginText(const QString &id)
{
    const QStringList folders = catalogueFolders();
    for (const QString &language : {QLocale().name().left(2), QStringLiteral("en")}) {
        for (const QString &folder : folders) {
            QTranslator translator;
            if (!translator.load(QStringLiteral("%1/plugin_%2.qm").arg(folder, language)))
                continue;
            const QString text = translator.translate(nullptr, id.toUtf8().constData());
            if (!text.isEmpty())
                return text;
        }
    }
    return id;
}

} // namespace qel::conformance
