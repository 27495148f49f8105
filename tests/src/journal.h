#ifndef JOURNAL_H
#define JOURNAL_H

#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <functional>
#include <utility>

/// Writes down what happens, in order, while it lives: the library's messages, each as "type
/// category: text", and what the tests note themselves. Messages of other categories go to the
/// handler that was there before. They may nest, in one thread.
class Journal
{
public:
    Journal()
        : m_outer(std::exchange(s_current, this))
        , m_previous(m_outer ? m_outer->m_previous : qInstallMessageHandler(handle))
    { }
    ~Journal()
    {
        if (!m_outer)
            qInstallMessageHandler(m_previous);
        s_current = m_outer;
    }
    Q_DISABLE_COPY(Journal)

    static void note(const QString &text)
    {
        if (s_current)
            s_current->m_notes << text;
    }

    /// Called after each message of the library, while whoever wrote it waits.
    std::function<void()> onMessage;

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
            s_current->m_notes << QStringLiteral("%1 %2: %3").arg(types[type], category, text);
        else
            s_current->m_previous(type, context, text);
        if (s_current->onMessage)
            s_current->onMessage();
    }

    static inline Journal *s_current = nullptr;
    Journal *m_outer;
    QtMessageHandler m_previous;
    QStringList m_notes;
};

#endif
