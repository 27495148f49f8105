#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>

/// A plugin that claims the interface id in its metadata, while its root object lists no interface.
/// The application's property "strangersGone" counts the deletions of the root object.
class StrangerPlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "laboratory.json")

public:
    ~StrangerPlugin() override
    {
        QCoreApplication *const application = QCoreApplication::instance();
        const int gone = application->property("strangersGone").toInt();
        application->setProperty("strangersGone", gone + 1);
    }
    void registerDrivers() override
    {
        qFatal("called without the interface");
    }
};

#include "stranger.moc"
