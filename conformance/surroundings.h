#ifndef QEL_CONFORMANCE_SURROUNDINGS_H
#define QEL_CONFORMANCE_SURROUNDINGS_H

#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <csignal>

namespace qel::conformance {

/// What a process shares with the plugins in it, at one moment.
class Surroundings
{
public:
    /// As they are now.
    Surroundings();

    // What is different now from what was noted, in words; empty when nothing is.
    QString localeChange() const;
    QString folderChange() const;
    QString environmentChange() const;
    QString signalChange() const;
    QString messageHandlerChange() const;

private:
    QByteArray m_cLocale;
    QLocale m_locale;
    QString m_folder;
    unsigned m_mask;
    QByteArrayList m_environment;
    QVector<void (*)(int)> m_handlers;
    QtMessageHandler m_messageHandler;
};

/// The threads of this process; 0 where the system does not tell.
int threadCount();
/// The files that this process has open; 0 where the system does not tell.
int openFileCount();

/// Has whatever is printed on the standard output of this process collected from now on.
void collectOutput();
/// The beginning of what has been collected.
QByteArray collectedOutput();

} // namespace qel::conformance

#endif
