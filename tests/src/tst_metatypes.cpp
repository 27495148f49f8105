#include <qeldevices/device.h>

#include <QtCore/QProcess>
#include <QtTest/QtTest>

#include <cstdio>
#include <map>

using namespace qel::devices;

struct FirstUse
{
    const char *name;
    const char *types; // what it registers, in this order; a star marks those with a meta-object
    void (*use)();
};

// Each of these runs in a process of its own, where it is the first to use a payload record.
static const FirstUse firstUses[] = {
    {"rapid mode", "", [] { AbsorbanceMeasurement_config{}.isRapidModeEnabled(); }},
    {"wavelengths", "QList<int>", [] { AbsorbanceMeasurement_config{}.setWavelengths({}); }},
    {"integrationTime", "std::chrono::milliseconds",
     [] { LuminescenceMeasurement_config{}.integrationTime(); }},
    {"selectedWells", "QVector<bool>",
     [] { LuminescenceMeasurement_config{}.setSelectedWells({}); }},
    {"orientation", "Orientation_result::Side", [] { Orientation_result(); }},
    {"acceleration", "", [] { Orientation_result(QVariantHash()).accelerationX(); }},
    {"topSide", "Orientation_result::Side", [] { Orientation_result(QVariantHash()).topSide(); }},
    {"effect record", "LedBarEffect_Effect* LedBarEffect_config::Color LedBarEffect_config::Modes",
     [] { LedBarEffect_config(); }},
    {"effect", "LedBarEffect_Effect*", [] { LedBarEffect_config(QVariantHash()).effect(); }},
    {"color", "LedBarEffect_config::Color", [] { LedBarEffect_config(QVariantHash()).color(); }},
    {"modes", "LedBarEffect_config::Modes", [] { LedBarEffect_config(QVariantHash()).modes(); }},
    {"state", "", [] { LedBarEffect_config(QVariantHash()).state(); }},
};

// The library's registered types, in the order of their registration.
static QString registered()
{
    std::map<int, QString> names;
    for (const char *name :
         {"std::chrono::milliseconds", "QList<int>", "QVector<bool>",
          "qel::devices::Orientation_result::Side", "qel::devices::LedBarEffect_Effect",
          "qel::devices::LedBarEffect_config::Color", "qel::devices::LedBarEffect_config::Modes",
          "qel::devices::SlotStatus", "qel::devices::Device::DeviceFeature", "DeviceFeature"}) {
        const int id = QMetaType::type(name);
        const bool metaObject = QMetaType::metaObjectForType(id);
        if (id != QMetaType::UnknownType)
            names[id] = QString(name).remove("qel::devices::") + (metaObject ? "*" : "");
    }
    QStringList list;
    for (const auto &entry : names)
        list << entry.second;
    return list.join(' ');
}

class tst_MetaTypes : public QObject
{
    Q_OBJECT

private slots:
    void firstUse_data();
    void firstUse();
};

void tst_MetaTypes::firstUse_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(firstUses)); ++i)
        QTest::newRow(firstUses[i].name) << i;
}

void tst_MetaTypes::firstUse()
{
    QFETCH(int, index);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--use", QString::number(index)});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardOutput(), QByteArray(" / ") + firstUses[index].types);
}

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--use") == 0) {
        std::fputs(qPrintable(registered() + " / "), stdout);
        firstUses[QByteArray(argv[2]).toInt()].use();
        std::fputs(qPrintable(registered()), stdout);
        return 0;
    }
    QCoreApplication application(argc, argv);
    tst_MetaTypes test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_metatypes.moc"
