#include "prompt.h"

#include "statusline.h"
#include "tool.h"

#include <termios.h>
#include <unistd.h>

namespace qelctl {

using qel::frontend::Run;

Prompt::Prompt(Policy policy)
    : m_policy(policy)
{ }

Prompt::~Prompt() = default;

void Prompt::ask(Run *run, int actionId, const QString &action)
{
    m_run = run;
    m_action = action;
    m_actionId = actionId;
    const bool canAsk = isatty(STDIN_FILENO) && isatty(STDERR_FILENO);
    if (m_policy == Policy::Ask && canAsk) {
        // What was typed before the question answers something else.
        tcflush(STDIN_FILENO, TCIFLUSH);
        m_line.clear();
        showQuestion(text("qelctl-prompt", action));
        if (!m_input) {
            m_input = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
            connect(m_input.get(), &QSocketNotifier::activated, this, &Prompt::readAnswer);
        }
        m_input->setEnabled(true);
        return;
    }
    complain(action);
    if (m_policy == Policy::Ask)
        complain(text("qelctl-prompt-no-terminal"));
    answer(m_policy == Policy::Confirm);
}

// The end of the input is a no; what is neither a yes nor a no, such as a slip of the finger, is
// asked again. A line may come in several parts.
void Prompt::readAnswer()
{
    m_input->setEnabled(false);
    char buffer[256];
    const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
    if (size <= 0)
        return answer(false);
    m_line.append(buffer, int(size));
    if (!m_line.contains('\n')) {
        m_input->setEnabled(true);
        return;
    }
    questionAnswered();
    const QString line = QString::fromLocal8Bit(m_line).trimmed().toLower();
    const QStringList yes{QString(), QStringLiteral("y"), QStringLiteral("yes"),
                          QStringLiteral("j"), QStringLiteral("ja")};
    const QStringList no{QStringLiteral("n"), QStringLiteral("no"), QStringLiteral("nein")};
    if (yes.contains(line))
        answer(true);
    else if (no.contains(line))
        answer(false);
    else if (m_run)
        ask(m_run, m_actionId, m_action);
}

void Prompt::answer(bool confirmed)
{
    if (!m_run)
        return;
    if (confirmed)
        m_run->confirmAction(m_actionId);
    else
        m_run->abortAction(m_actionId);
}

} // namespace qelctl
