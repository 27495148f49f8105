#include "terminaltext.h"

#include "output.h"

#include <qelfrontend/frontend.h>

#include <algorithm>

#include <unistd.h>

namespace qelctl {

QStringList folded(const QString &text, int width, int hanging)
{
    int indent = 0;
    while (indent < text.size() && text.at(indent) == QLatin1Char(' '))
        ++indent;
    QStringList lines{text.left(indent)};
    bool isFirstWord = true;
    const QStringList words = text.mid(indent).split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (!isFirstWord && lines.constLast().size() + 1 + word.size() <= width) {
            lines.last() += QLatin1Char(' ') + word;
            continue;
        }
        if (!isFirstWord)
            lines.append(QString(indent + hanging, QLatin1Char(' ')));
        lines.last() += word;
        isFirstWord = false;
    }
    return lines;
}

QString messageLines(const QString &message)
{
    const bool isFolded = isatty(STDERR_FILENO);
    const int width = std::max(narrowestTerminal, terminalWidth(STDERR_FILENO));
    QStringList lines;
    const QStringList all = message.split(QLatin1Char('\n'));
    for (const QString &raw : all) {
        QString line = qel::frontend::printable(raw);
        if (!lines.isEmpty() && !line.startsWith(QLatin1Char(' ')))
            line.prepend(QStringLiteral("  "));
        lines += isFolded ? folded(line, width, 2) : QStringList(line);
    }
    return lines.join(QLatin1Char('\n'));
}

bool isTerminalDumb()
{
    const QByteArray terminal = qgetenv("TERM");
    return terminal.isEmpty() || terminal == "dumb";
}

} // namespace qelctl
