#include "journal.h"

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QResource>
#include <QtTest/QtTest>

#include <functional>

using namespace qel::devices;

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void resources();
    void locales_data();
    void locales();
    void onlyALanguageChangeReloads();
    void pluginCatalogues();
    void switchedAgainWhileLoading();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> m_reaction;
};

// A line for each error code: its name, a colon, its text.
static QStringList texts()
{
    QFile file(QFINDTESTDATA("expected/texts.txt"));
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed().split('\n')
                                      : QStringList();
}

// Sets the default locale and tells the application; returns what the library says of it.
static QStringList switchTo(const QString &locale, QEvent::Type type = QEvent::LanguageChange)
{
    Journal journal;
    QLocale::setDefault(QLocale(locale));
    QEvent event(type);
    if (QCoreApplication::sendEvent(qApp, &event))
        Journal::note("the event was kept from the application");
    QCoreApplication::sendPostedEvents();
    return journal.take();
}

static const QString loading = "info qel.devices: Loading translations for locale QLocale(%1)";
static const QString loaded =
    "info qel.devices: Successfully loaded common device driver translations.";
static const QString failed =
    "warning qel.devices: Failed to load common device driver translations.";
static const QString pluginLoaded =
    "info qel.devices: Successfully loaded device plugin translations from \"%1\"";
static const QString pluginFailed =
    "warning qel.devices: Failed to load device plugin translations from \"%1\"";

void tst_Translations::initTestCase()
{
    qApp->installEventFilter(this);
    QLocale::setDefault(QLocale("de_DE"));
    Journal journal;
    init();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(journal.take().mid(4), QStringList({loading.arg("German, Latin, Germany"), loaded}));
}

bool tst_Translations::eventFilter(QObject *, QEvent *event)
{
    const auto reaction =
        event->type() == QEvent::LanguageChange ? std::exchange(m_reaction, {}) : nullptr;
    if (reaction)
        reaction();
    return false;
}

// The two catalogues hold nothing but the texts above and differ in nothing but the language tag.
void tst_Translations::resources()
{
    QCOMPARE(QDir(":/qel/devices").entryList(QDir::AllEntries | QDir::Hidden, QDir::Name),
             QStringList({"qeldevices_de.qm", "qeldevices_en.qm"}));
    QFile german(":/qel/devices/qeldevices_de.qm");
    QFile english(":/qel/devices/qeldevices_en.qm");
    QVERIFY(german.open(QFile::ReadOnly) && english.open(QFile::ReadOnly));
    QByteArray catalogue = german.readAll();
    QCOMPARE(catalogue.count("de_DE"), 1);
    QCOMPARE(catalogue.replace("de_DE", "en_US"), english.readAll());
    // Section 0x42 holds eight bytes for each entry.
    const int entries = texts().size();
    QVERIFY(catalogue.mid(16).contains(QByteArray::fromHex("42000000") + char(entries * 8)));
}

void tst_Translations::locales_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<bool>("found");
    QTest::newRow("en_GB") << "English, Latin, United Kingdom" << true;
    QTest::newRow("de_AT") << "German, Latin, Austria" << true;
    QTest::newRow("fr_FR") << "French, Latin, France" << false;
    QTest::newRow("en_US") << "English, Latin, United States" << true;
    QTest::newRow("de_DE") << "German, Latin, Germany" << true;
}

void tst_Translations::locales()
{
    QFETCH(QString, description);
    QFETCH(bool, found);
    QCOMPARE(switchTo(QTest::currentDataTag()),
             QStringList({loading.arg(description), found ? loaded : failed}));
    const QStringList lines = texts();
    QCOMPARE(lines.size(), 13);
    for (const QString &line : lines) {
        const QString id = "libqeldevices-" + line.section(": ", 0, 0);
        QCOMPARE(qtTrId(id.toLatin1()), found ? line.section(": ", 1) : id);
    }
    QCOMPARE(switchTo(QTest::currentDataTag()), QStringList());
}

void tst_Translations::onlyALanguageChangeReloads()
{
    QCOMPARE(switchTo("en_US", QEvent::LocaleChange), QStringList());
    QCOMPARE(switchTo("de_DE"), QStringList()); // back before anybody told
    QLocale::setDefault(QLocale("en_US"));
    Journal journal;
    QTranslator own;
    QVERIFY(own.load(":/qel/devices/qeldevices_en.qm"));
    QCoreApplication::installTranslator(&own);
    QCOMPARE(journal.take().size(), 2);
}

// One catalogue in ":/qel/devices/simple", one in "tree/deep" beside none in "tree", and one where
// the library's own are, which no walk visits.
void tst_Translations::pluginCatalogues()
{
    switchTo("fr_FR");
    QVERIFY(QResource::registerResource(CATALOGUES));
    QStringList messages = switchTo("en_US");
    const QString last = messages.filter("Successfully loaded device plugin").constLast();
    QCOMPARE(messages.mid(0, 2),
             QStringList({loading.arg("English, Latin, United States"), loaded}));
    messages.sort();
    QCOMPARE(messages.mid(2),
             QStringList({pluginLoaded.arg(":/qel/devices"), pluginLoaded.arg(":/qel/devices/tree"),
                          pluginFailed.arg(":/qel/devices/tree")}));
    const bool deepIsLast = last == pluginLoaded.arg(":/qel/devices/tree");
    QCOMPARE(qtTrId("laboratory-ORIGIN"), deepIsLast ? "From the deep" : "From the laboratory");
    // Each catalogue stays.
    QCOMPARE(qtTrId("deep-ONLY"), "Nowhere else");
    QCOMPARE(qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN"), "The laboratory does not know.");

    switchTo("fr_FR");
    QCOMPARE(qtTrId("laboratory-ORIGIN"), "laboratory-ORIGIN");
    QVERIFY(QResource::unregisterResource(CATALOGUES)); // no translator uses it any more
    QVERIFY(QResource::registerResource(CATALOGUES));
}

// A receiver of the language changes that a load sends itself may switch the language once more.
void tst_Translations::switchedAgainWhileLoading()
{
    // The first change comes with a catalogue that goes, the common one being loaded already.
    switchTo("en_US");
    QString common;
    m_reaction = [&common] {
        common = qtTrId("libqeldevices-ERROR_DEVICE_TIMEOUT");
        switchTo("de_DE");
    };
    switchTo("fr_FR");
    QVERIFY(!m_reaction);
    QCOMPARE(common, "libqeldevices-ERROR_DEVICE_TIMEOUT");
    QCOMPARE(QLocale(), QLocale("de_DE"));
    QCOMPARE(qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN"), "Das Labor kennt den Fehler nicht.");

    // And here with the first that is installed: it must not outlive the switch.
    switchTo("fr_FR");
    m_reaction = [] { switchTo("de_DE"); };
    switchTo("en_US");
    QVERIFY(!m_reaction);
    QCOMPARE(qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN"), "Das Labor kennt den Fehler nicht.");
    for (const char *id : {"laboratory-ENGLISH_ONLY", "deep-ONLY"})
        QCOMPARE(qtTrId(id), id);

    // Translators of the last load leave nothing behind when their directory has gone.
    QResource::unregisterResource(CATALOGUES);
    QVERIFY(!QFile::exists(":/qel/devices/simple"));
    QCOMPARE(switchTo("en_US").size(), 2);
    QCOMPARE(qtTrId("laboratory-ORIGIN"), "laboratory-ORIGIN");
    QCOMPARE(qtTrId("libqeldevices-ERROR_DEVICE_UNKNOWN"), "An unknown error occurred.");
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
