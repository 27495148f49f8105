#ifndef CONNECTION_H
#define CONNECTION_H

#include <qeldevices/deviceinfo.h>

#include <QtCore/QIODevice>
#include <QtCore/QList>
#include <QtCore/QObject>

#include <memory>

// The way to one instrument.
class Connection : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // The instruments there are, without asking them: a device may be using them. Each has the same
    // record every time. `driver` is the name of the driver.
    static QList<qel::devices::DeviceInfo> instruments(const QString &driver);

    // Begins to open; opened() or failed() comes later, unless close() comes first.
    void open(const QString &location);
    // Sends what has been written, without waiting for it, and lets go.
    void close();
    QIODevice *device() const;

signals:
    void opened();
    void failed();
    // Was open, and is lost.
    void gone();

private:
    std::unique_ptr<QIODevice> m_device;
};

#endif
