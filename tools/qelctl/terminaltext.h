#ifndef QELCTL_TERMINALTEXT_H
#define QELCTL_TERMINALTEXT_H

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace qelctl {

/// Below this, texts are folded no further.
constexpr int narrowestTerminal = 40;

/// `text` in lines of at most `width` characters, broken between words; a longer word stands in a
/// line of its own. Every line but the first is indented like the first, and by `hanging` more.
QStringList folded(const QString &text, int width, int hanging = 0);

/// A message for standard error: harmless for a terminal and folded for its width. Line ends stay;
/// what follows one is indented.
QString messageLines(const QString &message);

/// Whether terminals can do nothing but show one line after another.
bool isTerminalDumb();

} // namespace qelctl

#endif
