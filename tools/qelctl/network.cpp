// The commands for instruments on other machines. The driver "Network" does the work, where it is
// installed.
#include "commands.h"
#include "listing.h"
#include "output.h"
#include "startup.h"

#include <qelfrontend/problems.h>
#include <qelfrontend/runjson.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/logging.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

#include <algorithm>

namespace qelctl {

using qel::devices::Device;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

namespace {

// Null, with a complaint printed, where it is not installed.
QObject *networkDriver()
{
    // Without a connection, the plugin has the driver only for who asks for it.
    if (!qEnvironmentVariableIsSet("QELDEVICES_NETWORK"))
        qputenv("QELDEVICES_NETWORK", "");
    startLibrary();
    const auto driver = DeviceBroker::DRIVERS.value(QStringLiteral("Network"));
    auto *object = dynamic_cast<QObject *>(driver.get());
    if (!object)
        complain(text("qelctl-network-missing"));
    return object;
}

QVariantList serversOf(QObject *driver)
{
    QVariantList servers;
    QMetaObject::invokeMethod(driver, "servers", Q_RETURN_ARG(QVariantList, servers));
    return servers;
}

QString stringOf(const QVariant &server, const char *key)
{
    return server.toMap().value(QLatin1String(key)).toString();
}

QString absenceOf(const QVariant &server, const char *nameKey)
{
    return text("qelctl-server-away", stringOf(server, nameKey), stringOf(server, "absence"));
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

int runConnect(const QStringList &arguments)
{
    CommandLine line(connectCommand);
    line.addArgument(QStringLiteral("FILE"), "qelctl-argument-invitation");
    line.addOption({QStringLiteral("local")}, "qelctl-connect-option-local");
    // Either of them.
    const int files = arguments.contains(QStringLiteral("--local")) ? 0 : 1;
    if (const auto ended = line.parse(arguments, files, files))
        return *ended;
    QObject *driver = networkDriver();
    if (!driver)
        return RunFailed;
    QStringList answer;
    if (line.has(QStringLiteral("local")))
        QMetaObject::invokeMethod(driver, "addLocalServer", Q_RETURN_ARG(QStringList, answer));
    else
        QMetaObject::invokeMethod(
            driver, "addConnection", Q_RETURN_ARG(QStringList, answer),
            Q_ARG(QString, QFileInfo(line.positional().at(0)).absoluteFilePath()));
    if (answer.value(0).isEmpty())
        return fail(RunFailed, answer.value(1));
    if (answer.size() > 1)
        return fail(CannotOpen, text("qelctl-connect-kept", answer.at(0), answer.at(1)));
    awaitServers(driver);
    const QString server = answer.at(0);
    const auto servers = serversOf(driver);
    for (const QVariant &entry : servers) {
        const QString absence = stringOf(entry, "absence");
        if (stringOf(entry, "name") == server && !absence.isEmpty())
            return fail(CannotOpen, text("qelctl-connect-away", server, absence));
    }
    QList<QStringList> rows{
        {text("qelctl-column-name"), text("qelctl-column-serial"), text("qelctl-column-device")}};
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
        rows.append(
            {stringOf(entry, "name"), stringOf(entry, "address"),
             absence.isEmpty() ? text("qelctl-server-there", QString::number(count)) : absence});
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

// A document of the server's spool, as `qelctl run` would have written it.
std::optional<QByteArray> runDocument(const QString &server, const QJsonObject &kept,
                                      QString *problem)
{
    const auto word = [&](const char *key) { return kept.value(QLatin1String(key)).toString(); };
    qel::values::Problem fault;
    QVariant values[3];
    const char *const keys[] = {"descriptor", "configuration", "result"};
    for (int i = 0; i < 3; ++i) {
        const auto value = qel::values::fromJson(kept.value(QLatin1String(keys[i])), &fault);
        if (!value) {
            *problem = qel::frontend::explain(fault);
            return std::nullopt;
        }
        values[i] = *value;
    }
    qel::frontend::Outcome outcome;
    outcome.kind = qel::frontend::Outcome::Result;
    outcome.result = values[2];
    outcome.startedAt = QDateTime::fromString(word("startedAt"), Qt::ISODateWithMs);
    outcome.elapsed =
        std::chrono::milliseconds(qint64(kept.value(QLatin1String("elapsed")).toDouble()));
    const DeviceInfo device(
        DeviceInfo::Network, QStringLiteral("Network"),
        QStringLiteral("%1/%2/%3").arg(server, word("driver"), word("location")), word("name"),
        word("serial"));
    const QJsonObject far = kept.value(QLatin1String("plugin")).toObject();
    DeviceBroker::DevicePluginInfo plugin;
    plugin.fileName = word("machine") + QLatin1Char(':') + far[QLatin1String("file")].toString();
    plugin.manufacturer = far[QLatin1String("manufacturer")].toString();
    plugin.version = far[QLatin1String("version")].toString();
    const auto json = qel::frontend::runToJson(
        {device, plugin, Device::DeviceFeature(kept.value(QLatin1String("feature")).toInt()),
         values[0], values[1], outcome},
        problem);
    return json ? std::optional(indented(*json)) : std::nullopt;
}

QVariantList keptResults(QObject *driver, const QString &server, const QString &name)
{
    QVariantList results;
    QMetaObject::invokeMethod(driver, "keptResults", Q_RETURN_ARG(QVariantList, results),
                              Q_ARG(QString, server), Q_ARG(QString, name));
    return results;
}

QJsonObject documentOf(const QVariant &kept)
{
    return QJsonDocument::fromJson(kept.toMap().value(QStringLiteral("document")).toByteArray())
        .object();
}

int fetchResult(QObject *driver, const CommandLine &line)
{
    const QString full = line.positional().at(0);
    const QString server = full.section(QLatin1Char('/'), 0, 0);
    const QString name = full.section(QLatin1Char('/'), 1);
    const auto found = name.isEmpty() ? QVariantList() : keptResults(driver, server, name);
    const QVariant kept = found.value(0);
    if (!stringOf(kept, "absence").isEmpty())
        return fail(CannotOpen, absenceOf(kept, "server"));
    QString problem = stringOf(kept, "problem");
    if (!problem.isEmpty())
        return fail(RunFailed, problem);
    const QJsonObject document = documentOf(kept);
    if (document.isEmpty())
        return fail(NoSuchDevice, text("qelctl-no-such-result", full));
    const auto run = runDocument(server, document, &problem);
    if (!run)
        return fail(RunFailed, problem);
    const auto existing =
        line.has(QStringLiteral("force")) ? Output::Existing::Replace : Output::Existing::Refuse;
    const auto output = Output::open(line.value(QStringLiteral("output")), existing, &problem);
    return output && output->write(*run, &problem) ? int(Done) : fail(CannotWrite, problem);
}

int listResults(QObject *driver, bool asJson)
{
    QList<QStringList> rows{{text("qelctl-column-result"), text("qelctl-column-serial"),
                             text("qelctl-column-name"), text("qelctl-column-feature")}};
    QJsonArray entries;
    QVariantList away;
    const auto results = keptResults(driver, QString(), QString());
    for (const QVariant &kept : results) {
        if (!stringOf(kept, "absence").isEmpty()) {
            away.append(kept);
            continue;
        }
        const QJsonObject document = documentOf(kept);
        const QString name = stringOf(kept, "server") + QLatin1Char('/') + stringOf(kept, "name");
        const QString feature = qel::values::featureName(
            Device::DeviceFeature(document.value(QLatin1String("feature")).toInt()));
        const auto serial = document.value(QLatin1String("serial")).toString();
        const auto device = document.value(QLatin1String("name")).toString();
        rows.append({name, serial, device, feature});
        entries.append(
            QJsonObject{{QStringLiteral("result"), name},
                        {QStringLiteral("serial"), serial},
                        {QStringLiteral("name"), device},
                        {QStringLiteral("feature"), feature},
                        {QStringLiteral("startedAt"), document.value(QLatin1String("startedAt"))}});
    }
    QJsonObject json = document(QStringLiteral("qelctl-results"));
    json.insert(QStringLiteral("results"), entries);
    const int printed = printData(asJson ? indented(json) : table(rows));
    for (const QVariant &kept : qAsConst(away))
        complain(absenceOf(kept, "server"));
    return printed == Done && !away.isEmpty() ? int(CannotOpen) : printed;
}

int runResults(const QStringList &arguments)
{
    CommandLine line(resultsCommand);
    line.addArgument(QStringLiteral("[RESULT]"), "qelctl-argument-result");
    line.addOption({QStringLiteral("output")}, "qelctl-results-option-output",
                   QStringLiteral("FILE"));
    line.addOption({QStringLiteral("force")}, "qelctl-run-option-force");
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    if (const auto ended = line.parse(arguments, 0, 1))
        return *ended;
    QObject *driver = networkDriver();
    if (!driver)
        return RunFailed;
    awaitServers(driver);
    return line.positional().isEmpty() ? listResults(driver, line.has(QStringLiteral("json")))
                                       : fetchResult(driver, line);
}

} // namespace

void tellAbsences()
{
    auto *driver =
        dynamic_cast<QObject *>(DeviceBroker::DRIVERS.value(QStringLiteral("Network")).get());
    if (!driver)
        return;
    const auto servers = serversOf(driver);
    for (const QVariant &server : servers) {
        if (!stringOf(server, "absence").isEmpty())
            complain(absenceOf(server, "name"));
    }
}

const Command connectCommand{"connect", "qelctl-connect-summary", "qelctl-connect-details",
                             &runConnect};
const Command disconnectCommand{"disconnect", "qelctl-disconnect-summary",
                                "qelctl-disconnect-details", &runDisconnect};
const Command resultsCommand{"results", "qelctl-results-summary", "qelctl-results-details",
                             &runResults};
const Command serversCommand{"servers", "qelctl-servers-summary", "qelctl-servers-details",
                             &runServers};

} // namespace qelctl
