#include "link.h"

Link::Link(const QString &location, QObject *parent)
    : QObject(parent)
    , m_location(location)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(50);
    connect(&m_delay, &QTimer::timeout, this, [this] { emit answered(m_answer); });
}

void Link::send(const QByteArray &command)
{
    m_answer = command == "temperature?" ? QByteArray("21.5") : QByteArray("ok");
    m_delay.start();
}

void Link::cancel()
{
    m_delay.stop();
}
