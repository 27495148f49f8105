#include "trail.h"

#include <cstdio>

namespace qel::frontend {

static std::array<char, 160> trail;

TrailMark::TrailMark(const QString &driver, const char *call)
    : m_outer(trail)
{
    std::snprintf(trail.data(), trail.size(), "%s: %s", driver.toUtf8().constData(), call);
}

TrailMark::~TrailMark()
{
    trail = m_outer;
}

const char *TrailMark::current()
{
    return trail.data();
}

} // namespace qel::frontend
