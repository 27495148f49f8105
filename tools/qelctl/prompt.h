#ifndef QELCTL_PROMPT_H
#define QELCTL_PROMPT_H

#include <qelfrontend/run.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSocketNotifier>
#include <QtCore/QString>

#include <memory>

namespace qelctl {

/// Passes requests for user action on to the user and the answers back to the run.
class Prompt : public QObject
{
    Q_OBJECT

public:
    enum class Policy {
        Ask,     ///< on the terminal; without one, the request is turned down
        Confirm, ///< confirmed without asking
        Abort,   ///< turned down without asking
    };

    explicit Prompt(Policy policy);
    ~Prompt() override;

    /// Has the request `actionId` of `run` answered. `action` is what the user is to do.
    void ask(qel::frontend::Run *run, int actionId, const QString &action);

private:
    void readAnswer();
    void answer(bool confirmed);

    Policy m_policy;
    std::unique_ptr<QSocketNotifier> m_input;
    QPointer<qel::frontend::Run> m_run;
    QString m_action;
    int m_actionId = -1;
    QByteArray m_line; // as far as it has been typed
};

} // namespace qelctl

#endif
