#include "connection.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QTimer>

#include <algorithm>

using qel::devices::DeviceInfo;

// PROTOCOL: plays an instrument until you put the real connection here: open a port, a socket or a
// library's handle behind a QIODevice.
class PlayedInstrument : public QIODevice
{
public:
    PlayedInstrument()
    {
        open(ReadWrite | Unbuffered);
        m_wells.setInterval(2);
        connect(&m_wells, &QTimer::timeout, this, &PlayedInstrument::measureWell);
    }
    bool isSequential() const override
    {
        return true;
    }
    qint64 bytesAvailable() const override
    {
        return m_answers.size() + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const int count = int(qMin<qint64>(maximum, m_answers.size()));
        std::copy_n(m_answers.cbegin(), count, data);
        m_answers.remove(0, count);
        return count;
    }

    qint64 writeData(const char *data, qint64 count) override
    {
        const QByteArray line = QByteArray(data, int(count)).split('*').constFirst();
        QTimer::singleShot(20, this, [this, line] { obey(line.split(' ')); });
        return count;
    }

private:
    void obey(const QByteArrayList &command)
    {
        const QByteArray &verb = command.constFirst();
        if (verb == "ID?")
            answer("ID @name@-1 1.0");
        else if (verb == "TEMP?")
            answer("TEMP 21.5");
        else if (verb == "CALIBRATE")
            answer("CALIBRATED");
        else if (verb == "MEASURE")
            measure(command.mid(1).size());
        else
            m_wells.stop();
    }

    void measure(int reads)
    {
        m_left = reads * 96;
        m_well = 0;
        m_wells.start();
    }

    void measureWell()
    {
        if (m_well == m_left) {
            m_wells.stop();
            return answer("END " + QByteArray::number(m_well));
        }
        answer("WELL " + QByteArray::number(m_well / 96) + ' ' + QByteArray::number(m_well % 96)
               + ' ' + QByteArray::number(QRandomGenerator::global()->bounded(3.0), 'f', 3));
        ++m_well;
    }

    void answer(const QByteArray &payload)
    {
        char sum = 0;
        for (const char byte : payload)
            sum = char(sum ^ byte);
        m_answers += payload + '*' + QByteArray(1, sum).toHex() + '\n';
        emit readyRead();
    }

    QByteArray m_answers;
    QTimer m_wells;
    int m_left = 0;
    int m_well = 0;
};

QList<DeviceInfo> Connection::instruments(const QString &driver)
{
    return {DeviceInfo(DeviceInfo::Simulator, driver, QStringLiteral("desk"),
                       QStringLiteral("@name@ reader"), QStringLiteral("0001"))};
}

void Connection::open(const QString &)
{
    m_device = std::make_unique<PlayedInstrument>();
    QTimer::singleShot(0, m_device.get(), [this] { emit opened(); });
}

void Connection::close()
{
    // It may be in the middle of a signal.
    if (QIODevice *device = m_device.release()) {
        device->disconnect(this);
        device->deleteLater();
    }
}

QIODevice *Connection::device() const
{
    return m_device.get();
}
