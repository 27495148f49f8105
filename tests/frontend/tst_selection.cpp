#include <qelfrontend/enumeration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/provenance.h>
#include <qelfrontend/selection.h>

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>

using namespace qel::devices;
using namespace qel::frontend;

using Devices = QList<DeviceInfo>;
Q_DECLARE_METATYPE(Devices)

static DeviceInfo device(const char *driver, const char *location, const char *name,
                         const char *serial)
{
    return {DeviceInfo::Serial, QString::fromUtf8(driver), QString::fromUtf8(location),
            QString::fromUtf8(name), QString::fromUtf8(serial)};
}

class SelectionTest : public QObject
{
    Q_OBJECT

private slots:
    void selectsDevice_data();
    void selectsDevice();
    void selectsFeature_data();
    void selectsFeature();
    void comparesEnumerations_data();
    void comparesEnumerations();
    void enumeratesDrivers();
    void speaksTheInstalledLanguage();
};

void SelectionTest::selectsDevice_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found"); // the location, or else what the sentence says
    QTest::addColumn<int>("candidates");
    const auto row = [](const char *text, const char *found, int candidates = 0) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(found) << candidates;
    };
    row("SN-100", "one");
    row("SN-1001", "two");
    row("sn-1001", "two");
    row("sim/one", "one");
    row("sim/t", "two");
    row("usb", "hid");
    row("Reader", "one");
    row("reader 2", "two");
    row("SN-100 ", "There is no instrument \"SN-100 \"", 5);
    row("SN-1", "means more than one", 2);
    row("sim", "means more than one", 2);
    row("Ä", "hid");
    row("SN-DUP", "means more than one", 2);
    row("one", "There is no instrument", 5);
    row("", "There is no instrument", 5);
    row("\033[2J", "\357\277\275[2J", 5);
}

void SelectionTest::selectsDevice()
{
    QFETCH(QString, text);
    QFETCH(QString, found);
    QFETCH(int, candidates);
    const QList<DeviceInfo> devices = {
        device("sim", "one", "Reader", "SN-100"), device("sim", "two", "Reader 2", "SN-1001"),
        device("usb-hid", "hid", "Ä", ""),        device("x", "1", "", "SN-DUP"),
        device("x", "2", "", "SN-DUP"),           device("usb-hid", "hid", "Ä", ""),
    };
    QString problem;
    const auto selected = selectDevice(text, devices, &problem);
    QCOMPARE(bool(selected), candidates == 0);
    if (selected) {
        QCOMPARE(selected->location(), found);
        return;
    }
    QVERIFY2(problem.contains(found), qPrintable(problem));
    QVERIFY(!problem.contains(QChar(0x1b)));
    if (candidates == 2)
        QCOMPARE(problem.count(u'\n'), candidates);
    QVERIFY(!selectDevice(text, {}, &problem));
}

void SelectionTest::selectsFeature_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("feature");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *text, int feature, const char *named = "") {
        QTest::newRow(text) << QString::fromLatin1(text) << feature << QString::fromLatin1(named);
    };
    row("DF_AbsorbanceMeasurement", Device::DF_AbsorbanceMeasurement);
    row("AbsorbanceMeasurement", Device::DF_AbsorbanceMeasurement);
    row("absorbance-measurement", Device::DF_AbsorbanceMeasurement);
    row("absorbanceMeasurement", Device::DF_AbsorbanceMeasurement);
    row("ABS", Device::DF_AbsorbanceMeasurement);
    row("df-firmware-info", Device::DF_FirmwareInfo);
    row("led-bar", Device::DF_LedBarEffect);
    row("p", -1, "plate-detection, parts-aligned");
    row("firmware", -1, "firmware-info, firmware-update");
    row("none", -1, "ambient-temperature, absorbance-measurement");
    row("df_", -1, "led-bar-effect");
    row("", -1, "led-bar-effect");
    row("absorbances", -1, "There is no feature \"absorbances\"");
}

void SelectionTest::selectsFeature()
{
    QFETCH(QString, text);
    QFETCH(int, feature);
    QFETCH(QString, named);
    QString problem;
    const auto selected = selectFeature(text, &problem);
    QCOMPARE(selected ? int(*selected) : -1, feature);
    QVERIFY2(problem.contains(named), qPrintable(problem));
}

void SelectionTest::comparesEnumerations_data()
{
    QTest::addColumn<Devices>("before");
    QTest::addColumn<Devices>("now");
    QTest::addColumn<QString>("expected"); // arrived, left, changed
    const auto row = [](const char *name, const Devices &before, const Devices &now,
                        const char *expected) {
        QTest::newRow(name) << before << now << QString::fromLatin1(expected);
    };
    const auto a = device("d", "1", "A", "S1");
    const auto b = device("d", "2", "B", "S2");
    row("nothing", {a, b}, {b, a}, "0 0 0");
    row("arrived", {a}, {a, b}, "1 0 0");
    row("left", {a, b}, {b}, "0 1 0");
    row("renamed", {a}, {device("d", "1", "A'", "S1")}, "0 0 1");
    row("moved", {a, b}, {b, device("d", "3", "A", "S1")}, "0 0 1");
    row("serial found out", {device("d", "1", "A", "")}, {a}, "0 0 1");
    row("another in its place", {a}, {device("d", "1", "A", "S9")}, "1 1 0");
    row("another driver", {a}, {device("e", "1", "A", "S1")}, "1 1 0");
    row("one of twins", {a, a}, {a}, "0 1 0");
    row("swapped places", {a, b}, {device("d", "2", "A", "S1"), device("d", "1", "B", "S2")},
        "0 0 2");
    row("one of two without serials moved", {device("d", "1", "A", ""), device("d", "2", "A", "")},
        {device("d", "2", "A", ""), device("d", "3", "A", "")}, "1 1 0");
}

void SelectionTest::comparesEnumerations()
{
    QFETCH(Devices, before);
    QFETCH(Devices, now);
    QFETCH(QString, expected);
    const auto change = difference(before, now);
    QCOMPARE(QStringLiteral("%1 %2 %3")
                 .arg(change.arrived.size())
                 .arg(change.left.size())
                 .arg(change.changed.size()),
             expected);
    QCOMPARE(change.isEmpty(), expected == QLatin1String("0 0 0"));
}

class ListingDriver : public DeviceDriver
{
public:
    ListingDriver(QString name, QList<DeviceInfo> devices)
        : m_name(std::move(name))
        , m_devices(std::move(devices))
    { }
    QString name() override
    {
        return m_name;
    }
    Device *createDevice(const DeviceInfo &) override
    {
        return nullptr;
    }
    QList<DeviceInfo> availableDevices() override
    {
        // A driver may bring others with it while it searches.
        DeviceBroker::addDriver(std::make_shared<ListingDriver>(QStringLiteral("late"), m_devices));
        return m_devices;
    }

private:
    QString m_name;
    QList<DeviceInfo> m_devices;
};

void SelectionTest::enumeratesDrivers()
{
    const auto second = device("b", "1", "B", "");
    const auto first = device("a", "1", "A", "");
    DeviceBroker::addDriver(
        std::make_shared<ListingDriver>(QStringLiteral("b"), QList<DeviceInfo>{second, first}));
    DeviceBroker::addDriver(
        std::make_shared<ListingDriver>(QStringLiteral("a"), QList<DeviceInfo>{}));

    const auto all = enumerate();
    QCOMPARE(all.answers.size(), 2);
    QCOMPARE(all.answers[0].driver, QStringLiteral("a"));
    QCOMPARE(all.answers[1].devices.size(), 2);
    QCOMPARE(all.devices(), (QList<DeviceInfo>{first, second}));
    const auto some = enumerate({QStringLiteral("a"), QStringLiteral("unknown")});
    QCOMPARE(some.answers.size(), 1);
    // These drivers are part of the test, not of a plugin.
    QVERIFY(!pluginOfDriver(QStringLiteral("a")));
    QVERIFY(!pluginOfDriver(QStringLiteral("unknown")));
}

void SelectionTest::speaksTheInstalledLanguage()
{
    QString problem;
    const auto ask = [&problem] {
        selectDevice(QStringLiteral("x"), {}, &problem);
        return problem.left(20);
    };
    const QString english = QStringLiteral("There is no instrume");
    QCOMPARE(ask(), english);
    installTranslations(QLocale(QLocale::German, QLocale::Austria));
    QCOMPARE(ask(), QStringLiteral("Es gibt kein Gerät „"));
    installTranslations(QLocale(QLocale::French));
    QCOMPARE(ask(), english);
}

QTEST_GUILESS_MAIN(SelectionTest)
#include "tst_selection.moc"
