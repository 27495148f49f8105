// Starts the library, and does nothing with it.
#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    qel::devices::init();
    return qel::devices::DeviceBroker::loadedPlugins().isEmpty() ? 1 : 0;
}
