#ifndef ISOLATION_ISOLATION_H
#define ISOLATION_ISOLATION_H

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <memory>

namespace qel::rpc {
class DriverHost;
}

namespace qel::devices {
class DeviceDriver;
}

namespace qel::isolated {

/// The processes of all plugin files in the folders for isolated drivers.
class Isolation : public QObject
{
    Q_OBJECT

public:
    /// The one of this process. It belongs to the application object.
    static Isolation *instance();

    /// Registers the drivers of all plugin files that have answered within a second, and those of
    /// the others when they answer.
    void registerDrivers();

    /// What Plugin::hosts() says.
    Q_INVOKABLE QVariantList hosts();

private:
    using QObject::QObject;

    void noteRegistered(rpc::DriverHost *host);
    void warnOfReplaced();

    QList<rpc::DriverHost *> m_hosts;
    // As registered; forgotten when the start-up is over.
    QHash<QString, std::shared_ptr<devices::DeviceDriver>> m_registered;
};

} // namespace qel::isolated

#endif
