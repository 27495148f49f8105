#ifndef RPC_HOSTPROCESS_H
#define RPC_HOSTPROCESS_H

#include "hosttrail.h"

#include <qelisolation/childprocess.h>

#include <QtCore/QString>

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace qel::rpc {

/// The socket by which a host serves the process that has started it.
constexpr int hostSocket = 3;

/// A process of the program qeldevices-host, connected by a pair of sockets that nobody else can
/// reach.
///
/// It is in a process group of its own, so that Ctrl-C ends the application and not what the
/// application is about to close in good order.
class HostProcess
{
public:
    HostProcess() = default;
    /// Ends the process, which gets a moment to do so by itself.
    ~HostProcess();
    HostProcess(const HostProcess &) = delete;
    HostProcess &operator=(const HostProcess &) = delete;

    /// Starts the host of one plugin file.
    /// @return the near end of the connection, the caller's from now on; or -1, with a sentence in
    /// `problem`
    int start(const QString &program, const QString &pluginFile, QString *problem);

    /// Has the process end now.
    void kill();
    /// How the process has ended; nothing while it runs or before it was started. The end is asked
    /// for, not waited for.
    std::optional<isolation::Ending> end();
    /// What the process does, or has done last.
    const HostTrail &trail() const;
    /// 0 while there is none.
    pid_t id() const;

private:
    bool waitForEnd(std::chrono::milliseconds time);

    pid_t m_id = 0;
    bool m_isKilled = false;
    std::optional<isolation::Ending> m_end;
    HostTrail m_trail;
};

/// Where qeldevices-host is: named by QELDEVICES_HOST, or as libexecFile() finds it. Empty when it
/// is nowhere.
QString hostProgram();

} // namespace qel::rpc

#endif
