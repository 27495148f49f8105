#include "catalogues.h"
#include "subject.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QUrl>

namespace qel::conformance {

static const char group[] = "Plugin file";

static void checkLoads(Subject &subject)
{
    try {
        subject.plugin();
    } catch (const Unmet &unmet) {
        throw Broken{unmet.why};
    }
}

static void checkInterfaceId(Subject &subject)
{
    const QString id = subject.metaData().value(QStringLiteral("IID")).toString();
    if (id != QLatin1String(QelDevicePlugin_iid))
        throw Broken{QStringLiteral("the interface id is '%1'").arg(id)};
}

static void checkMetaData(Subject &subject)
{
    const QJsonObject data = subject.metaData().value(QStringLiteral("MetaData")).toObject();
    for (const char *key : {"manufacturer", "url", "resource-id", "version"}) {
        const QJsonValue value = data.value(QLatin1String(key));
        if (value.toString().isEmpty()) {
            throw Broken{QStringLiteral("\"%1\" is %2")
                             .arg(QLatin1String(key),
                                  value.isUndefined()    ? QStringLiteral("missing")
                                      : value.isString() ? QStringLiteral("empty")
                                                         : QStringLiteral("not a string"))};
        }
    }
    const QUrl url(data.value(QStringLiteral("url")).toString());
    if (!url.isValid() || url.isRelative())
        throw Broken{QStringLiteral("\"url\" is no address: '%1'").arg(url.errorString())};
}

static void checkRegisters(Subject &subject)
{
    if (subject.driverNames().isEmpty())
        throw Broken{QStringLiteral("registerDrivers() registered nothing")};
}

static void checkRegistersAgain(Subject &subject)
{
    const QStringList before = subject.driverNames();
    subject.registerAgain();
    const QStringList after = subject.driverNames();
    if (before != after) {
        throw Broken{
            QStringLiteral("the second call changed the drivers from '%1' to '%2'")
                .arg(before.join(QStringLiteral("', '")), after.join(QStringLiteral("', '")))};
    }
}

static void checkCatalogues(Subject &subject)
{
    subject.plugin();
    const QStringList folders = catalogueFolders();
    for (const QString &folder : folders) {
        const bool hasEnglish = QFile::exists(folder + QStringLiteral("/plugin_en.qm"));
        const bool hasGerman = QFile::exists(folder + QStringLiteral("/plugin_de.qm"));
        if (hasEnglish && hasGerman)
            return;
        if (hasEnglish || hasGerman) {
            throw Broken{QStringLiteral("'%1' lacks %2")
                             .arg(folder,
                                  hasEnglish ? QStringLiteral("plugin_de.qm")
                                             : QStringLiteral("plugin_en.qm"))};
        }
    }
    throw Broken{QStringLiteral("no folder below ':/qel/devices' holds a catalogue")};
}

// The hashes of the ids in a compiled catalogue: all that is kept of them.
static QSet<quint32> idsIn(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QDataStream stream(&file);
    const int magic = 16;
    stream.skipRawData(magic);
    const quint8 hashes = 0x42;
    while (!stream.atEnd()) {
        quint8 section = 0;
        quint32 length = 0;
        stream >> section >> length;
        if (stream.status() != QDataStream::Ok)
            break;
        if (section != hashes) {
            stream.skipRawData(int(length));
            continue;
        }
        QSet<quint32> ids;
        for (quint32 i = 0; i < length / 8 && stream.status() == QDataStream::Ok; ++i) {
            quint32 hash = 0;
            quint32 offset = 0;
            stream >> hash >> offset;
            ids += hash;
        }
        return ids;
    }
    return {};
}

static void checkSameIds(Subject &subject)
{
    subject.plugin();
    QStringList faults;
    const QStringList folders = catalogueFolders();
    for (const QString &folder : folders) {
        const auto files = QDir(folder).entryList({QStringLiteral("plugin_*.qm")}, QDir::Files);
        QSet<quint32> all;
        for (const QString &file : files)
            all += idsIn(folder + QLatin1Char('/') + file);
        for (const QString &file : files) {
            const int lacking = (all - idsIn(folder + QLatin1Char('/') + file)).size();
            if (lacking > 0)
                faults += QStringLiteral("'%1/%2' lacks %3 texts that another language has")
                              .arg(folder, file)
                              .arg(lacking);
        }
    }
    if (!faults.isEmpty())
        throw Broken{faults.join(QStringLiteral("; ")), {}, true};
}

QVector<Rule> pluginFileRules()
{
    return {
        {101, group, Severity::Failure, false, Needs::File,
         "The file loads as a Qt plugin whose root object implements DevicePlugin.",
         "A file that does not load, or whose root object cannot be cast, is passed over when an "
         "application starts, with no more than a warning in the log.",
         "Derive the root object from QObject and DevicePlugin, list "
         "Q_INTERFACES(qel::devices::DevicePlugin), link everything the plugin uses, and build it "
         "against the Qt version of the application.",
         checkLoads},
        {102, group, Severity::Failure, false, Needs::File,
         "The plugin names the interface id of driver plugins in its metadata.",
         "Tools tell a driver from other plugins by this id without loading it.",
         "Write Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE \"plugin.json\").",
         checkInterfaceId},
        {103, group, Severity::Failure, false, Needs::File,
         "The metadata gives manufacturer, url, resource-id and version as non-empty strings, and "
         "the url is an absolute address.",
         "They are all that a user sees of a plugin when something is wrong with it.",
         "Complete plugin.json; values of another type than string are not read.", checkMetaData},
        {104, group, Severity::Failure, false, Needs::Plugin,
         "registerDrivers() registers at least one driver.",
         "A plugin without a driver serves no instrument.",
         "Call DeviceBroker::addDriver() in registerDrivers(), not in a constructor or a slot.",
         checkRegisters},
        {105, group, Severity::Failure, false, Needs::Driver,
         "registerDrivers() can be called again and registers the same names.",
         "A plugin folder that is scanned twice calls it twice; the new drivers replace the old "
         "ones.",
         "Create the drivers anew in each call, under constant names.", checkRegistersAgain},
        {106, group, Severity::Failure, false, Needs::Plugin,
         "The plugin carries the catalogues plugin_en.qm and plugin_de.qm in a folder below "
         "\":/qel/devices\".",
         "Texts for people leave a driver as translation ids; without a catalogue the user reads "
         "the id.",
         "Pass both .ts files to qel_add_driver() under TRANSLATIONS.", checkCatalogues},
        {107, group, Severity::Failure, false, Needs::Plugin,
         "All catalogues of the plugin translate the same ids.",
         "A text that one language lacks is found out by the user who needs it.",
         "Compare the ids in the .ts files; finish what is marked as unfinished.", checkSameIds},
    };
}

} // namespace qel::conformance
