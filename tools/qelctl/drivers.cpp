#include "commands.h"
#include "listing.h"
#include "output.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/provenance.h>

#include <qelinspection/hosts.h>

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QSet>

namespace qelctl {

using namespace qel::inspection;
using qel::devices::DeviceBroker;

namespace {

using PluginInfo = DeviceBroker::DevicePluginInfo;

struct Failure
{
    QString fileName;
    Sentence reason;
    bool isHosted; // in a process of its own
};

QString translated(const char *english)
{
    return text(english);
}

QSet<QString> loadedFiles()
{
    QSet<QString> loaded;
    const auto plugins = DeviceBroker::loadedPlugins();
    for (const PluginInfo &plugin : plugins)
        loaded.insert(QFileInfo(plugin.fileName).canonicalFilePath());
    return loaded;
}

// The plugin files that were tried in vain, here or in a process of their own. Every loader is
// kept, also those that failed.
QList<Failure> failures()
{
    const auto loaded = loadedFiles();
    QList<Failure> failed;
    for (const auto &loader : qAsConst(DeviceBroker::LOADERS)) {
        const QString fileName = loader->fileName();
        if (!loaded.contains(QFileInfo(fileName).canonicalFilePath())) {
            failed.append(
                {fileName,
                 loader->isLoaded() ? text("qelctl-drivers-no-interface") : loader->errorString(),
                 false});
            continue;
        }
        const auto outcomes = outcomesOf(hostsOf(loader->instance()));
        for (const LoadOutcome &outcome : outcomes) {
            if (outcome.kind != LoadOutcome::Kind::Loaded)
                failed.append({outcome.file, outcome.sentence(), true});
        }
    }
    return failed;
}

// What each plugin file offers, sorted; a driver that another plugin has replaced since is not
// among it.
QHash<QString, QStringList> driversOfFiles()
{
    QHash<QString, QStringList> drivers;
    QStringList names = DeviceBroker::availableDrivers();
    names.sort();
    for (const QString &name : qAsConst(names)) {
        if (const auto origin = qel::frontend::pluginOfDriver(name))
            drivers[origin->fileName].append(name);
    }
    return drivers;
}

QByteArray asTable(const QList<PluginInfo> &plugins, const QList<Failure> &failed)
{
    QList<QStringList> rows{{text("qelctl-column-driver"), text("qelctl-column-version"),
                             text("qelctl-column-manufacturer"), text("qelctl-column-file")}};
    const auto drivers = driversOfFiles();
    for (const PluginInfo &plugin : plugins) {
        rows.append({drivers.value(plugin.fileName).join(QStringLiteral(", ")), plugin.version,
                     plugin.manufacturer, QDir::toNativeSeparators(plugin.fileName)});
    }
    QByteArray lines = table(rows);
    for (const Failure &failure : failed) {
        const QString reason = failure.reason.in(translated);
        const QString line = failure.isHosted
            ? failure.fileName + QStringLiteral(": ") + reason
            : text("qelctl-drivers-failure", failure.fileName, reason);
        lines += qel::frontend::printable(line).toUtf8() + '\n';
    }
    return lines;
}

QByteArray asJson(const QList<PluginInfo> &plugins, const QList<Failure> &failed)
{
    QJsonArray loaded;
    const auto drivers = driversOfFiles();
    for (const PluginInfo &plugin : plugins) {
        loaded.append(QJsonObject{
            {QStringLiteral("drivers"), QJsonArray::fromStringList(drivers.value(plugin.fileName))},
            {QStringLiteral("file"), plugin.fileName},
            {QStringLiteral("manufacturer"), plugin.manufacturer},
            {QStringLiteral("url"), plugin.url.toString()},
            {QStringLiteral("resourceId"), plugin.resourceId},
            {QStringLiteral("version"), plugin.version},
        });
    }
    QJsonArray notLoaded;
    for (const Failure &failure : failed) {
        notLoaded.append(QJsonObject{{QStringLiteral("file"), failure.fileName},
                                     {QStringLiteral("reason"), failure.reason.english()}});
    }
    QJsonObject json = document(QStringLiteral("qelctl-drivers"));
    json.insert(QStringLiteral("plugins"), loaded);
    json.insert(QStringLiteral("failures"), notLoaded);
    return indented(json);
}

int run(const QStringList &arguments)
{
    CommandLine line(driversCommand);
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    if (const auto ended = line.parse(arguments, 0, 0))
        return *ended;
    startLibrary();
    const auto plugins = DeviceBroker::loadedPlugins();
    return printData(line.has(QStringLiteral("json")) ? asJson(plugins, failures())
                                                      : asTable(plugins, failures()));
}

} // namespace

const Command driversCommand{"drivers", "qelctl-drivers-summary", "qelctl-drivers-details", &run};

} // namespace qelctl
