// The commands for instruments on other machines. The driver "Network" does the work, where it is
// installed.
#include "commands.h"
#include "listing.h"
#include "output.h"
#include "startup.h"

#include <qeldevices/devicebroker.h>
#include <qeldevices/logging.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

#include <algorithm>

namespace qelctl {

using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

namespace {

// Null, with a complaint printed, where it is not installed.
QObject *networkDriver()
{
    startLibrary();
    const auto driver = DeviceBroker::DRIVERS.value(QStringLiteral("Network"));
    auto *object = dynamic_cast<QObject *>(driver.get());
    if (!object)
        complain(text("qelctl-network-missing"));
    return object;
}

QVariantList serversOf(QObject *driver)
{
    return driver->property("servers").toList();
}

// Servers are connected to in the background; each gets a moment to answer or to refuse.
void awaitServers(QObject *driver)
{
    constexpr int patience = 3000;
    const auto isWaiting = [driver] {
        const auto servers = serversOf(driver);
        return std::any_of(servers.cbegin(), servers.cend(), [](const QVariant &server) {
            return server.toMap().value(QStringLiteral("absence"))
                == QLatin1String("it has not answered yet");
        });
    };
    DeviceBroker::availableDevices();
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (!isWaiting() || clock.elapsed() > patience)
            loop.quit();
    });
    poll.start(10);
    loop.exec();
}

QString stringOf(const QVariant &server, const char *key)
{
    return server.toMap().value(QLatin1String(key)).toString();
}

int runConnect(const QStringList &arguments)
{
    CommandLine line(connectCommand);
    line.addArgument(QStringLiteral("FILE"), "qelctl-argument-invitation");
    if (const auto ended = line.parse(arguments, 1, 1))
        return *ended;
    QObject *driver = networkDriver();
    if (!driver)
        return RunFailed;
    QStringList answer;
    QMetaObject::invokeMethod(
        driver, "addConnection", Q_RETURN_ARG(QStringList, answer),
        Q_ARG(QString, QFileInfo(line.positional().at(0)).absoluteFilePath()));
    if (answer.value(0).isEmpty())
        return fail(RunFailed, sentence(answer.value(1)));
    awaitServers(driver);
    const QString server = answer.at(0);
    const auto servers = serversOf(driver);
    for (const QVariant &entry : servers) {
        const QString absence = stringOf(entry, "absence");
        if (stringOf(entry, "name") == server && !absence.isEmpty())
            return fail(CannotOpen, text("qelctl-connect-away", server, absence));
    }
    QList<QStringList> rows{{text("qelctl-column-name"), text("qelctl-column-serial"),
                             text("qelctl-column-device")}};
    const auto all = DeviceBroker::availableDevices();
    for (const DeviceInfo &info : all) {
        if (info.driver() == QLatin1String("Network")
            && info.location().startsWith(server + QLatin1Char('/')))
            rows.append(
                {info.name(), info.serial(), info.driver() + QLatin1Char('/') + info.location()});
    }
    return printData(text("qelctl-connected", server).toUtf8() + '\n' + table(rows));
}

int runDisconnect(const QStringList &arguments)
{
    CommandLine line(disconnectCommand);
    line.addArgument(QStringLiteral("NAME"), "qelctl-argument-server");
    if (const auto ended = line.parse(arguments, 1, 1))
        return *ended;
    QObject *driver = networkDriver();
    if (!driver)
        return RunFailed;
    bool isGone = false;
    QMetaObject::invokeMethod(driver, "removeConnection", Q_RETURN_ARG(bool, isGone),
                              Q_ARG(QString, line.positional().at(0)));
    return isGone ? int(Done)
                  : fail(NoSuchDevice, text("qelctl-no-such-server", line.positional().at(0)));
}

int runServers(const QStringList &arguments)
{
    CommandLine line(serversCommand);
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    if (const auto ended = line.parse(arguments, 0, 0))
        return *ended;
    QObject *driver = networkDriver();
    if (!driver)
        return RunFailed;
    awaitServers(driver);
    QList<QStringList> rows{
        {text("qelctl-column-server"), text("qelctl-column-address"), text("qelctl-column-state")}};
    QJsonArray entries;
    const auto servers = serversOf(driver);
    for (const QVariant &entry : servers) {
        const QString absence = stringOf(entry, "absence");
        const int count = entry.toMap().value(QStringLiteral("instruments")).toInt();
        rows.append({stringOf(entry, "name"), stringOf(entry, "address"),
                     absence.isEmpty() ? text("qelctl-server-there", QString::number(count))
                                       : sentence(absence)});
        entries.append(QJsonObject{{QStringLiteral("name"), stringOf(entry, "name")},
                                   {QStringLiteral("address"), stringOf(entry, "address")},
                                   {QStringLiteral("absence"), absence},
                                   {QStringLiteral("instruments"), count}});
    }
    if (!line.has(QStringLiteral("json")))
        return printData(table(rows));
    QJsonObject json = document(QStringLiteral("qelctl-servers"));
    json.insert(QStringLiteral("servers"), entries);
    return printData(indented(json));
}

} // namespace

const Command connectCommand{"connect", "qelctl-connect-summary", "qelctl-connect-details",
                             &runConnect};
const Command disconnectCommand{"disconnect", "qelctl-disconnect-summary",
                                "qelctl-disconnect-details", &runDisconnect};
const Command serversCommand{"servers", "qelctl-servers-summary", "qelctl-servers-details",
                             &runServers};

} // namespace qelctl
