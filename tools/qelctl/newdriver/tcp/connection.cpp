#include "connection.h"

#include <QtCore/QStringList>
#include <QtNetwork/QTcpSocket>

using qel::devices::DeviceInfo;

// PROTOCOL: the addresses of the instruments, from wherever your users keep them. A serial number
// that only the instrument itself can tell stays empty, or is kept from the last time it was asked.
QList<DeviceInfo> Connection::instruments(const QString &driver)
{
    QList<DeviceInfo> instruments;
    const QStringList addresses = qEnvironmentVariable("QEL_@NAME@").split(QLatin1Char(';'));
    for (const QString &address : addresses) {
        if (!address.isEmpty()) {
            instruments << DeviceInfo(DeviceInfo::Network, driver, address,
                                      QStringLiteral("@name@ reader"), QString());
        }
    }
    return instruments;
}

void Connection::open(const QString &location)
{
    auto socket = std::make_unique<QTcpSocket>();
    connect(socket.get(), &QTcpSocket::connected, this, &Connection::opened);
    connect(socket.get(), &QTcpSocket::errorOccurred, this, [this, socket = socket.get()] {
        if (socket->state() == QTcpSocket::ConnectedState)
            emit gone();
        else
            emit failed();
    });
    const int colon = location.lastIndexOf(QLatin1Char(':'));
    socket->connectToHost(location.left(colon), quint16(location.mid(colon + 1).toUInt()));
    m_device = std::move(socket);
}

void Connection::close()
{
    // It may be in the middle of a signal.
    if (auto *socket = static_cast<QTcpSocket *>(m_device.release())) {
        socket->disconnect(this);
        socket->flush();
        socket->abort();
        socket->deleteLater();
    }
}

QIODevice *Connection::device() const
{
    return m_device.get();
}
