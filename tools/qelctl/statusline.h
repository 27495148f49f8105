#ifndef QELCTL_STATUSLINE_H
#define QELCTL_STATUSLINE_H

#include <QtCore/QString>

namespace qelctl {

/// @file
/// The last line of the terminal behind standard error: how far a run is, or a question.

/// From now on showProgress() does nothing.
void hideProgress();

/// Shows, if standard error is a terminal that can replace text, how far a run is: a bar, the
/// percentage, the time it will probably still take, and which of `count` runs it is. `elapsed` is
/// in milliseconds.
void showProgress(double progress, qint64 elapsed, int number = 1, int count = 1);

/// Shows, in the same way, what is waited for.
void showNext(const QString &line);

/// Shows a question, with the cursor behind it.
void showQuestion(const QString &question);
/// The user has ended the line of the question.
void questionAnswered();

/// Makes room for a line of its own: removes the progress bar, leaves a question behind.
void clearStatus();

} // namespace qelctl

#endif
