// The plugin itself. Where no driver is isolated, nothing is loaded that would use a process.
#include "pluginfiles.h"

#include <libexec.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace qel::isolated {

class Plugin : public QObject, public devices::DevicePlugin
{
    Q_OBJECT
    Q_INTERFACES(qel::devices::DevicePlugin)
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json")

public:
    void registerDrivers() override
    {
        if (!pluginFiles().isEmpty())
            rpc::registerDriversOf(QStringLiteral("isolation-driver.so"));
    }

    /// What became of each isolated plugin file; waits some seconds for those that are starting.
    ///
    /// Maps with "file", its "drivers" as far as they are known, and a "state": "serving",
    /// "refused" (it is no driver plugin, or does not load), "silent" (the process does not answer
    /// or was ended because of that), "crashed" or "exited" with the signal or the exit code as
    /// "code", "not-started". "trouble" is what happened to the process, in English. Of the last
    /// call into a "driver", "call" is the name, "acme: open()" for instance, and "hasReturned"
    /// says whether the process was still in it. "endings" counts the processes that have ended,
    /// and "lastTrouble" is what happened to the last of them, in English.
    Q_INVOKABLE QVariantList hosts() const
    {
        QVariantList all;
        QObject *isolation = QCoreApplication::instance()->findChild<QObject *>(
            QLatin1String(isolationName), Qt::FindDirectChildrenOnly);
        if (isolation)
            QMetaObject::invokeMethod(isolation, "hosts", Q_RETURN_ARG(QVariantList, all));
        return all;
    }
};

} // namespace qel::isolated

#include "plugin.moc"
