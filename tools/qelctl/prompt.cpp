#include "prompt.h"

#include "output.h"
#include "tool.h"

#include <cstdio>

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
    m_actionId = actionId;
    clearProgress();
    const bool canAsk = isatty(STDIN_FILENO) && isatty(STDERR_FILENO);
    if (m_policy == Policy::Ask && canAsk) {
        const QByteArray question = text("qelctl-prompt", action).toLocal8Bit() + ' ';
        std::fwrite(question.constData(), 1, size_t(question.size()), stderr);
        std::fflush(stderr);
        m_input = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
        connect(m_input.get(), &QSocketNotifier::activated, this, &Prompt::readAnswer);
        return;
    }
    complain(action);
    if (m_policy == Policy::Ask)
        complain(text("qelctl-prompt-no-terminal"));
    answer(m_policy == Policy::Confirm);
}

// A terminal hands over whole lines. An empty one and a yes confirm; anything else, the end of the
// input included, does not.
void Prompt::readAnswer()
{
    m_input->setEnabled(false);
    char buffer[256];
    const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
    const QString line = size > 0 ? QString::fromLocal8Bit(buffer, int(size)).trimmed().toLower()
                                  : QStringLiteral("end");
    const QStringList yes{QString(), QStringLiteral("y"), QStringLiteral("yes"),
                          QStringLiteral("j"), QStringLiteral("ja")};
    answer(yes.contains(line));
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
