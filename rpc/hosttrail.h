#ifndef RPC_HOSTTRAIL_H
#define RPC_HOSTTRAIL_H

#include <QtCore/QString>

#include <chrono>

namespace qel::rpc {

/// The memory of the trail, for the process that leaves it.
constexpr int hostTrail = 4;

/// How often a host shows life.
constexpr std::chrono::milliseconds hostPulse{1000};

struct TrailPage;

/// The last call into a driver that a process has made.
struct LastCall
{
    QString driver; ///< empty when the call is none of a driver's
    QString call;   ///< for instance "open()"; empty before the first one
    bool hasReturned = false;

    /// For instance "acme: open()"; empty before the first call.
    QString name() const;
    /// For instance "in acme: open()" or "after acme: open()"; empty before the first call.
    QString text() const;
};

/// What a host is doing, in memory that it shares with the process that has started it, where it
/// can be read however the host has ended.
class HostTrail
{
public:
    HostTrail() = default;
    ~HostTrail();
    HostTrail(const HostTrail &) = delete;
    HostTrail &operator=(const HostTrail &) = delete;

    /// Makes the memory for a new host and forgets what the former one has left.
    /// @return a descriptor for the host, the caller's; or -1
    int renew();
    /// How often the host has shown life. 0 until it has loaded its plugin.
    quint32 beats() const;
    LastCall lastCall() const;

    /// For the host: leaves its own trail in the memory behind `descriptor`. False when there is
    /// none.
    static bool leaveIn(int descriptor);
    /// For the host: shows life.
    static void beat();

private:
    void forget();

    TrailPage *m_page = nullptr;
};

/// Marks, while it lives, that the process is inside a call into a driver. Marks may nest. Costs
/// nothing worth mentioning, also where nobody reads the trail.
class TrailMark
{
public:
    /// @param driver the driver's name; empty where it is not known
    /// @param call the call, for instance "open()"
    TrailMark(const QString &driver, const QString &call);
    ~TrailMark();
    TrailMark(const TrailMark &) = delete;
    TrailMark &operator=(const TrailMark &) = delete;

private:
    const LastCall m_outer;
};

} // namespace qel::rpc

#endif
