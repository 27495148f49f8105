#include <qelvalues/settings.h>

#include <QtCore/QDate>
#include <QtTest/QTest>

#include <chrono>
#include <limits>

using namespace qel::devices;
using namespace qel::values;

template<typename T>
static QVariant of(const T &value)
{
    return QVariant::fromValue(value);
}

static QString s(const char *text)
{
    return QString::fromUtf8(text);
}

static QVariantHash setting(const char *type, const QVariantHash &more = QVariantHash())
{
    QVariantHash entry = more;
    entry.insert(s("type"), s(type));
    return entry;
}

static QVariant descriptorWith(const QVariantHash &settings)
{
    return QVariantHash{{s("settings"), settings}};
}

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void configurations_data();
    void configurations();
    void wholeConfigurations();
    void descriptions_data();
    void descriptions();
    void fixedSettings();
};

void SettingsTest::configurations_data()
{
    QTest::addColumn<QVariantHash>("setting");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("problem");
    const auto row = [](const QVariantHash &setting, const QVariant &value, const char *problem) {
        QTest::addRow("%s %s %s", qPrintable(setting.value(s("type")).toString()), value.typeName(),
                      problem)
            << setting << value << s(problem);
    };
    const auto choices = setting("QList<int>", {{s("choices"), QVariantList{450, 620}}});
    row(choices, of(QList<int>{620, 450}), "");
    row(choices, of(QList<int>()), "");
    row(choices, of(QList<int>{450, 500}), "x[1] must not be 500; it takes QList<int> of 450, 620");
    row(choices, QVariantList{450}, "x is QVariantList, not QList<int>");
    row(choices, 450, "x is int, not QList<int>");
    row(choices, {}, "x is missing; it takes QList<int> of 450, 620");
    row(setting("int", {{s("default"), 1}}), {}, "");

    const auto limits = setting("std::chrono::milliseconds",
                                {{s("minimum"), 10}, {s("maximum"), 100}, {s("step"), 5}});
    const auto time = [](int count) { return of(std::chrono::milliseconds(count)); };
    row(limits, time(10), "");
    row(limits, time(100), "");
    row(limits, time(9),
        "x must not be 9; it takes std::chrono::milliseconds from 10 to 100 in steps of 5");
    row(limits, time(105),
        "x must not be 105; it takes std::chrono::milliseconds from 10 to 100 in steps of 5");
    row(limits, time(12),
        "x must not be 12; it takes std::chrono::milliseconds from 10 to 100 in steps of 5");
    row(limits, 10, "x is int, not std::chrono::milliseconds");
    const auto tenths = setting("double", {{s("minimum"), 0.5}, {s("step"), 0.1}});
    row(tenths, 0.8, "");
    row(tenths, 0.85, "x must not be 0.85; it takes double from 0.5 in steps of 0.1");
    row(setting("double"), std::numeric_limits<double>::quiet_NaN(),
        "x must not be nan; it takes double");

    const auto wells = setting("QVector<bool>", {{s("length"), 2}});
    row(wells, of(QVector<bool>(2)), "");
    row(wells, of(QVector<bool>()), "");
    row(wells, of(QVector<bool>(3)), "x has 3 elements, not 2");

    const auto flags =
        setting("qel::devices::LedBarEffect_config::Modes", {{s("choices"), QVariantList{1, 4}}});
    row(flags, of(LedBarEffect_config::Reversed | LedBarEffect_config::Once), "");
    row(flags, of(LedBarEffect_config::Modes(QFlag(0x11))),
        "x must not be 16; it takes qel::devices::LedBarEffect_config::Modes of 1, 4");
    const auto names =
        setting("qel::devices::LedBarEffect_Effect", {{s("choices"), QVariantList{s("Solid"), 3}}});
    row(names, of(LedBarEffect_Effect::Solid), "");
    row(names, of(LedBarEffect_Effect::Rainbow), "");
    row(names, of(LedBarEffect_Effect::Cylon),
        "x must not be Cylon; it takes qel::devices::LedBarEffect_Effect of Solid, 3");
    const auto texts = setting("QString", {{s("choices"), QVariantList{s("flat")}}});
    row(texts, s("flat"), "");
    row(texts, s("round"), "x must not be round; it takes QString of flat");

    // LedBarEffect_config's default constructor stores its state as uint.
    row(setting("uchar"), 255u, "");
    row(setting("uchar"), 256u, "x is uint, not uchar");
    row(setting("QSizeF"), QVariant(QDate()), "x is QDate, not QSizeF");
    // A limit that makes no sense is none.
    row(setting("int", {{s("minimum"), s("low")}, {s("step"), -1}, {s("maximum"), qInf()}}), 7, "");
}

void SettingsTest::configurations()
{
    QFETCH(QVariantHash, setting);
    QFETCH(QVariant, value);
    QFETCH(QString, problem);
    const QVariant configuration =
        value.isValid() ? QVariantHash{{s("x"), value}} : QVariantHash{{s("y"), 1}};
    QCOMPARE(toString(checkConfiguration(configuration, descriptorWith({{s("x"), setting}}))),
             problem);
}

void SettingsTest::wholeConfigurations()
{
    const auto descriptor = descriptorWith({{s("a"), setting("int")}, {s("b"), setting("bool")}});
    QCOMPARE(toString(checkConfiguration({}, descriptor)),
             s("a is missing; it takes int; b is missing; it takes bool"));
    QCOMPARE(toString(checkConfiguration(QVariantList(), descriptor)),
             s("the configuration is QVariantList, not QVariantHash"));
    QCOMPARE(toString(checkConfiguration({}, {})), QString());
}

void SettingsTest::descriptions_data()
{
    QTest::addColumn<QVariant>("description");
    QTest::addColumn<QString>("problem");
    const auto row = [](const QVariant &description, const char *problem) {
        QTest::addRow("%s", problem) << description << s(problem);
    };
    row(1, " is int, not QVariantHash");
    row(QVariantHash(), ".type is \"\", which is no type of a setting");
    row(setting("wavelength"), ".type is \"wavelength\", which is no type of a setting");
    row(setting("int", {{s("minimum"), s("low")}}), ".minimum is QString, not int or double");
    row(setting("int", {{s("minimum"), 5}, {s("maximum"), 4}}), ".minimum is 5, which cannot be");
    row(setting("int", {{s("default"), 5.0}}), ".default is double, not int");
    row(setting("int", {{s("default"), 5}, {s("maximum"), 4}}), ".default is 5, which cannot be");
    row(setting("int", {{s("choices"), s("1,2")}}), ".choices is QString, not QVariantList");
    row(setting("int", {{s("choices"), QVariantList()}}), ".choices is [], which cannot be");
    row(setting("int", {{s("choices"), QVariantList{1}}, {s("names"), QStringList()}}),
        ".names has 0 names for 1 choices");
    row(setting("int", {{s("choices"), QVariantList{1}}, {s("names"), 1}}),
        ".names is int, not QStringList");
}

void SettingsTest::descriptions()
{
    QFETCH(QVariant, description);
    QFETCH(QString, problem);
    QCOMPARE(
        toString(checkSettings(Device::DF_Calibration, descriptorWith({{s("x"), description}}))),
        s("descriptor.settings.x") + problem);
}

void SettingsTest::fixedSettings()
{
    const auto feature = Device::DF_LuminescenceMeasurement;
    QCOMPARE(toString(checkSettings(feature, {})),
             s("descriptor.settings is missing, not QVariantHash"));
    QCOMPARE(toString(checkSettings(Device::DF_Calibration, {})), QString());
    const auto descriptor = descriptorWith({{s("integrationTime"), setting("int")}});
    QCOMPARE(toString(checkSettings(feature, descriptor)),
             s("descriptor.settings.integrationTime.type is \"int\","
               " not \"std::chrono::milliseconds\""));
    QCOMPARE(toString(checkSettings(Device::DF_LedBarEffect, descriptor)), QString());
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
