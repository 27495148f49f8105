#ifndef QELCTL_INTERRUPT_H
#define QELCTL_INTERRUPT_H

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

namespace qelctl {

/// Tells of the first Ctrl-C (or a request to terminate) with a signal, from the event loop. The
/// second one ends the process at once. One instance at a time.
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
