// The server of the instruments of this machine, and what its keeper does with it.
#include "address.h"
#include "clients.h"
#include "daemon.h"
#include "identity.h"

#include <transportlog.h>

#include <qeldevices/qeldevices_global.h>
#include <qelvalues/printable.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLockFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSocketNotifier>
#include <QtCore/QStandardPaths>
#include <QtCore/QSysInfo>
#include <QtCore/QUuid>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qel::server {

static const char systemState[] = "/var/lib/qeldevicesd";
static const char systemSocket[] = "/run/qeldevicesd/socket";
constexpr int defaultPort = 7735;

enum ExitCode { Done = 0, Failed = 1, BadUsage = 2 };

static int fail(ExitCode code, const QString &message)
{
    std::fprintf(stderr, "qeldevicesd: %s\n", message.toUtf8().constData());
    return code;
}

// Root keeps the server of the system, everybody else one of their own.
static bool isSystemServer()
{
    return ::geteuid() == 0 || qEnvironmentVariableIsSet("STATE_DIRECTORY");
}

static QString stateFolder(const QCommandLineParser &line)
{
    if (line.isSet(QStringLiteral("state")))
        return QDir(line.value(QStringLiteral("state"))).absolutePath();
    return isSystemServer() ? QString::fromLatin1(systemState)
                            : QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QStringLiteral("/qeldevicesd");
}

static QString socketFile(const QCommandLineParser &line)
{
    if (line.isSet(QStringLiteral("socket")))
        return QDir().absoluteFilePath(line.value(QStringLiteral("socket")));
    return isSystemServer() ? QString::fromLatin1(systemSocket)
                            : QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)
            + QStringLiteral("/qeldevices/socket");
}

static QStringList pluginFolders(const QCommandLineParser &line)
{
    const QStringList given = line.values(QStringLiteral("plugins"));
    if (!given.isEmpty())
        return given;
    QStringList folders;
    for (const QString &parent : {QCoreApplication::applicationDirPath(),
                                  QLibraryInfo::location(QLibraryInfo::PluginsPath)}) {
        folders += {parent + QStringLiteral("/devicedrivers"),
                    parent + QStringLiteral("/devicedrivers-isolated")};
    }
    return folders;
}

static int signalEnds[2];

static void onSignal(int)
{
    const char any = 0;
    [[maybe_unused]] const auto written = ::write(signalEnds[0], &any, 1);
}

static void quitOnSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalEnds) != 0)
        return;
    auto *notifier =
        new QSocketNotifier(signalEnds[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(),
                     &QCoreApplication::quit);
    std::signal(SIGINT, &onSignal);
    std::signal(SIGTERM, &onSignal);
    std::signal(SIGPIPE, SIG_IGN);
}

// Whoever has no file left for a connection listens no more, ever.
static void allowConnections()
{
    rlimit files = {};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
}

static int serve(const QCommandLineParser &line)
{
    const bool logsJson = line.isSet(QStringLiteral("log-json"));
    rpc::hearTransport([logsJson](const QString &what) {
        audit(logsJson, QStringLiteral("transport"), {{QStringLiteral("what"), what}});
    });
    allowConnections();
    QLoggingCategory::setFilterRules(
        QStringLiteral("qel.devices*.info=false\nqel.devices*.debug=false"));
    Settings settings;
    settings.state = stateFolder(line);
    settings.socket = socketFile(line);
    settings.plugins = pluginFolders(line);
    QString problem;
    settings.address = completeAddress(line.value(QStringLiteral("listen")), 0, &problem);
    if (settings.address.isEmpty())
        return fail(BadUsage, QStringLiteral("--listen: %1").arg(problem));
    settings.isForGroup = isSystemServer() && !line.isSet(QStringLiteral("socket"));
    settings.logsJson = logsJson;
    bool isNumber = false;
    settings.grace = std::chrono::seconds(line.value(QStringLiteral("grace")).toUInt(&isNumber));
    if (!isNumber || settings.grace > std::chrono::hours(24))
        return fail(BadUsage,
                    QStringLiteral("--grace: '%1' is no number of seconds up to 86400")
                        .arg(line.value(QStringLiteral("grace"))));
    quitOnSignals();
    Daemon daemon(settings);
    if (!daemon.start(&problem))
        return fail(Failed, problem);
    return QCoreApplication::exec();
}

// Two who invite at a time must not lose one of their guests.
static bool isLocked(QLockFile *lock, QString *problem)
{
    constexpr int patience = 30000; // ms
    if (lock->tryLock(patience))
        return true;
    *problem = QStringLiteral("the list of clients cannot be written, or is in use");
    return false;
}

static int invite(const QCommandLineParser &line, const QString &name)
{
    if (!isClientName(name))
        return fail(BadUsage,
                    QStringLiteral("invite: '%1' is no name: one has 1 to 64 visible characters, "
                                   "and neither begins nor ends with a blank")
                        .arg(values::printable(name)));
    const auto role = readRole(line.value(QStringLiteral("role")));
    if (!role)
        return fail(BadUsage,
                    QStringLiteral("--role: '%1' is none of observe, operate, service")
                        .arg(line.value(QStringLiteral("role"))));
    bool isNumber = false;
    const int days = line.value(QStringLiteral("days")).toInt(&isNumber);
    if (!isNumber || days < 1 || days > 3650)
        return fail(BadUsage,
                    QStringLiteral("--days: '%1' is no number from 1 to 3650")
                        .arg(line.value(QStringLiteral("days"))));
    QString problem;
    const QString address =
        completeAddress(line.isSet(QStringLiteral("host")) ? line.value(QStringLiteral("host"))
                                                           : QSysInfo::machineHostName(),
                        defaultPort, &problem);
    if (address.isEmpty())
        return fail(BadUsage, QStringLiteral("--host: %1").arg(problem));
    const QString folder = stateFolder(line);
    const auto identity = Identity::load(folder, &problem);
    Clients clients(folder);
    QLockFile lock(clients.fileName() + QStringLiteral(".lock"));
    if (!identity || !isLocked(&lock, &problem) || !clients.load(&problem))
        return fail(Failed, problem);
    if (clients.named(name))
        return fail(Failed,
                    QStringLiteral("'%1' is invited already; 'qeldevicesd revoke %1' takes "
                                   "the invitation back")
                        .arg(name));
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    // Valid for longer than the invitation, whose end is told with a sentence.
    const auto credentials = identity->sign(id, days + 30);
    if (!credentials)
        return fail(Failed, QStringLiteral("no certificate could be made"));
    clients.add({id, name, *role, QDateTime::currentDateTimeUtc().addDays(days), false});
    if (!clients.save(&problem))
        return fail(Failed, problem);
    const QJsonObject invitation{
        {QStringLiteral("format"), QStringLiteral("qeldevices-connection")},
        {QStringLiteral("server"), QSysInfo::machineHostName()},
        {QStringLiteral("address"), address},
        {QStringLiteral("authority"), QString::fromLatin1(identity->authority())},
        {QStringLiteral("certificate"), QString::fromLatin1(credentials->certificate)},
        {QStringLiteral("key"), QString::fromLatin1(credentials->key)}};
    const QByteArray text = QJsonDocument(invitation).toJson();
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    if (std::fflush(stdout) != 0)
        return fail(Failed, QStringLiteral("the invitation cannot be written"));
    return Done;
}

static int listClients(const QCommandLineParser &line)
{
    Clients clients(stateFolder(line));
    QString problem;
    if (!clients.load(&problem))
        return fail(Failed, problem);
    for (const Client &client : clients.all()) {
        const QString refusal = client.refusal();
        std::printf("%-20s %-8s until %s%s\n", values::printable(client.name).toUtf8().constData(),
                    roleName(client.role).toUtf8().constData(),
                    client.expires.toString(QStringLiteral("yyyy-MM-dd")).toUtf8().constData(),
                    client.isRevoked         ? "  revoked"
                        : !refusal.isEmpty() ? "  expired"
                                             : "");
    }
    return Done;
}

static int revoke(const QCommandLineParser &line, const QString &name)
{
    Clients clients(stateFolder(line));
    QLockFile lock(clients.fileName() + QStringLiteral(".lock"));
    QString problem;
    if (!isLocked(&lock, &problem) || !clients.load(&problem))
        return fail(Failed, problem);
    if (!clients.revoke(name))
        return fail(Failed, QStringLiteral("nobody is invited as '%1'").arg(name));
    return clients.save(&problem) ? int(Done) : fail(Failed, problem);
}

static int listResults(const QCommandLineParser &line)
{
    const QDir folder(stateFolder(line) + QStringLiteral("/results"));
    const QByteArray path = QFile::encodeName(folder.path());
    if (::access(path.constData(), R_OK | X_OK) != 0 && errno != ENOENT)
        return fail(Failed,
                    QStringLiteral("the folder '%1' cannot be read: %2")
                        .arg(folder.path(), QString::fromLocal8Bit(strerror(errno))));
    const auto files = folder.entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        std::printf("%s\n", file.absoluteFilePath().toLocal8Bit().constData());
    return Done;
}

static void declare(QCommandLineParser *line)
{
    line->setApplicationDescription(
        QStringLiteral("Serves the instruments of this machine to those who were invited.\n\n"
                       "  qeldevicesd                 serve\n"
                       "  qeldevicesd invite NAME     print an invitation, for 'qelctl connect'\n"
                       "  qeldevicesd clients         list who was invited\n"
                       "  qeldevicesd revoke NAME     take an invitation back, at once\n"
                       "  qeldevicesd results         list the results that have reached nobody"));
    line->addHelpOption();
    line->addVersionOption();
    const auto option = [line](const char *name, const char *text, const char *value,
                               const QString &preset = QString()) {
        line->addOption(QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(text),
                                           QString::fromLatin1(value), preset));
    };
    option("state", "The folder of the identity and the clients.", "DIR");
    option("socket", "The local socket.", "FILE");
    option("plugins", "A folder with driver plugins, in place of the usual ones.", "DIR");
    option("listen", "Where to listen once somebody was invited.", "ADDRESS:PORT",
           QStringLiteral("[::]:%1").arg(defaultPort));
    option("grace", "For how long a session outlives its connection.", "SECONDS",
           QStringLiteral("30"));
    line->addOption(
        QCommandLineOption(QStringLiteral("log-json"), QStringLiteral("Log as lines of JSON.")));
    option("host", "invite: how the client reaches this machine.", "ADDRESS[:PORT]");
    option("role", "invite: observe, operate or service.", "ROLE", QStringLiteral("operate"));
    option("days", "invite: how long it is valid.", "N", QStringLiteral("365"));
}

static int run()
{
    QCommandLineParser line;
    declare(&line);
    line.process(*QCoreApplication::instance());
    const QStringList words = line.positionalArguments();
    if (words.isEmpty())
        return serve(line);
    const QString command = words.constFirst();
    if (command == QLatin1String("clients") && words.size() == 1)
        return listClients(line);
    if (command == QLatin1String("results") && words.size() == 1)
        return listResults(line);
    if (command == QLatin1String("invite") && words.size() == 2)
        return invite(line, words.at(1));
    if (command == QLatin1String("revoke") && words.size() == 2)
        return revoke(line, words.at(1));
    if ((command == QLatin1String("invite") || command == QLatin1String("revoke"))
        && words.size() == 1)
        return fail(BadUsage,
                    QStringLiteral("%1: the NAME of the client is missing: qeldevicesd %1 NAME")
                        .arg(command));
    return fail(BadUsage,
                QStringLiteral("'%1' makes no sense; see qeldevicesd --help")
                    .arg(words.join(QLatin1Char(' '))));
}

} // namespace qel::server

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qeldevicesd"));
    QCoreApplication::setApplicationVersion(qel::devices::version());
    return qel::server::run();
}
