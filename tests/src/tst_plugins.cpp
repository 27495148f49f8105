#include "journal.h"

#include <qeldevices/devicebroker.h>

#include <QtTest/QtTest>

using namespace qel::devices;

class tst_Plugins : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void metaData_data();
    void metaData();
    void registeredAgain();
    void withoutTheInterface();
    void notAPlugin_data();
    void notAPlugin();
    void directoryTree();
    void failuresAmongOthers();

private:
    QTemporaryDir m_directory;
};

void tst_Plugins::init()
{
    DeviceBroker::DRIVERS.clear();
    DeviceBroker::LOADERS.clear();
    DeviceBroker::PLUGINS.clear();
}

static QString failedMessage(const QString &path, const QString &reason)
{
    return QStringLiteral("warning qel.devices: Failed to load device plugin \"%1\" \n\tReason: "
                          "\"%2\"")
        .arg(path, QString(reason).replace('"', "\\\""));
}

void tst_Plugins::metaData_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("messages");
    const QString loaded = "info qel.devices: Loaded device plugin \"%1\"";
    // The driver's own message shows that drivers are registered before anything is reported, and
    // before the plugin is listed.
    const QString link = m_directory.filePath("link.so");
    QVERIFY(QFile::link(LABORATORY, link));
    for (const QString &path : {link, link.chopped(3)}) { // Qt adds the suffix
        QTest::addRow("whole %s", qPrintable(QFileInfo(path).fileName()))
            << path
            << QStringList{"debug qel.devices.driver: laboratory registers as number 0",
                           loaded.arg(QFileInfo(LABORATORY).canonicalFilePath()),
                           "info qel.devices: \tManufacturer: Testing & Sons",
                           "info qel.devices: \tURL: https://example.org/a b?q=1",
                           "info qel.devices: \tResource ID: laboratory-resources",
                           "info qel.devices: \tVersion: 2.7"};
    }
    QTest::newRow("none")
        << BARE
        << QStringList{loaded.arg(QFileInfo(BARE).canonicalFilePath()),
                       "info qel.devices: \tManufacturer: ", "info qel.devices: \tURL: ",
                       "info qel.devices: \tResource ID: ", "info qel.devices: \tVersion: "};
}

void tst_Plugins::metaData()
{
    QFETCH(QString, path);
    Journal journal;
    QVERIFY(DeviceBroker::loadPlugin(path));
    const QStringList messages = journal.take();
    QTEST(messages, "messages");
    QCOMPARE(DeviceBroker::LOADERS.size(), 1);
    QCOMPARE(DeviceBroker::loadedPlugins().size(), 1);
    const DeviceBroker::DevicePluginInfo plugin = DeviceBroker::loadedPlugins().constFirst();
    QCOMPARE(plugin.fileName, path);
    QCOMPARE(plugin.url.isEmpty(), plugin.manufacturer.isEmpty());
    QVERIFY(plugin.url.isValid() || plugin.url.isEmpty());
    const QStringList values{plugin.manufacturer, plugin.url.toString(), plugin.resourceId,
                             plugin.version};
    for (int i = 0; i < values.size(); ++i)
        QVERIFY(messages.at(messages.size() - 4 + i).endsWith(": " + values.at(i)));
}

void tst_Plugins::registeredAgain()
{
    Journal journal;
    QVERIFY(DeviceBroker::loadPlugin(LABORATORY));
    std::weak_ptr<DeviceDriver> first = DeviceBroker::DRIVERS.value("laboratory");
    QVERIFY(DeviceBroker::loadPlugin(LABORATORY));
    QVERIFY(first.expired());
    QCOMPARE(DeviceBroker::LOADERS.size(), 2);
    QCOMPARE(DeviceBroker::loadedPlugins().size(), 2);
    QCOMPARE(journal.take().filter("laboratory registers").size(), 2);

    QVERIFY(DeviceBroker::loadPlugin(BARE)); // takes the name over
    QStringList files;
    for (const DeviceBroker::DevicePluginInfo &plugin : DeviceBroker::loadedPlugins())
        files << plugin.fileName;
    QCOMPARE(files, QStringList({LABORATORY, LABORATORY, BARE}));
    const QList<DeviceInfo> instruments = DeviceBroker::availableDevices();
    QCOMPARE(instruments.size(), 2);
    QCOMPARE(instruments.at(1).driver() + ' ' + instruments.at(1).name(), "laboratory from bare");
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

// Whatever the order of the directory, some of the files that load come after some that do not.
void tst_Plugins::failuresAmongOthers()
{
    const QDir folder(m_directory.filePath("mixed"));
    QVERIFY(folder.mkpath("."));
    for (int i = 0; i < 8; ++i) {
        QVERIFY(QFile::copy(BARE, folder.filePath(QStringLiteral("%1.so").arg(i))));
        QVERIFY(QFile::copy(LABORATORY_JSON, folder.filePath(QStringLiteral("%1.txt").arg(i))));
    }
    Journal journal;
    DeviceBroker::loadAllDevicePlugins(folder.path());
    QCOMPARE(journal.take().filter("Failed").size(), 8);
    QCOMPARE(DeviceBroker::loadedPlugins().size(), 8);
}

QTEST_GUILESS_MAIN(tst_Plugins)
#include "tst_plugins.moc"
