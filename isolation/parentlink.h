#ifndef QEL_ISOLATION_PARENTLINK_H
#define QEL_ISOLATION_PARENTLINK_H

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <optional>

namespace qel::isolation {

/// The child's end of a ChildProcess: to be made once, before any foreign code runs in the process.
///
/// It takes the standard input and output for itself. What foreign code prints goes to the standard
/// error, and what it reads is at its end.
class ParentLink
{
public:
    ParentLink();
    ~ParentLink();
    Q_DISABLE_COPY(ParentLink)

    /// Sends a message, waiting for the parent to take it. False when the parent is gone.
    bool send(const QByteArray &message);
    /// Waits for the next message. Nothing when the parent has nothing more to say or is gone.
    std::optional<QByteArray> receive();

    /// Becomes readable when there is a message, or when there can be none any more.
    int descriptor() const;

    /// Has the process killed when the thread that has started it ends. For children that hold
    /// nothing that must be put away.
    void dieWithParent();

private:
    bool read(char *data, qint64 size);

    int m_input;
    int m_output;
};

} // namespace qel::isolation

#endif
