#include "transportlog.h"

#include <qeldevices/logging.h>

#include <QtCore/QElapsedTimer>

#include <grpc/support/log.h>

#include <mutex>
#include <utility>

namespace qel::rpc {

constexpr int mostInASecond = 10;

namespace {

struct TransportLog
{
    std::mutex mutex;
    std::function<void(const QString &)> receive;
    QElapsedTimer second; // in which these are counted
    int told = 0;
    int untold = 0;
};

} // namespace

// Never deleted, on purpose: the threads of gRPC go on to the end of the process.
static TransportLog *transportLog()
{
    static auto *const log = new TransportLog;
    return log;
}

static void onTransportLog(gpr_log_func_args *said)
{
    if (said->severity != GPR_LOG_SEVERITY_ERROR)
        return;
    TransportLog *const log = transportLog();
    std::unique_lock lock(log->mutex);
    if (!log->second.isValid() || log->second.elapsed() >= 1000) {
        log->second.start();
        log->told = 0;
    }
    if (++log->told > mostInASecond) {
        ++log->untold;
        return;
    }
    QString what = QString::fromUtf8(said->message);
    if (const int untold = std::exchange(log->untold, 0))
        what += QStringLiteral(" (and %1 more before)").arg(untold);
    const auto receive = log->receive;
    lock.unlock();
    receive(what);
}

void hearTransport(std::function<void(const QString &what)> receive)
{
    {
        TransportLog *const log = transportLog();
        const std::lock_guard lock(log->mutex);
        log->receive = std::move(receive);
    }
    gpr_set_log_function(&onTransportLog);
}

void hushTransport()
{
    if (!qEnvironmentVariableIsSet("GRPC_VERBOSITY"))
        hearTransport([](const QString &what) { qCDebug(LogCDriver) << "transport:" << what; });
}

} // namespace qel::rpc
