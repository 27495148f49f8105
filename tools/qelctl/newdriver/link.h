#ifndef LINK_H
#define LINK_H

#include <QtCore/QByteArray>
#include <QtCore/QTimer>

// The way to the instrument.
//
// PROTOCOL: this one only plays an instrument that answers after a moment. Put the real connection
// here, a QSerialPort for instance; it is asynchronous, too: write in send(), emit answered() when
// a whole answer has arrived. Never wait.
class Link : public QObject
{
    Q_OBJECT

public:
    explicit Link(const QString &location, QObject *parent);

    // Sends a command; its answer comes with answered(), later.
    void send(const QByteArray &command);
    // Forgets the command that is under way.
    void cancel();

signals:
    void answered(const QByteArray &answer);

private:
    QString m_location;
    QByteArray m_answer;
    QTimer m_delay;
};

#endif
