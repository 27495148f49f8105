#include "statusline.h"

#include "output.h"
#include "terminaltext.h"
#include "tool.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace qelctl {

enum class Status { Nothing, Progress, Question };
static Status shown = Status::Nothing;
static bool isProgressHidden = false;
static int shownWidth = 0; // of the progress

static void print(const QByteArray &characters, Status status)
{
    std::fwrite(characters.constData(), 1, size_t(characters.size()), stderr);
    std::fflush(stderr);
    shown = status;
}

// Empty as long as it is anybody's guess.
static QString remainingTime(double progress, qint64 elapsed)
{
    if (progress < 0.02)
        return {};
    const int seconds = int(double(elapsed) * (1 - progress) / progress / 1000 + 0.5);
    return text(
        "qelctl-progress-remaining",
        QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0')));
}

// Overwrites the progress with `line` and leaves the cursor behind it. Spaces do what the escape
// sequence does, for users who want none.
static void replaceProgress(const QString &line, Status status)
{
    const int rest = std::max(0, shownWidth - line.size());
    const QByteArray clearing = globalOptions().color == Color::Never
        ? QByteArray(rest, ' ') + QByteArray(rest, '\b')
        : QByteArray("\x1b[K");
    print('\r' + line.toUtf8() + clearing, status);
    shownWidth = line.size();
}

void hideProgress()
{
    isProgressHidden = true;
}

// A line that does not fit would scroll instead of being replaced. 0: nothing can be shown.
static int widthOfStatus()
{
    const int width = terminalWidth(STDERR_FILENO) - 1;
    const bool isShown = !isProgressHidden && isatty(STDERR_FILENO) && !isTerminalDumb()
        && width >= 20 && shown != Status::Question;
    return isShown ? width : 0;
}

void showNext(const QString &line)
{
    if (const int width = widthOfStatus())
        replaceProgress(line.left(width), Status::Progress);
}

void showProgress(double progress, qint64 elapsed, int number, int count)
{
    const int width = widthOfStatus();
    if (width == 0)
        return;
    const double share = std::clamp(progress, 0.0, 1.0);
    const int barWidth = std::min(40, width - 10);
    const int filled = int(share * barWidth);
    const QString line =
        QStringLiteral("%5[%1%2] %3 %  %4")
            .arg(QString(filled, QLatin1Char('#')), QString(barWidth - filled, QLatin1Char(' ')),
                 QString::number(int(share * 100)).rightJustified(3), remainingTime(share, elapsed),
                 count > 1 ? QStringLiteral("%1/%2 ").arg(number).arg(count) : QString());
    replaceProgress(line.left(width), Status::Progress);
}

void showQuestion(const QString &question)
{
    clearStatus();
    print(messageLines(question).toUtf8() + ' ', Status::Question);
}

void questionAnswered()
{
    shown = Status::Nothing;
}

void clearStatus()
{
    if (shown == Status::Progress)
        replaceProgress(QString(), Status::Nothing);
    else if (shown == Status::Question)
        print("\n", Status::Nothing);
}

} // namespace qelctl
