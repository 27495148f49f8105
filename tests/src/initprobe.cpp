#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

#include <cstdio>

// Starts the library in the locale of its argument and prints what came of it.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(application.arguments().at(1)));
    qel::devices::init();
    for (const QString &line :
         {qel::devices::version(), qel::devices::DeviceBroker::availableDrivers().join("\n\t"),
          qtTrId("laboratory-ORIGIN") + ' ' + qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN")})
        std::printf("%s\v", qPrintable(line));
    return 0;
}
