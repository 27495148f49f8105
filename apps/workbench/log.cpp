#include "log.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>

namespace qelworkbench {

namespace {

constexpr int mostLines = 5000;

QtMessageHandler previous = nullptr;

const char *levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    default:
        return "error";
    }
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QString line =
        QStringLiteral("%1  %2  %3: %4")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")),
                 QLatin1String(levelName(type)),
                 QLatin1String(context.category ? context.category : "default"), message);
    QMetaObject::invokeMethod(Log::instance(), "append", Qt::QueuedConnection,
                              Q_ARG(QString, line));
    if (previous && type != QtInfoMsg && type != QtDebugMsg)
        previous(type, context, message);
}

} // namespace

Log *Log::instance()
{
    static Log log;
    return &log;
}

Log::Log()
{
    previous = qInstallMessageHandler(&handle);
}

QStringList Log::lines() const
{
    return m_lines;
}

void Log::append(const QString &line)
{
    m_lines.append(line);
    if (m_lines.size() > mostLines)
        m_lines.removeFirst();
    Q_EMIT added(line);
}

} // namespace qelworkbench
