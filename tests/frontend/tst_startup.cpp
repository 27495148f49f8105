// Where drivers come from. One process can start the library once, so this is one story.
#include <qelfrontend/frontend.h>
#include <qelfrontend/provenance.h>
#include <qelfrontend/startup.h>

#include <qeldevices/logging.h>

#include <QtCore/QFileInfo>
#include <QtTest/QTest>

using namespace qel::devices;

class StartupTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void complainsAboutFolders();
    void knowsTheOrigin_data();
    void knowsTheOrigin();
    void speaksEnglishToOthers();
    void leavesTheLogAlone();

private:
    QStringList m_problems;
    QtMessageHandler m_handlerBefore = nullptr;
    QtMessageHandler m_handlerAfter = nullptr;
};

static QtMessageHandler messageHandler()
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    return handler;
}

void StartupTest::initTestCase()
{
    m_handlerBefore = messageHandler();
    QLoggingCategory::setFilterRules(QStringLiteral("qel.devices.info=false"));
    QLocale::setDefault(QLocale(QLocale::French));
    qputenv("QELDEVICES_PLUGIN_PATH", ORIGINS "/green:" ORIGINS "/red::nowhere-at-all");
    m_problems = qel::frontend::startLibrary({QString(), QStringLiteral(ORIGINS "/blue")});
    m_handlerAfter = messageHandler();
}

void StartupTest::complainsAboutFolders()
{
    QCOMPARE(m_problems,
             (QStringList{QStringLiteral("There is no folder \"nowhere-at-all\" to look for driver "
                                         "plugins in."),
                          QStringLiteral("There is no folder \"\" to look for driver plugins "
                                         "in.")}));
}

void StartupTest::knowsTheOrigin_data()
{
    QTest::addColumn<QString>("file");
    for (const char *name : {"blue", "green", "red"})
        QTest::newRow(name) << QString::fromLatin1(name);
    // All three bring it; the user's folder goes before those of the environment.
    QTest::newRow("shared") << QStringLiteral("blue");
}

void StartupTest::knowsTheOrigin()
{
    QFETCH(const QString, file);
    const auto plugin = qel::frontend::pluginOfDriver(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(plugin);
    QCOMPARE(QFileInfo(plugin->fileName).baseName(), file);
}

// The plugin brings English texts only.
void StartupTest::speaksEnglishToOthers()
{
    using qel::frontend::translated;
    QCOMPARE(QLocale().language(), QLocale::French);
    QCOMPARE(translated(QStringLiteral("laboratory-ORIGIN")),
             QStringLiteral("From the laboratory"));
    QCOMPARE(translated(QStringLiteral("nobody-knows")), QStringLiteral("nobody-knows"));
}

void StartupTest::leavesTheLogAlone()
{
    QVERIFY(!LogCDevices().isInfoEnabled());
    QVERIFY(m_handlerAfter == m_handlerBefore);
}

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
