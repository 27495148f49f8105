#include "mutants.h"

#ifndef METADATA_FILE
#    define METADATA_FILE "plugin.json"
#endif
#ifndef INTERFACE_ID
#    define INTERFACE_ID QelDevicePlugin_iid
#endif

class MutantPlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID INTERFACE_ID FILE METADATA_FILE)
#ifndef WITHOUT_INTERFACE
    Q_INTERFACES(qel::devices::DevicePlugin)
#endif

public:
    void registerDrivers() override
    {
        const QString name = mutantName();
        if (name == QLatin1String("104-no-driver"))
            return;
        if (name == QLatin1String("105-registers-once") && m_calls++ > 0)
            qFatal("registered twice");
        qel::devices::DeviceBroker::addDriver(makeDriver(name));
    }

private:
    int m_calls = 0;
};

#include "plugin.moc"
