#ifndef QELCTL_INTERRUPT_H
#define QELCTL_INTERRUPT_H

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

namespace qelctl {

/// From now on Ctrl-C, a request to terminate and the end of the terminal make the process end at
/// once with Interrupted, except while there is an Interrupt to tell of them.
void catchInterrupts();

/// How long, in milliseconds, a run may take at most to obey a cancellation or its time limit.
constexpr int ladderTime = 10000;

/// Tells of the first Ctrl-C with a signal, from the event loop; the second one ends the process at
/// once. One instance at a time.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    Interrupt();
    ~Interrupt() override;

    /// Whether requested() has been emitted.
    bool wasRequested() const
    {
        return m_requested;
    }

signals:
    void requested();

private:
    QSocketNotifier m_notifier;
    bool m_requested = false;
};

} // namespace qelctl

#endif
