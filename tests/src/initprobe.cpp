#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

#include <cstdio>
#include <memory>

// Starts the library in the locale of its argument, without an application object where that is
// "none", and prints what came of it.
int main(int argc, char **argv)
{
    const QString locale = QString::fromLatin1(argv[1]);
    const auto application =
        locale == "none" ? nullptr : std::make_unique<QCoreApplication>(argc, argv);
    QLocale::setDefault(QLocale(locale));
    qel::devices::init();
    for (const QString &line :
         {qel::devices::version(), qel::devices::DeviceBroker::availableDrivers().join("\n\t"),
          qtTrId("laboratory-ORIGIN") + ' ' + qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN")})
        std::printf("%s\v", qPrintable(line));
    return 0;
}
