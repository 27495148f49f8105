#include <qelfrontend/configuration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/wells.h>

#include <qeldevices/device.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QTemporaryFile>
#include <QtTest/QTest>

using namespace qel::devices;
using namespace qel::frontend;
using namespace qel::values;

template<typename T>
static QVariant of(const T &value)
{
    return QVariant::fromValue(value);
}

static QVariantHash setting(const char *type, const QVariantHash &more = QVariantHash())
{
    QVariantHash entry = more;
    entry.insert(QStringLiteral("type"), QString::fromLatin1(type));
    return entry;
}

// One of everything that a descriptor may ask for, on a plate of 2 by 3 wells.
static QVariant everything()
{
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    return QVariantHash{
        {s("rows"), 2},
        {s("columns"), 3},
        {s("settings"),
         QVariantHash{
             {s("wavelengths"),
              setting("QList<int>",
                      {{s("choices"), QVariantList{450, 490, 620}},
                       {s("unit"), s("nm")},
                       {s("default"), of(QList<int>())}})},
             {s("rapidMode"), setting("bool", {{s("default"), false}})},
             {s("integrationTime"),
              setting("std::chrono::milliseconds",
                      {{s("minimum"), 10},
                       {s("maximum"), 10000},
                       {s("step"), 10},
                       {s("default"), of(std::chrono::milliseconds(500))}})},
             {s("selectedWells"),
              setting("QVector<bool>", {{s("length"), 6}, {s("default"), of(QVector<bool>())}})},
             {s("effect"),
              setting("qel::devices::LedBarEffect_Effect",
                      {{s("choices"), QVariantList{0, 3}},
                       {s("names"), QStringList{s("Solid"), s("Rainbow")}},
                       {s("default"), of(LedBarEffect_Effect::Solid)}})},
             {s("color"),
              setting("qel::devices::LedBarEffect_config::Color",
                      {{s("default"), of(LedBarEffect_config::Color{1, 2, 3})}})},
             {s("mode"),
              setting("qel::devices::LedBarEffect_config::Modes",
                      {{s("choices"), QVariantList{1, 4}},
                       {s("names"), QStringList{s("Reversed"), s("Once")}},
                       {s("default"), of(LedBarEffect_config::Modes())}})},
             {s("state"),
              setting("uchar", {{s("minimum"), 0}, {s("maximum"), 9}, {s("default"), 0u}})},
             {s("gain"),
              setting("double",
                      {{s("minimum"), 0.5},
                       {s("step"), 0.1},
                       {s("maximum"), 2.5},
                       {s("default"), 1.0}})},
             {s("image"), setting("QByteArray", {{s("default"), QByteArray()}})},
             {s("plateType"),
              setting(
                  "QString",
                  {{s("choices"), QVariantList{s("flat"), s("deep")}}, {s("default"), s("flat")}})},
             {s("serial"), setting("qulonglong", {{s("default"), of(Q_UINT64_C(1))}})},
             {s("odd"), setting("QSizeF", {{s("default"), of(QSizeF(1, 1))}})},
         }},
    };
}

class ConfigurationTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void assigns_data();
    void assigns();
    void namesAllProblemsAtOnce();
    void wantsWhatIsRequired();
    void readsFiles();
    void survivesSenselessDescriptors();
    void wells_data();
    void wells();
};

void ConfigurationTest::reads_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *json, const QVariant &expected) {
        const QByteArray text(json);
        const auto key = QString::fromLatin1(text.mid(2, text.indexOf('"', 2) - 2));
        QTest::newRow(json) << text << key << expected;
    };
    row(R"({"wavelengths":[620,450]})", of(QList<int>{620, 450}));
    row(R"({"wavelengths":[]})", of(QList<int>()));
    row(R"({"rapidMode":true})", true);
    row(R"({"integrationTime":10000})", of(std::chrono::milliseconds(10000)));
    row(R"({"selectedWells":"A2:B3"})", of(QVector<bool>{false, true, true, false, true, true}));
    row(R"({"selectedWells":[]})", of(QVector<bool>()));
    row(R"({"selectedWells":[false,false,false,false,false,false]})", of(QVector<bool>(6)));
    row(R"({"selectedWells":[true,false,false,false,false,true]})",
        of(QVector<bool>{true, false, false, false, false, true}));
    row(R"({"effect":"Rainbow"})", of(LedBarEffect_Effect::Rainbow));
    row(R"({"effect":3})", of(LedBarEffect_Effect::Rainbow));
    row(R"({"color":"#FF8000"})", of(LedBarEffect_config::Color{255, 128, 0}));
    row(R"({"mode":["Reversed","Once"]})",
        of(LedBarEffect_config::Reversed | LedBarEffect_config::Once));
    row(R"({"mode":5})", of(LedBarEffect_config::Reversed | LedBarEffect_config::Once));
    row(R"({"mode":[]})", of(LedBarEffect_config::Modes()));
    row(R"({"state":9})", of(uchar(9)));
    row(R"({"gain":0.8})", 0.8);
    row(R"({"serial":"9007199254740993"})", Q_UINT64_C(9007199254740993));
    row(R"({"image":"AP8="})", QByteArray("\0\xff", 2));
    row(R"({"plateType":"deep"})", QStringLiteral("deep"));
}

static QByteArray codecText(const QVariant &value)
{
    Problem problem;
    const auto json = toJson(value, &problem);
    return json ? jsonText(*json) : toString(problem).toUtf8();
}

void ConfigurationTest::reads()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, key);
    QFETCH(QVariant, expected);
    Problem problem;
    const QJsonObject given = parseJson(json, &problem)->toObject();
    QStringList problems;
    const auto record = readConfiguration(given, everything(), &problems);
    QVERIFY2(record, qPrintable(problems.join(u'\n')));
    QCOMPARE(record->userType(), int(QMetaType::QVariantHash));
    const QVariant value = record->toHash().value(key);
    QCOMPARE(value.userType(), expected.userType());
    QCOMPARE(codecText(value), codecText(expected));
    // All others have their defaults.
    QCOMPARE(record->toHash().size(), 13);

    // What is written is read as the same.
    QJsonObject written = writeConfiguration(*record, everything());
    QVERIFY(!written.contains(QStringLiteral("odd")));
    const auto again = readConfiguration(written, everything(), &problems);
    QVERIFY2(again, qPrintable(problems.join(u'\n')));
    QCOMPARE(codecText(again->toHash().value(key)), codecText(expected));
}

void ConfigurationTest::refuses_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("named");
    QTest::addColumn<QString>("allowed");
    const auto row = [](const char *json, const char *named, const char *allowed) {
        QTest::newRow(json) << QByteArray(json) << QString::fromLatin1(named)
                            << QString::fromLatin1(allowed);
    };
    row(R"({"wavelength":[450]})", "\"wavelength\"", "color, effect");
    row(R"({"Wavelengths":[450]})", "\"Wavelengths\"", "wavelengths");
    row(R"({"wavelengths":450})", "\"450\"", "450, 490, 620");
    row(R"({"wavelengths":[450,455]})", "\"455\"", "450, 490, 620");
    row(R"({"wavelengths":[450,"620"]})", "\"620\"", "nm");
    row(R"({"rapidMode":1})", "\"1\"", "true or false");
    row(R"({"rapidMode":"true"})", "\"true\"", "true or false");
    row(R"({"rapidMode":null})", "\"null\"", "true or false");
    row(R"({"integrationTime":"500"})", "\"500\"", "10 to 10000");
    row(R"({"integrationTime":500.5})", "\"500.5\"", "whole number of milliseconds");
    row(R"({"integrationTime":505})", "\"505\"", "in steps of 10");
    row(R"({"integrationTime":10010})", "\"10010\"", "10 to 10000");
    row(R"({"selectedWells":"A1:C1"})", "\"A1:C1\"", "A1 to B3");
    row(R"({"selectedWells":[true]})", "1 values", "exactly 6");
    row(R"({"selectedWells":[true,0,false]})", "\"0\"", "wells such as");
    row(R"({"selectedWells":""})", "\"selectedWells\"", "nothing is given");
    row(R"({"effect":"Cylon"})", "\"Cylon\"", "Solid, Rainbow");
    row(R"({"effect":2})", "\"2\"", "Solid, Rainbow");
    row(R"({"effect":true})", "\"true\"", "Solid, Rainbow");
    row(R"({"color":"red"})", "\"red\"", "#ff8000");
    row(R"({"mode":["Mirrored"]})", "\"Mirrored\"", "Reversed, Once");
    row(R"({"mode":7})", "\"7\"", "Reversed, Once");
    row(R"({"mode":1e30})", "\"1e+30\"", "Reversed, Once");
    row(R"({"state":-1})", "\"-1\"", "0 to 9");
    row(R"({"state":256})", "\"256\"", "0 to 9");
    row(R"({"gain":0.85})", "\"0.85\"", "0.5 to 2.5 in steps of 0.1");
    row(R"({"gain":"1"})", "\"1\"", "number");
    row(R"({"gain":null})", "\"null\"", "number");
    row(R"({"serial":9007199254740993})", "\"serial\"", "as a text");
    row(R"({"serial":"12"})", "\"12\"", "whole number");
    row(R"({"image":"@/dev/zero"})", "\"/dev/zero\"", "no ordinary file");
    row(R"({"image":"*"})", "\"*\"", "Base64");
    row(R"({"image":"@/no/such/file"})", "\"/no/such/file\"", "");
    row(R"({"plateType":"round"})", "\"round\"", "flat, deep");
    row(R"({"odd":{"$type":"QSizeF"}})", "\"odd\"", "cannot be written");
}

void ConfigurationTest::refuses()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, named);
    QFETCH(QString, allowed);
    Problem problem;
    QStringList problems;
    QVERIFY(!readConfiguration(parseJson(json, &problem)->toObject(), everything(), &problems));
    QCOMPARE(problems.size(), 1);
    QVERIFY2(problems[0].contains(named) && problems[0].contains(allowed)
                 && !problems[0].contains(QLatin1String("qelfrontend-")),
             qPrintable(problems[0]));
}

void ConfigurationTest::assigns_data()
{
    QTest::addColumn<QString>("assignment");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *assignment, const char *json) {
        QTest::newRow(assignment) << QString::fromLatin1(assignment) << QByteArray(json);
    };
    row("wavelengths=450,620", R"({"wavelengths":[450,620]})");
    row("wavelengths = [450, 620]", R"({"wavelengths":[450,620]})");
    row("wavelengths=[]", R"({"wavelengths":[]})");
    row("wavelengths=", "Setting \"wavelengths\": nothing is given");
    row("wavelengths=,,", "Setting \"wavelengths\": nothing is given");
    row("wavelengths=450,", "Setting \"wavelengths\": nothing is given");
    row("selectedWells=", "Setting \"selectedWells\": nothing is given");
    row("mode=", "Setting \"mode\": nothing is given");
    row("rapidMode=true", R"({"rapidMode":true})");
    row("rapidMode=yes", R"({"rapidMode":"yes"})");
    row("integrationTime=1500", R"({"integrationTime":1500})");
    row("serial=9007199254740993", R"({"serial":"9007199254740993"})");
    row("serial=18446744073709551615", R"({"serial":"18446744073709551615"})");
    row("selectedWells=A1:B2,B3", R"({"selectedWells":"A1:B2,B3"})");
    row("effect=Rainbow", R"({"effect":"Rainbow"})");
    row("mode=Reversed, Once", R"({"mode":["Reversed","Once"]})");
    row("color=#ff8000", R"({"color":"#ff8000"})");
    row("image=AP8=", R"({"image":"AP8="})");
    row("plateType=1", R"({"plateType":"1"})");
    row("wavelength=450", "There is no setting \"wavelength\"");
    row("wavelengths", "\"wavelengths\" is not of the form KEY=VALUE");
    row("=450", "\"=450\" is not of the form KEY=VALUE");
}

void ConfigurationTest::assigns()
{
    QFETCH(QString, assignment);
    QFETCH(QByteArray, json);
    QJsonObject configuration;
    QString problem;
    const bool assigned = assignSetting(&configuration, assignment, everything(), &problem);
    QCOMPARE(assigned, json.startsWith('{'));
    if (assigned)
        QCOMPARE(jsonText(configuration), json);
    else
        QVERIFY2(problem.startsWith(QString::fromUtf8(json)), qPrintable(problem));
}

void ConfigurationTest::namesAllProblemsAtOnce()
{
    QStringList problems;
    const QJsonObject given{{QStringLiteral("gain"), true},
                            {QStringLiteral("state"), 10},
                            {QStringLiteral("speed"), 1}};
    QVERIFY(!readConfiguration(given, everything(), &problems));
    QCOMPARE(problems.size(), 3);
}

void ConfigurationTest::wantsWhatIsRequired()
{
    const QVariant descriptor = QVariantHash{
        {QStringLiteral("settings"), QVariantHash{{QStringLiteral("n"), setting("int")}}}};
    QStringList problems;
    QVERIFY(!readConfiguration({}, descriptor, &problems));
    QVERIFY2(problems.value(0).contains(QLatin1String("\"n\" is missing; give a whole number")),
             qPrintable(problems.value(0)));

    // A feature without settings takes nothing at all.
    problems.clear();
    const auto none = readConfiguration({}, QVariant(), &problems);
    QVERIFY(none && !none->isValid());
    QVERIFY(!readConfiguration({{QStringLiteral("n"), 1}}, QVariant(), &problems));
}

void ConfigurationTest::readsFiles()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const QByteArray content("\0firmware\xff\n", 11);
    file.write(content);
    file.close();
    QStringList problems;
    const auto record = readConfiguration({{QStringLiteral("image"), u'@' + file.fileName()}},
                                          everything(), &problems);
    QVERIFY2(record, qPrintable(problems.join(u'\n')));
    QCOMPARE(record->toHash().value(QStringLiteral("image")).toByteArray(), content);
}

void ConfigurationTest::survivesSenselessDescriptors()
{
    const QVariantHash senseless{{QStringLiteral("minimum"), QStringLiteral("low")},
                                 {QStringLiteral("maximum"), qInf()},
                                 {QStringLiteral("step"), 0},
                                 {QStringLiteral("choices"), 17},
                                 {QStringLiteral("length"), -3}};
    const QVariantHash settings{
        {QStringLiteral("a"), setting("int", senseless)},
        {QStringLiteral("w"), setting("QVector<bool>", senseless)},
        {QStringLiteral("u"), QVariant(1)},
    };
    const QVariant descriptor = QVariantHash{{QStringLiteral("rows"), -1},
                                             {QStringLiteral("columns"), 1 << 30},
                                             {QStringLiteral("settings"), settings}};
    QStringList problems;
    QVERIFY(
        !readConfiguration({{QStringLiteral("a"), 3}, {QStringLiteral("w"), QStringLiteral("A1")}},
                           descriptor, &problems));
    // No plate, so no well; and a setting without a type.
    QCOMPARE(problems.size(), 2);
    QVERIFY(problems[0].contains(QLatin1String("\"u\"")));
    QVERIFY(problems[1].contains(QLatin1String("\"w\"")));
}

void ConfigurationTest::wells_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("canonical");
    const auto row = [](const char *text, const char *canonical) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(canonical);
    };
    row("A1", "A1");
    row("b2 : a1", "A1:A2,B1:B2");
    row("A47:B48,AF48", "A47:A48,B47:B48,AF48");
    row("AA1", "AA1");
    row("Z48,AA1", "Z48,AA1");
    row("A1,A1:A3,A2", "A1:A3");
    row("A0", "");
    row("A49", "");
    row("AG1", "");
    row("1A", "");
    row("A", "");
    row("A+1", "");
    row("A1:", "");
    row("A1:A2:A3", "");
    row("A1,,A2", "");
    row("AAAAAAAAAAAAAAAAAAAAAAAA1", "");
    row("A99999999999999999999", "");
}

void ConfigurationTest::wells()
{
    QFETCH(QString, text);
    QFETCH(QString, canonical);
    QString problem;
    const auto wells = readWells(text, 32, 48, &problem);
    QCOMPARE(bool(wells), !canonical.isEmpty());
    if (!wells) {
        QVERIFY2(problem.contains(QLatin1String("A1 to AF48")), qPrintable(problem));
        return;
    }
    QCOMPARE(wells->size(), 1536);
    QCOMPARE(writeWells(*wells, 48), canonical);
}

QTEST_GUILESS_MAIN(ConfigurationTest)
#include "tst_configuration.moc"
