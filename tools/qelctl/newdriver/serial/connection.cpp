#include "connection.h"

#include <QtCore/QStringList>
#include <QtSerialPort/QSerialPort>
#include <QtSerialPort/QSerialPortInfo>

using qel::devices::DeviceInfo;

// PROTOCOL: the ports with the vendor and product identifier of the instrument's USB adapter. The
// environment variable adds others.
QList<DeviceInfo> Connection::instruments(const QString &driver)
{
    QList<DeviceInfo> instruments;
    const auto add = [&](const QString &port, const QString &serial) {
        instruments << DeviceInfo(DeviceInfo::Serial, driver, port, QStringLiteral("@name@ reader"),
                                  serial);
    };
    const QStringList named = qEnvironmentVariable("QEL_@NAME@").split(QLatin1Char(';'));
    for (const QString &port : named) {
        if (!port.isEmpty())
            add(port, QString());
    }
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        if (port.vendorIdentifier() == 0xffff && port.productIdentifier() == 0xffff)
            add(port.systemLocation(), port.serialNumber());
    }
    return instruments;
}

void Connection::open(const QString &location)
{
    auto port = std::make_unique<QSerialPort>();
    port->setPortName(location);
    port->setBaudRate(QSerialPort::Baud115200);           // PROTOCOL
    const bool isOpen = port->open(QIODevice::ReadWrite); // takes no time, and the port's lock
    connect(port.get(), &QSerialPort::errorOccurred, this,
            [this](QSerialPort::SerialPortError error) {
                if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError)
                    emit gone();
            });
    QMetaObject::invokeMethod(
        port.get(), [this, isOpen] { isOpen ? emit opened() : emit failed(); },
        Qt::QueuedConnection);
    m_device = std::move(port);
}

void Connection::close()
{
    // It may be in the middle of a signal.
    if (auto *port = static_cast<QSerialPort *>(m_device.release())) {
        port->disconnect(this);
        port->flush();
        port->close();
        port->deleteLater();
    }
}

QIODevice *Connection::device() const
{
    return m_device.get();
}
