#ifndef FRONTEND_PROBLEMS_H
#define FRONTEND_PROBLEMS_H

#include <qelvalues/problem.h>

#include <QtCore/QString>

namespace qel::frontend {

/// What is wrong with a value, as a sentence in the user's language.
QString explain(const values::Problem &problem);

} // namespace qel::frontend

#endif
