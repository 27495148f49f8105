#ifndef QELWORKBENCH_PLAINTEXT_H
#define QELWORKBENCH_PLAINTEXT_H

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace qelworkbench {

/// A result that is no plate, for people: a number, a date, or lines of names and values.
QString plainText(const QVariant &value);

} // namespace qelworkbench

#endif
