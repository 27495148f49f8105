// Loads one driver plugin and serves its drivers to the process that has started it.
#include <deviceserver.h>
#include <hostprocess.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <unistd.h>

// The process must not outlive the one it serves, nor hold what that one has open, nor leave a core
// file in the folder where the user happens to be.
static bool settleIn(pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        return false;
    ::close_range(qel::rpc::hostTrail + 1, ~0U, 0);
    // What a driver starts must not keep the connection.
    ::fcntl(qel::rpc::hostSocket, F_SETFD, FD_CLOEXEC);
    if (!qel::rpc::HostTrail::leaveIn(qel::rpc::hostTrail))
        return false;
    ::close(qel::rpc::hostTrail);
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // What a driver uses may know no more; the one it serves may have raised it.
    rlimit files = {};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = std::min<rlim_t>(files.rlim_cur, FD_SETSIZE);
    ::setrlimit(RLIMIT_NOFILE, &files);
    std::signal(SIGPIPE, SIG_IGN);
    return true;
}

int main(int argc, char *argv[])
{
    struct stat connection = {};
    if (argc != 3 || ::fstat(qel::rpc::hostSocket, &connection) != 0
        || !S_ISSOCK(connection.st_mode)) {
        std::fputs(
            "qeldevices-host: this program is started by applications, to have a driver in a "
            "process of its own\n",
            stderr);
        return 2;
    }
    if (!settleIn(pid_t(std::atol(argv[2]))))
        return EXIT_FAILURE;

    QCoreApplication application(argc, argv);
    // Errors of devices are logged at the near end, too; a plugin that fails to load is not.
    QLoggingCategory::setFilterRules(
        QStringLiteral("qel.devices*.info=false\nqel.devices*.debug=false"));
    {
        const qel::rpc::TrailMark mark(QString(), QStringLiteral("loading"));
        qel::devices::DeviceBroker::loadPlugin(QFile::decodeName(argv[1]));
    }
    QLoggingCategory::setFilterRules(QStringLiteral(
        "qel.devices=false\nqel.devices.driver.info=false\nqel.devices.driver.debug=false"));

    qel::rpc::DeviceServer server;
    QObject::connect(&server, &qel::rpc::DeviceServer::watcherLeft, &application,
                     &QCoreApplication::quit);
    server.serveSocket(qel::rpc::hostSocket);

    // A driver that holds the event loop up holds this up as well.
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &qel::rpc::HostTrail::beat);
    pulse.setTimerType(Qt::VeryCoarseTimer);
    pulse.start(qel::rpc::hostPulse);
    qel::rpc::HostTrail::beat();
    return QCoreApplication::exec();
}
