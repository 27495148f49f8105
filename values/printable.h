/// @file
/// Text from outside, made fit for people's eyes.
#ifndef QELVALUES_PRINTABLE_H
#define QELVALUES_PRINTABLE_H

#include <QtCore/QString>

namespace qel::values {

/// `text`, which comes from outside, as one line that a terminal shows and does not act on: what is
/// no visible character, line ends and changes of the writing direction included, becomes U+FFFD.
QString printable(const QString &text);

} // namespace qel::values

#endif
