#include "problems.h"

#include "messages_p.h"

namespace qel::frontend {

QString explain(const values::Problem &problem)
{
    constexpr int longest = 1000; // a list of settings or choices, for instance
    values::Problem fit = problem;
    fit.path = excerpt(fit.path);
    for (QString &detail : fit.details)
        detail = excerpt(detail, longest);
    return values::filledIn(message("qelfrontend-" + values::problemId(fit.code)), fit);
}

} // namespace qel::frontend
