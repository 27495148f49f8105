#include "problems.h"

#include "messages_p.h"

namespace qel::frontend {

QString explain(const values::Problem &problem)
{
    values::Problem fit = problem;
    fit.path = printable(fit.path);
    for (QString &detail : fit.details)
        detail = printable(detail);
    return values::filledIn(message("qelfrontend-" + values::problemId(fit.code)), fit);
}

} // namespace qel::frontend
