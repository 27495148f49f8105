#ifndef QELWORKBENCH_LOG_H
#define QELWORKBENCH_LOG_H

#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace qelworkbench {

/// The last messages of the library, the drivers and the window, for people to read. Messages of
/// any thread are taken; they still go where they went before.
class Log : public QObject
{
    Q_OBJECT

public:
    /// Begins to listen; the one object of the process.
    static Log *instance();

    /// One message a line, the oldest first.
    QStringList lines() const;

Q_SIGNALS:
    void added(const QString &line);

private:
    Log();
    Q_INVOKABLE void append(const QString &line);

    QStringList m_lines;
};

} // namespace qelworkbench

#endif
