#ifndef QEL_CONFORMANCE_TIMELIMITS_H
#define QEL_CONFORMANCE_TIMELIMITS_H

#include <QtCore/QJsonObject>

namespace qel::conformance {

/// The times that the rules allow, in milliseconds.
struct Limits
{
    int call = 200;   ///< one call of a device or a driver; one hold-up of the event loop
    int open = 10000; ///< from open() to its outcome, and from close() to the closed device
    /// How long a run may show no sign of life: neither its ending nor progress that rises. Waiting
    /// for the user is not counted.
    int run = 120000;
    int quiet = 150;    ///< how long to listen for signals that must not come
    int late = 2000;    ///< how long after openChanged(true) features may still appear
    int silent = 15000; ///< how long the plugin may hold the event loop until it is killed

    QJsonObject toJson() const
    {
        return {{QStringLiteral("call"), call}, {QStringLiteral("open"), open},
                {QStringLiteral("run"), run},   {QStringLiteral("quiet"), quiet},
                {QStringLiteral("late"), late}, {QStringLiteral("silent"), silent}};
    }

    static Limits fromJson(const QJsonObject &json)
    {
        Limits limits;
        limits.call = json.value(QStringLiteral("call")).toInt(limits.call);
        limits.open = json.value(QStringLiteral("open")).toInt(limits.open);
        limits.run = json.value(QStringLiteral("run")).toInt(limits.run);
        limits.quiet = json.value(QStringLiteral("quiet")).toInt(limits.quiet);
        limits.late = json.value(QStringLiteral("late")).toInt(limits.late);
        limits.silent = json.value(QStringLiteral("silent")).toInt(limits.silent);
        return limits;
    }
};

} // namespace qel::conformance

#endif
