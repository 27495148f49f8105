#ifndef ISOLATION_ISOLATION_H
#define ISOLATION_ISOLATION_H

#include <QtCore/QList>
#include <QtCore/QObject>

namespace qel::rpc {
class DriverHost;
}

namespace qel::isolated {

/// The processes of all plugin files in the folders for isolated drivers.
class Isolation : public QObject
{
public:
    /// The one of this process. It belongs to the application object.
    static Isolation *instance();

    /// Registers the drivers of all plugin files that have answered within a second, and those of
    /// the others when they answer.
    void registerDrivers();

private:
    using QObject::QObject;

    QList<rpc::DriverHost *> m_hosts;
};

} // namespace qel::isolated

#endif
