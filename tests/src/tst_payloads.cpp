#include <qeldevices/device.h>

#include <QtTest/QtTest>

#include <type_traits>

using namespace qel::devices;
using Absorbance = AbsorbanceMeasurement_config;
using Luminescence = LuminescenceMeasurement_config;
using Led = LedBarEffect_config;
using Side = Orientation_result::Side;
using std::chrono::milliseconds;

static_assert(std::is_same_v<decltype(Led::EFFECT), const char *>);
static_assert(std::is_same_v<decltype(Absorbance::WAVELENGTHS), const char *>);
static_assert(Orientation_result::TOP_SIDE[0] == 't');
static_assert(sizeof(Led) == sizeof(QVariantHash) && sizeof(Led::Modes) == 4);
static_assert(sizeof(LedBarEffect_Effect) == 1 && sizeof(Led::Color) == 3 && sizeof(Side) == 4);

class tst_Payloads : public QObject
{
    Q_OBJECT

private slots:
    void storedTypes();
    void reading_data();
    void reading();
    void copies();
    void effectNames();
};

// What each getter makes of `hash`, as text under the key of its field.
static QMap<QString, QString> read(const QVariantHash &hash)
{
    const Absorbance absorbance{hash};
    const Luminescence luminescence{hash};
    const Orientation_result orientation(hash);
    const Led led(hash);
    const Led::Color color = led.color();
    QMap<QString, QString> texts;
    QDebug(&texts["rapidMode"]).nospace() << absorbance.isRapidModeEnabled();
    QDebug(&texts["wavelengths"]).nospace() << absorbance.wavelengths();
    QDebug(&texts["integrationTime"]).nospace() << qint64(luminescence.integrationTime().count());
    QDebug(&texts["selectedWells"]).nospace() << luminescence.selectedWells();
    QDebug(&texts["accelerationX"]).nospace() << orientation.accelerationX();
    QDebug(&texts["accelerationY"]).nospace() << orientation.accelerationY();
    QDebug(&texts["accelerationZ"]).nospace() << orientation.accelerationZ();
    QDebug(&texts["topSide"]).nospace() << int(orientation.topSide());
    QDebug(&texts["effect"]).nospace() << int(led.effect());
    QDebug(&texts["color"]).nospace() << color.red << "/" << color.green << "/" << color.blue;
    QDebug(&texts["mode"]).nospace() << int(led.modes());
    QDebug(&texts["state"]).nospace() << int(led.state());
    return texts;
}

// The type and the value that stand under each key after each way of writing it.
void tst_Payloads::storedTypes()
{
    QStringList lines;
    const auto dump = [&lines](const QString &title, const QVariantHash &record) {
        lines << title;
        const QMap<QString, QString> texts = read(record);
        for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
            const QString type = QLatin1String(record.value(text.key()).typeName());
            if (record.contains(text.key()))
                lines << text.key() + ' ' + type + ' ' + text.value();
        }
    };
    Absorbance absorbance;
    dump("new absorbance", absorbance);
    absorbance.setWavelengths({});
    dump("absorbance without wavelengths", absorbance);
    absorbance.setRapidModeEnabled(true);
    absorbance.setWavelengths({450, -1, 450});
    dump("absorbance by setters", absorbance);

    Luminescence luminescence;
    dump("new luminescence", luminescence);
    luminescence.setIntegrationTime(milliseconds(-1500));
    luminescence.setSelectedWells({true, false});
    dump("luminescence by setters", luminescence);

    Orientation_result orientation;
    dump("new orientation", orientation);
    dump("orientation of four values", Orientation_result(0.5f, -9.81f, 0.02f, Side(1)));
    orientation.setAccelerationX(1);
    orientation.setAccelerationY(2);
    orientation.setAccelerationZ(3);
    orientation.setTopSide(Side(5));
    dump("orientation by setters", orientation);

    Led led;
    dump("new effect", led);
    dump("effect of four values",
         Led(LedBarEffect_Effect::Blinking, {10, 20, 30}, Led::Mode(0x80) | Led::Mode(0x1), 7));
    led.setEffect(LedBarEffect_Effect::Rainbow);
    led.setColor({40, 50, 60});
    led.setModes(Led::Mode(0x2));
    led.setState(255);
    dump("effect by setters", led);

    QFile expected(QFINDTESTDATA("expected/records.txt"));
    QVERIFY(expected.open(QFile::ReadOnly));
    QCOMPARE(lines, QString::fromUtf8(expected.readAll()).chopped(1).split('\n'));
}

// What a getter makes of an entry that is missing (an invalid value here) or of another type.
void tst_Payloads::reading_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *key, const QVariant &value, const char *result) {
        QTest::addRow("%s, %s %s", key, value.typeName(), qPrintable(value.toString()))
            << value << result;
    };
    row("rapidMode", {}, "false");
    row("rapidMode", "FALSE", "false");
    row("rapidMode", QVariantList{true}, "false");
    row("wavelengths", {}, "()");
    row("wavelengths", QVariantList{450, 620}, "()");
    row("integrationTime", {}, "0");
    row("integrationTime", 1000.0, "0"); // as from JSON
    row("selectedWells", QVariant::fromValue(QList<bool>{true}), "QVector()");
    row("accelerationX", {}, "0");
    row("accelerationY", "1.5", "1.5");
    row("accelerationZ", 0.1, "0.1");
    row("topSide", {}, "0");
    row("topSide", 1, "1");
    row("effect", {}, "0");
    row("effect", 3, "3");
    row("effect", "Breathing", "5");
    row("color", {}, "0/0/0");
    row("color", 0xffffff, "0/0/0");
    row("mode", {}, "0");
    row("mode", 1, "0");
    row("state", {}, "0");
    row("state", "7", "7");
}

void tst_Payloads::reading()
{
    QFETCH(QVariant, value);
    const QString key = QString::fromLatin1(QTest::currentDataTag()).section(',', 0, 0);
    QVariantHash record{{key.toUpper(), 1}};
    if (value.isValid())
        record.insert(key, value);
    QTEST(read(record).value(key), "result");
    QCOMPARE(record.size(), value.isValid() ? 2 : 1);
}

void tst_Payloads::copies()
{
    Luminescence original;
    QVector<bool> wells(96, false);
    wells[1] = wells[95] = true;
    original.setSelectedWells(wells);
    original.insert("foreign", 1);
    Luminescence copy = original;
    copy.setIntegrationTime(milliseconds(1500));
    copy.setSelectedWells({});
    QCOMPARE(original.selectedWells(), wells);
    QVERIFY(!original.contains("integrationTime"));
    original.remove("foreign");
    QCOMPARE(copy.value("foreign"), QVariant(1));

    const QVariant travelling(copy);
    QCOMPARE(travelling.userType(), int(QMetaType::QVariantHash));
    const Luminescence received{travelling.toHash()};
    QCOMPARE(received.integrationTime().count(), 1500);
    QCOMPARE(received.keys().size(), 3);
}

void tst_Payloads::effectNames()
{
    QCOMPARE(QVariant::fromValue(LedBarEffect_Effect::Cylon).toString(), "Cylon");
    QVERIFY(QVariant("Breathing").value<LedBarEffect_Effect>() == LedBarEffect_Effect::Breathing);
    const QVariant list = QVariant::fromValue(QList<int>{450, 620});
    QCOMPARE(list.value<QVariantList>(), QVariantList({450, 620}));
    const QVariant vector = QVariant::fromValue(QVector<bool>{true});
    QCOMPARE(vector.value<QVariantList>(), QVariantList{true});
}

QTEST_APPLESS_MAIN(tst_Payloads)
#include "tst_payloads.moc"
