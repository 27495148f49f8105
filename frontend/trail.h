#ifndef QELFRONTEND_TRAIL_H
#define QELFRONTEND_TRAIL_H

#include "export.h"

#include <QtCore/QString>

#include <array>

namespace qel::frontend {

/// Marks, while it lives, that the process is inside a call into a driver, so that whoever must end
/// a process that crashed or hangs can say where. Marks may nest.
class QELFRONTEND_EXPORT TrailMark
{
public:
    /// @param driver the driver's name, or that of what stands for it
    /// @param call the call, for instance "open()"
    TrailMark(const QString &driver, const char *call);
    ~TrailMark();
    TrailMark(const TrailMark &) = delete;
    TrailMark &operator=(const TrailMark &) = delete;

    /// The innermost mark, for instance "acme: open()", in UTF-8; empty outside of all. May be
    /// called from a signal handler; valid until a mark comes or goes.
    static const char *current();

private:
    std::array<char, 160> m_outer;
};

} // namespace qel::frontend

#endif
