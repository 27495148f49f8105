#include "journal.h"

#include <qeldevices/devicebroker.h>

#include <QtTest/QtTest>

using namespace qel::devices;

class tst_Plugins : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void wholeMetaData();
    void noMetaData();
    void loadedTwice();
    void nameAlreadyTaken();
    void withoutTheInterface();
    void notAPlugin_data();
    void notAPlugin();
    void directoryTree();
    void noDirectory();

private:
    QTemporaryDir m_directory;
};

void tst_Plugins::init()
{
    DeviceBroker::DRIVERS.clear();
    DeviceBroker::LOADERS.clear();
    DeviceBroker::PLUGINS.clear();
}

static QStringList loadedMessages(const QString &path, const QString &manufacturer,
                                  const QString &url, const QString &resourceId,
                                  const QString &version)
{
    const QString info = "info qel.devices: ";
    return {info + "Loaded device plugin \"" + QFileInfo(path).canonicalFilePath() + '"',
            info + "\tManufacturer: " + manufacturer, info + "\tURL: " + url,
            info + "\tResource ID: " + resourceId, info + "\tVersion: " + version};
}

static QString failedMessage(const QString &path, const QString &reason)
{
    return QStringLiteral("warning qel.devices: Failed to load device plugin \"%1\" \n\tReason: "
                          "\"%2\"")
        .arg(path, QString(reason).replace('"', "\\\""));
}

// The driver's own message shows that the drivers are registered before anything is reported.
static QStringList laboratoryMessages(const QString &path)
{
    return QStringList{"debug qel.devices.driver: laboratory registers"}
    + loadedMessages(path, "Testing & Sons", "https://example.org/a b?q=1", "laboratory-resources",
                     "2.7");
}

void tst_Plugins::wholeMetaData()
{
    Journal journal;
    const QString path = QFileInfo(LABORATORY).path() + "/../plugins/laboratory.so";
    QVERIFY(DeviceBroker::loadPlugin(path));
    QCOMPARE(journal.take(), laboratoryMessages(path));
    QCOMPARE(DeviceBroker::availableDrivers(), QStringList{"laboratory"});
    QCOMPARE(DeviceBroker::LOADERS.size(), 1);
    const DeviceBroker::DevicePluginInfo plugin = DeviceBroker::loadedPlugins().constLast();
    QCOMPARE(plugin.fileName, path);
    QCOMPARE(plugin.manufacturer, "Testing & Sons");
    QCOMPARE(plugin.url, QUrl("https://example.org/a%20b?q=1"));
    QCOMPARE(plugin.resourceId, "laboratory-resources");
    QCOMPARE(plugin.version, "2.7");
}

void tst_Plugins::noMetaData()
{
    Journal journal;
    QVERIFY(DeviceBroker::loadPlugin(BARE));
    QCOMPARE(journal.take(), loadedMessages(BARE, {}, {}, {}, {}));
    const DeviceBroker::DevicePluginInfo plugin = DeviceBroker::loadedPlugins().constLast();
    QVERIFY(plugin.url.isEmpty());
    QCOMPARE(plugin.manufacturer + plugin.resourceId + plugin.version, QString());
}

void tst_Plugins::loadedTwice()
{
    Journal journal;
    QVERIFY(DeviceBroker::loadPlugin(LABORATORY));
    const std::weak_ptr<DeviceDriver> first = DeviceBroker::DRIVERS.value("laboratory");
    QVERIFY(DeviceBroker::loadPlugin(LABORATORY));
    QVERIFY(first.expired());
    QCOMPARE(DeviceBroker::LOADERS.size(), 2);
    QCOMPARE(DeviceBroker::loadedPlugins().size(), 2);
    QCOMPARE(journal.take(), laboratoryMessages(LABORATORY) + laboratoryMessages(LABORATORY));
}

void tst_Plugins::nameAlreadyTaken()
{
    Journal journal;
    QVERIFY(DeviceBroker::loadPlugin(LABORATORY));
    QVERIFY(DeviceBroker::loadPlugin(BARE));
    QCOMPARE(DeviceBroker::DRIVERS.size(), 2);
    for (const DeviceInfo &info : DeviceBroker::availableDevices())
        QCOMPARE(info.name(), "from bare");
}

void tst_Plugins::withoutTheInterface()
{
    for (const int gone : {1, 2}) {
        Journal journal;
        QVERIFY(!DeviceBroker::loadPlugin(STRANGER));
        QCOMPARE(qApp->property("strangersGone").toInt(), gone);
        const auto loader = DeviceBroker::LOADERS.constLast();
        QVERIFY(loader->isLoaded());
        QVERIFY(!loader->errorString().isEmpty());
        QCOMPARE(journal.take(), QStringList{failedMessage(STRANGER, loader->errorString())});
    }
    QCOMPARE(DeviceBroker::LOADERS.size(), 2);
    QVERIFY(DeviceBroker::loadedPlugins().isEmpty());
}

void tst_Plugins::notAPlugin_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("garbage") << m_directory.filePath("garbage.so");
    QTest::newRow("missing") << m_directory.filePath("missing.so");
    QTest::newRow("no plugin") << LIBRARY;
    QTest::newRow("no path") << QString();
}

void tst_Plugins::notAPlugin()
{
    QFETCH(QString, path);
    QFile garbage(m_directory.filePath("garbage.so"));
    QVERIFY(garbage.open(QFile::WriteOnly) && garbage.write("no \"plugin\" at all") > 0);
    garbage.close();

    QPluginLoader reference(path);
    QVERIFY(!reference.load());
    Journal journal;
    QVERIFY(!DeviceBroker::loadPlugin(path));
    QCOMPARE(journal.take(), QStringList{failedMessage(path, reference.errorString())});
    QCOMPARE(DeviceBroker::LOADERS.size(), 1);
    QVERIFY(DeviceBroker::loadedPlugins().isEmpty());
}

void tst_Plugins::directoryTree()
{
    const QDir root(m_directory.filePath("tree"));
    QVERIFY(root.mkpath("a/b") && root.mkpath(".hidden"));
    QVERIFY(QFile::copy(BARE, root.filePath("a/b/driver.so")));
    QVERIFY(QFile::copy(BARE, root.filePath(".hidden/driver.so")));
    QVERIFY(QFile::copy(BARE, root.filePath("a/.driver.so")));
    QVERIFY(QFile::copy(LABORATORY_JSON, root.filePath("a/readme.txt")));
    QVERIFY(QFile::link(root.filePath("a"), root.filePath("linked")));

    Journal journal;
    DeviceBroker::loadAllDevicePlugins(root.path());
    QStringList messages = journal.take();
    QCOMPARE(
        messages.takeFirst(),
        QStringLiteral("info qel.devices: Loading device plugins from \"%1\"").arg(root.path()));
    QCOMPARE(messages.filter("Failed").size(), 1);
    QVERIFY(messages.filter("Failed").constFirst().contains(root.filePath("a/readme.txt")));
    QCOMPARE(messages.size(), 6);
    QCOMPARE(DeviceBroker::LOADERS.size(), 2);
    QCOMPARE(DeviceBroker::loadedPlugins().size(), 1);
    QCOMPARE(DeviceBroker::loadedPlugins().constFirst().fileName, root.filePath("a/b/driver.so"));
}

void tst_Plugins::noDirectory()
{
    Journal journal;
    DeviceBroker::loadAllDevicePlugins("/no/such directory");
    QCOMPARE(journal.take(),
             QStringList{"info qel.devices: Loading device plugins from "
                         "\"/no/such directory\""});
    QVERIFY(DeviceBroker::LOADERS.isEmpty());
}

QTEST_GUILESS_MAIN(tst_Plugins)
#include "tst_plugins.moc"
