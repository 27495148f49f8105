#include <QtTest/QtTest>

#include <memory>

// init() in a process of its own, copied to where the folders beside it can be chosen.
class tst_Init : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void bothFolders();
    void silenced();
    void noDriver();
    void oneFolderForBoth();
    void withoutApplication();
    void end();

private:
    void configure(const QByteArray &path);
    void install(const char *plugin, const QString &path);
    QStringList run(const QString &rules = {}, const QString &locale = "de_DE");
    QStringList expected() const;

    std::unique_ptr<QTemporaryDir> m_root;
    QStringList m_answers; // version, drivers, a translation
};

void tst_Init::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(PROBE, m_root->filePath("probe")));
    configure("Plugins=qt");
}

void tst_Init::configure(const QByteArray &path)
{
    QFile configuration(m_root->filePath("qt.conf"));
    QVERIFY(configuration.open(QFile::WriteOnly));
    configuration.write("[Paths]\n" + path + '\n');
}

void tst_Init::install(const char *plugin, const QString &path)
{
    QVERIFY(QDir(m_root->path()).mkpath(QFileInfo(path).path()));
    QVERIFY(QFile::copy(plugin, m_root->filePath(path)));
}

// What the process logs, line by line. "@" stands for the directory of the executable.
QStringList tst_Init::run(const QString &rules, const QString &locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_MESSAGE_PATTERN", "%{type} %{category}: %{message}");
    environment.insert("QT_LOGGING_RULES", rules);
    environment.insert("QT_LOGGING_TO_CONSOLE", "1");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(m_root->filePath("probe"), {locale});
    process.waitForFinished();
    m_answers = QString::fromLocal8Bit(process.readAllStandardOutput()).split('\v');
    const QString root = QFileInfo(m_root->path()).canonicalFilePath();
    const QString log = QString::fromLocal8Bit(process.readAllStandardError()).replace(root, "@");
    return m_answers.size() == 4 ? log.chopped(1).split('\n') : QStringList{log};
}

// What it should log with a plugin in each of the two folders.
QStringList tst_Init::expected() const
{
    QFile file(QFINDTESTDATA("expected/startup.txt"));
    if (!file.open(QFile::ReadOnly))
        return {};
    QString log = QString::fromUtf8(file.readAll()).chopped(1);
    log.replace("VERSION", m_answers.value(0)).replace("DRIVERS", m_answers.value(1));
    return log.split('\n');
}

// Plugin catalogues are asked before the library's own, from the start.
static const QString texts = "Aus dem Labor Das Labor kennt den Fehler nicht.";

void tst_Init::bothFolders()
{
    install(LABORATORY, "devicedrivers/nested/a.so");
    install(BARE, "qt/devicedrivers/b.so");
    const QStringList log = run();
    QCOMPARE(log, expected());
    const QRegularExpression version("^v1\\.3\\.0 \\([0-9a-f]{8}\\)$");
    QVERIFY(version.match(m_answers.at(0)).hasMatch());
    QStringList drivers = m_answers.at(1).split("\n\t");
    drivers.sort();
    QCOMPARE(drivers, QStringList({"bare", "laboratory"}));
    QCOMPARE(m_answers.at(2), texts);
}

// Without its messages, and without a folder beside the executable, it does the same work.
void tst_Init::silenced()
{
    install(LABORATORY, "qt/devicedrivers/a.so");
    const QStringList log = run("qel.devices.info=false");
    QCOMPARE(log, expected().filter(QRegularExpression("^(debug|warning) ")));
    QCOMPARE(m_answers.mid(1, 2), QStringList({"laboratory", texts}));
}

void tst_Init::noDriver()
{
    const QStringList log = run();
    QCOMPARE(m_answers.mid(1, 2),
             QStringList({"", "laboratory-ORIGIN An unknown error occurred."}));
    QCOMPARE(log,
             expected().filter(QRegularExpression("Initializing|from \"@|Available|^\t$|"
                                                  "locale|common")));
}

void tst_Init::oneFolderForBoth()
{
    configure("Plugins=.");
    install(LABORATORY, "devicedrivers/a.so");
    const QStringList log = run();
    QCOMPARE(log.filter("Loading device plugins from").size(), 2);
    QCOMPARE(log.filter("Loaded device plugin").size(), 2);
    QCOMPARE(m_answers.at(1), "laboratory");
}

void tst_Init::withoutApplication()
{
    const QStringList log = run({}, "none");
    QCOMPARE(log.size(), 1);
    QVERIFY(log.constFirst().startsWith("warning qel.devices: The application object is missing"));
}

// Records, loaders, drivers, in this order; the rest of the library outlives them.
void tst_Init::end()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_MESSAGE_PATTERN", "%{category}: %{message}");
    environment.insert("QT_LOGGING_TO_CONSOLE", "1");
    environment.insert("MALLOC_PERTURB_", "165"); // what has been freed holds no old values
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(END_PROBE, QStringList());
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    const QString id = "libqeldevices-ERROR_DEVICE_DISCONNECTED";
    QCOMPARE(QString::fromLocal8Bit(process.readAllStandardError()).split('\n'),
             QStringList({"loader goes; records gone", "qel.devices: Device error: 0x8009 ",
                          "\t \"" + id + "\" ", "\t \"\"", "qel.devices.driver: driver goes",
                          id + "; categories there; catalogue there; loaders gone", ""}));
}

QTEST_GUILESS_MAIN(tst_Init)
#include "tst_init.moc"
