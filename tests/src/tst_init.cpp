#include <QtTest/QtTest>

#include <memory>

// init() in a process of its own, copied to where the folders beside it can be chosen.
class tst_Init : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void bothFolders();
    void onlyQtsFolder();
    void oneFolderForBoth();
    void silenced();

private:
    void install(const char *plugin, const QString &path);
    QString run(const QString &rules = {});

    std::unique_ptr<QTemporaryDir> m_root;
    QStringList m_answers; // version, Qt's plugin directory, drivers, a translation
    int m_loaded = 0;
};

void tst_Init::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(PROBE, m_root->filePath("probe")));
    QFile configuration(m_root->filePath("qt.conf"));
    QVERIFY(configuration.open(QFile::WriteOnly));
    configuration.write("[Paths]\nPlugins=qt\n");
}

void tst_Init::install(const char *plugin, const QString &path)
{
    QVERIFY(QDir(m_root->path()).mkpath(QFileInfo(path).path()));
    QVERIFY(QFile::copy(plugin, m_root->filePath(path)));
}

// What the process has logged. "@" stands for the directory of the executable.
QString tst_Init::run(const QString &rules)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_MESSAGE_PATTERN", "%{type} %{category}: %{message}");
    environment.insert("QT_LOGGING_RULES", rules);
    environment.insert("QT_LOGGING_TO_CONSOLE", "1");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(m_root->filePath("probe"), {"de_DE"});
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return process.errorString() + process.readAllStandardError();
    m_answers = QString::fromLocal8Bit(process.readAllStandardOutput()).split('\v');
    m_loaded = process.exitCode();
    const QString root = QFileInfo(m_root->path()).canonicalFilePath();
    return QString::fromLocal8Bit(process.readAllStandardError()).replace(root, "@");
}

static const QString beginning = "info qel.devices: Initializing device driver library %1\n";
static const QString scanning = "info qel.devices: Loading device plugins from \"%1\"\n";
static const QString laboratory = "debug qel.devices.driver: laboratory registers\n"
                                  "info qel.devices: Loaded device plugin \"%1\"\n"
                                  "info qel.devices: \tManufacturer: Testing & Sons\n"
                                  "info qel.devices: \tURL: https://example.org/a b?q=1\n"
                                  "info qel.devices: \tResource ID: laboratory-resources\n"
                                  "info qel.devices: \tVersion: 2.7\n";
static const QString bare = "info qel.devices: Loaded device plugin \"%1\"\n"
                            "info qel.devices: \tManufacturer: \n"
                            "info qel.devices: \tURL: \n"
                            "info qel.devices: \tResource ID: \n"
                            "info qel.devices: \tVersion: \n";
static const QString finished =
    "info qel.devices: Finished loading device plugins. Available drivers:\n\t%1\n";
static const QString common =
    "info qel.devices: Loading translations for locale QLocale(German, Latin, Germany)\n"
    "info qel.devices: Successfully loaded common device driver translations.\n";
static const QString laboratoryFailed = "warning qel.devices: Failed to load device plugin "
                                        "translations from \":/qel/devices/laboratory\"\n";
static const QString laboratoryTexts =
    "info qel.devices: Successfully loaded device plugin translations from "
    "\":/qel/devices/laboratory\"\n";

void tst_Init::bothFolders()
{
    install(LABORATORY, "devicedrivers/nested/a.so");
    install(BARE, "qt/devicedrivers/b.so");
    const QString log = run();
    QCOMPARE(log,
             beginning.arg(m_answers.at(0)) + scanning.arg("@/devicedrivers")
                 + laboratory.arg("@/devicedrivers/nested/a.so")
                 + scanning.arg("@/qt/devicedrivers") + bare.arg("@/qt/devicedrivers/b.so")
                 + finished.arg(m_answers.at(2)) + common + laboratoryFailed + laboratoryTexts);
    const QRegularExpression pattern("^v1\\.3\\.0 \\([0-9a-f]{8}\\)$");
    QVERIFY(pattern.match(m_answers.at(0)).hasMatch());
    QCOMPARE(m_answers.at(3), "Aus dem Labor");
    QStringList drivers = m_answers.at(2).split("\n\t");
    drivers.sort();
    QCOMPARE(drivers, QStringList({"bare", "laboratory"}));
}

void tst_Init::onlyQtsFolder()
{
    install(LABORATORY, "qt/devicedrivers/a.so");
    const QString log = run();
    QVERIFY(log.contains(scanning.arg("@/devicedrivers") + scanning.arg("@/qt/devicedrivers")
                         + laboratory.arg("@/qt/devicedrivers/a.so")));
    QCOMPARE(m_loaded, 1);
}

void tst_Init::oneFolderForBoth()
{
    QVERIFY(QFile::remove(m_root->filePath("qt.conf")));
    QFile configuration(m_root->filePath("qt.conf"));
    QVERIFY(configuration.open(QFile::WriteOnly));
    configuration.write("[Paths]\nPlugins=.\n");
    configuration.close();
    install(LABORATORY, "devicedrivers/a.so");
    const QString log = run();
    QCOMPARE(log.count("Loading device plugins from"), 2);
    QCOMPARE(log.count("Loaded device plugin"), 2);
    QCOMPARE(m_answers.at(2), "laboratory");
    QCOMPARE(m_loaded, 2);
}

void tst_Init::silenced()
{
    install(LABORATORY, "devicedrivers/a.so");
    QCOMPARE(run("qel.devices.info=false"),
             "debug qel.devices.driver: laboratory registers\n" + laboratoryFailed);
    QCOMPARE(m_loaded, 1);
    QCOMPARE(m_answers.at(3), "Aus dem Labor");

    QVERIFY(QDir(m_root->filePath("devicedrivers")).removeRecursively());
    const QString log = run();
    QCOMPARE(log,
             beginning.arg(m_answers.at(0)) + scanning.arg("@/devicedrivers")
                 + scanning.arg("@/qt/devicedrivers") + finished.arg("") + common);
}

QTEST_GUILESS_MAIN(tst_Init)
#include "tst_init.moc"
