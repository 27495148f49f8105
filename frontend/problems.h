#ifndef QELFRONTEND_PROBLEMS_H
#define QELFRONTEND_PROBLEMS_H

#include "export.h"

#include <qelvalues/problem.h>

#include <QtCore/QString>

namespace qel::frontend {

/// What is wrong with a value, as a sentence in the user's language.
QELFRONTEND_EXPORT QString explain(const values::Problem &problem);

} // namespace qel::frontend

#endif
