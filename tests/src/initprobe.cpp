#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>

#include <cstdio>

// Starts the library in the locale of its argument and prints what came of it, a line each.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(application.arguments().at(1)));
    qel::devices::init();
    using qel::devices::DeviceBroker;
    for (const QString &line :
         {qel::devices::version(), QLibraryInfo::location(QLibraryInfo::PluginsPath),
          DeviceBroker::availableDrivers().join("\n\t"), qtTrId("laboratory-ORIGIN")})
        std::printf("%s\v", qPrintable(line));
    return int(DeviceBroker::loadedPlugins().size());
}
