#ifndef JOURNAL_H
#define JOURNAL_H

#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <utility>

/// Writes down what happens, in order, while it lives: the library's messages, each as "type
/// category: text", and what the tests note themselves. Messages of other categories go to the
/// handler that was there before. One at a time, in one thread.
class Journal
{
public:
    Journal()
        : m_previous(qInstallMessageHandler(handle))
    {
        s_current = this;
    }
    ~Journal()
    {
        qInstallMessageHandler(m_previous);
        s_current = nullptr;
    }
    Q_DISABLE_COPY(Journal)

    static void note(const QString &text)
    {
        if (s_current)
            s_current->m_notes << text;
    }

    /// The notes since the last call.
    QStringList take()
    {
        return std::exchange(m_notes, {});
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        static const char *const types[] = {"debug", "warning", "critical", "fatal", "info"};
        const QString category = QString::fromLatin1(context.category);
        if (category.startsWith(QLatin1String("qel.")))
            note(QStringLiteral("%1 %2: %3").arg(types[type], category, text));
        else
            s_current->m_previous(type, context, text);
    }

    static inline Journal *s_current = nullptr;
    QtMessageHandler m_previous;
    QStringList m_notes;
};

#endif
