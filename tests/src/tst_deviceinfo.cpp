#include <qeldevices/deviceinfo.h>

#include <QtTest/QtTest>

#include <algorithm>

using namespace qel::devices;

class tst_DeviceInfo : public QObject
{
    Q_OBJECT

private slots:
    void order();
    void debugText_data();
    void debugText();
};

// Every step to the next record decides by one field, against all the fields after it.
void tst_DeviceInfo::order()
{
    const auto record = [](int interface, const char *driver, const char *location,
                           const char *name, const char *serial) {
        return DeviceInfo(DeviceInfo::Interface(interface), driver, location, name, serial);
    };
    const QList<DeviceInfo> ascending{
        record(-1, "z", "z", "z", "z"),      record(0, "z", "z", "z", "z"),
        record(1, "", "z", "z", "z"),        record(1, "A", "z", "z", "z"),
        record(1, "Z", "z", "z", "z"),       record(1, "a", "", "z", "z"),
        record(1, "a", "B", "z", "z"),       record(1, "a", "b", "", "z"),
        record(1, "a", "b", "C", "z"),       record(1, "a", "b", "c", ""),
        record(1, "a", "b", "c", "D"),       record(1, "a", "b", "c", "d"),
        record(1, "a", "b", "c", "d1"),      record(1, "\u00e4", "", "", ""),
        record(1, "\U0001f600", "", "", ""), // by code unit, a surrogate goes before U+FF5E
        record(1, "\uff5e", "", "", ""),     record(2, "", "", "", ""),
        record(5, "", "", "", ""),
    };
    for (int i = 0; i < ascending.size(); ++i) {
        for (int j = 0; j < ascending.size(); ++j) {
            QVERIFY2((ascending[i] < ascending[j]) == (i < j), qPrintable(QString::number(i)));
            QVERIFY2((ascending[i] == ascending[j]) == (i == j), qPrintable(QString::number(i)));
        }
    }
    QList<DeviceInfo> mixed = ascending;
    std::rotate(mixed.begin(), mixed.begin() + 7, mixed.end());
    std::sort(mixed.begin(), mixed.end());
    QCOMPARE(mixed, ascending);

    const DeviceInfo null(DeviceInfo::Serial, {}, {}, {}, {});
    const DeviceInfo empty(DeviceInfo::Serial, "", "", "", "");
    QVERIFY(null == empty && !(null < empty) && !(empty < null));
    QVERIFY(null.driver().isNull() && !empty.driver().isNull());
}

void tst_DeviceInfo::debugText_data()
{
    QTest::addColumn<int>("interface");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("unknown") << 0 << "R 1"
                             << R"("R 1" @ "here" [ Unknown Interface ])";
    QTest::newRow("simulator") << 1 << "R 1"
                               << R"("R 1" @ "here" [ Simulator ])";
    QTest::newRow("serial") << 2 << "R 1"
                            << R"("R 1" @ "here" [ Serial ])";
    QTest::newRow("usb") << 3 << "R 1"
                         << R"("R 1" @ "here" [ USB HID ])";
    QTest::newRow("network") << 4 << "R 1"
                             << R"("R 1" @ "here" [ Network ])";
    QTest::newRow("above the range") << 5 << "R 1"
                                     << R"("R 1" @ "here" [  ])";
    QTest::newRow("below the range") << -1 << ""
                                     << R"("" @ "here" [  ])";
    QTest::newRow("escaped") << 2 << "a\"b\n"
                             << R"("a\"b\n" @ "here" [ Serial ])";
}

void tst_DeviceInfo::debugText()
{
    QFETCH(int, interface);
    QFETCH(QString, name);
    QString text;
    QDebug(&text) << "x" << DeviceInfo(DeviceInfo::Interface(interface), "d", "here", name, "s");
    QVERIFY(text.startsWith("x ") && text.endsWith(' '));
    QTEST(text.mid(2).chopped(1), "text");

    text.clear();
    QDebug stream(&text);
    stream.nospace().noquote();
    operator<<(stream, DeviceInfo(DeviceInfo::Serial, "d", "here", "R", "s")) << QString("|");
    stream << QString("unquoted") << 1;
    QCOMPARE(text, "R@here[Serial]|unquoted1");
}

QTEST_APPLESS_MAIN(tst_DeviceInfo)
#include "tst_deviceinfo.moc"
