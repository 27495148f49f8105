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
    void storedTypes_data();
    void storedTypes();
    void reading_data();
    void reading();
    void copies();
    void effectNames();
};

static QString text(const Led::Color &color)
{
    return QStringLiteral("%1/%2/%3").arg(color.red).arg(color.green).arg(color.blue);
}

// What the getter of the field under `key` makes of `hash`, as text.
static QString read(const QString &key, const QVariantHash &hash)
{
    QString text;
    QDebug stream(&text);
    if (key == "rapidMode")
        stream << Absorbance{hash}.isRapidModeEnabled();
    else if (key == "wavelengths")
        stream << Absorbance{hash}.wavelengths();
    else if (key == "integrationTime")
        stream << qint64(Luminescence{hash}.integrationTime().count());
    else if (key == "selectedWells")
        stream << Luminescence{hash}.selectedWells();
    else if (key == "accelerationX")
        stream << Orientation_result(hash).accelerationX();
    else if (key == "accelerationY")
        stream << Orientation_result(hash).accelerationY();
    else if (key == "accelerationZ")
        stream << Orientation_result(hash).accelerationZ();
    else if (key == "topSide")
        stream << int(Orientation_result(hash).topSide());
    else if (key == "effect")
        stream << int(Led(hash).effect());
    else if (key == "color")
        stream.noquote() << ::text(Led(hash).color());
    else if (key == "mode")
        stream << int(Led(hash).modes());
    else if (key == "state")
        stream << int(Led(hash).state());
    return text.trimmed();
}

// Which type stands under each key after each way of writing it.
void tst_Payloads::storedTypes_data()
{
    QTest::addColumn<QVariantHash>("record");
    QTest::addColumn<QStringList>("entries");

    Absorbance absorbance;
    QTest::newRow("new absorbance") << QVariantHash(absorbance) << QStringList{};
    absorbance.setRapidModeEnabled(true);
    absorbance.setWavelengths({});
    absorbance.setWavelengths({450, -1, 450});
    QTest::newRow("absorbance") << QVariantHash(absorbance)
                                << QStringList{"rapidMode: bool true",
                                               "wavelengths: QList<int> (450, -1, 450)"};

    Luminescence luminescence;
    luminescence.setIntegrationTime(milliseconds(-1500));
    luminescence.setSelectedWells({true, false});
    QTest::newRow("luminescence") << QVariantHash(luminescence)
                                  << QStringList{
                                         "integrationTime: std::chrono::milliseconds -1500",
                                         "selectedWells: QVector<bool> QVector(true, false)"};

    const QString side = "topSide: qel::devices::Orientation_result::Side ";
    Orientation_result orientation;
    QTest::newRow("new orientation") << QVariantHash(orientation)
                                     << QStringList{"accelerationX: int 0", "accelerationY: int 0",
                                                    "accelerationZ: int 0", side + "2"};
    QTest::newRow("orientation") << QVariantHash(Orientation_result(0.5f, -9.81f, 0.02f, Side(1)))
                                 << QStringList{"accelerationX: float 0.5",
                                                "accelerationY: float -9.81",
                                                "accelerationZ: float 0.02", side + "1"};
    orientation.setAccelerationX(1);
    orientation.setAccelerationY(2);
    orientation.setAccelerationZ(3);
    orientation.setTopSide(Side(5));
    QTest::newRow("orientation by setters")
        << QVariantHash(orientation)
        << QStringList{"accelerationX: float 1", "accelerationY: float 2", "accelerationZ: float 3",
                       side + "5"};

    const QString color = "color: qel::devices::LedBarEffect_config::Color ";
    const QString effect = "effect: qel::devices::LedBarEffect_Effect ";
    const QString mode = "mode: qel::devices::LedBarEffect_config::Modes ";
    Led led;
    QTest::newRow("new effect") << QVariantHash(
        led) << QStringList{color + "255/255/255", effect + "0", mode + "0", "state: uint 0"};
    const Led::Modes modes = Led::Mode(0x80) | Led::Mode(0x1);
    const QStringList written{color + "10/20/30", effect + "4", mode + "129", "state: uchar 255"};
    QTest::newRow("effect") << QVariantHash(
        Led(LedBarEffect_Effect::Blinking, {10, 20, 30}, modes, 255))
                            << written;
    led.setEffect(LedBarEffect_Effect::Blinking);
    led.setColor({10, 20, 30});
    led.setModes(modes);
    led.setState(255);
    QTest::newRow("effect by setters") << QVariantHash(led) << written;
}

void tst_Payloads::storedTypes()
{
    QFETCH(QVariantHash, record);
    QStringList actual;
    for (auto entry = record.cbegin(); entry != record.cend(); ++entry) {
        actual << QStringLiteral("%1: %2 %3")
                      .arg(entry.key(), QLatin1String(entry->typeName()),
                           read(entry.key(), record));
    }
    actual.sort();
    QTEST(actual, "entries");
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
    row("rapidMode", 2.5, "true");
    row("rapidMode", "FALSE", "false");
    row("rapidMode", "0", "false");
    row("rapidMode", "no", "true");
    row("rapidMode", QVariantList{true}, "false");
    row("wavelengths", {}, "()");
    row("wavelengths", QVariantList{450, 620}, "()");
    row("wavelengths", 450, "()");
    row("integrationTime", {}, "0");
    row("integrationTime", 1000.0, "0"); // as from JSON
    row("integrationTime", "1000", "0");
    row("selectedWells", {}, "QVector()");
    row("selectedWells", QVariantList{true}, "QVector()");
    row("selectedWells", QVariant::fromValue(QList<bool>{true}), "QVector()");
    row("accelerationX", {}, "0");
    row("accelerationY", "1.5", "1.5");
    row("accelerationY", "abc", "0");
    row("accelerationZ", true, "1");
    row("accelerationZ", 0.1, "0.1");
    row("accelerationX", QVariantList{1}, "0");
    row("topSide", {}, "0");
    row("topSide", 1, "1");
    row("topSide", "Front", "0");
    row("topSide", QVariant::fromValue(Side(77)), "77");
    row("effect", {}, "0");
    row("effect", 3, "3");
    row("effect", "Breathing", "5");
    row("effect", "breathing", "0");
    row("effect", QVariantList{3}, "0");
    row("color", {}, "0/0/0");
    row("color", 0xffffff, "0/0/0");
    row("color", "white", "0/0/0");
    row("mode", {}, "0");
    row("mode", 1, "0");
    row("state", {}, "0");
    row("state", "7", "7");
    row("state", true, "1");
    row("state", 200.0, "200");
    row("state", "on", "0");
}

void tst_Payloads::reading()
{
    QFETCH(QVariant, value);
    const QString key = QString::fromLatin1(QTest::currentDataTag()).section(',', 0, 0);
    QVariantHash record{{key.toUpper(), 1}};
    if (value.isValid())
        record.insert(key, value);
    QTEST(read(key, record), "result");
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
