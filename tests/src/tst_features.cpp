#include "testdevice.h"

#include <QtTest/QtTest>

using namespace qel::devices;

// In the notes, the numbers behind the bar are the features that the device has.
class tst_Features : public QObject
{
    Q_OBJECT

private slots:
    void unknownFeature();
    void addAndRemove();
    void removeAll();
    void receiversChangeTheTable();
    void descriptors();
    void configurations();
};

void tst_Features::unknownFeature()
{
    Journal journal;
    TestDevice device;
    for (const int feature : {0, 9, 12, -7}) {
        QVERIFY(!device.hasFeature(Device::DeviceFeature(feature)));
        QVERIFY(!device.descriptor(Device::DeviceFeature(feature)).isValid());
        QVERIFY(!device.configuration(Device::DeviceFeature(feature)).isValid());
    }
    device.removeAllFeatures(); // reading has made no entries
    QCOMPARE(journal.take(), QStringList());
    device.addFeature(Device::DeviceFeature(-7));
    QVERIFY(device.hasFeature(Device::DeviceFeature(-7)));
}

void tst_Features::addAndRemove()
{
    Journal journal;
    TestDevice device;
    device.addFeature(Device::DF_Calibration);
    device.addFeature(Device::DF_Calibration);
    device.removeFeature(Device::DF_Calibration);
    device.removeFeature(Device::DF_Calibration);
    QCOMPARE(journal.take(),
             QStringList({"featuresChanged | 4", "featuresChanged | 4", "featuresChanged |",
                          "featuresChanged |"}));
    device.addFeature({Device::DF_Orientation, Device::DF_None, Device::DF_Orientation});
    device.removeFeature({Device::DF_None, Device::DF_PartsAligned});
    QCOMPARE(journal.take(),
             QStringList({"featuresChanged | 9", "featuresChanged | 0 9", "featuresChanged | 0 9",
                          "featuresChanged | 9", "featuresChanged | 9"}));
    device.addFeature(QList<Device::DeviceFeature>());
    device.removeFeature(QList<Device::DeviceFeature>());
    QCOMPARE(journal.take(), QStringList());
}

void tst_Features::removeAll()
{
    TestDevice device;
    device.removeFeature(Device::DF_FirmwareUpdate);
    device.setConfiguration(Device::DF_Calibration, 2);
    device.setDescriptor(Device::DF_LedBarEffect, 1);
    device.addFeature(Device::DF_AmbientTemperature);
    Journal journal;
    device.removeAllFeatures(); // 1, 4, 7, 11: one signal each, ascending
    QCOMPARE(journal.take(),
             QStringList({"featuresChanged | 11", "featuresChanged | 11", "featuresChanged | 11",
                          "featuresChanged |"}));
    QCOMPARE(device.descriptor(Device::DF_LedBarEffect), QVariant(1));
    QCOMPARE(device.configuration(Device::DF_Calibration), QVariant(2));
    device.addFeature({Device::DF_LedBarEffect, Device::DF_Calibration});
    QCOMPARE(device.descriptor(Device::DF_LedBarEffect), QVariant(1));
    QCOMPARE(device.configuration(Device::DF_Calibration), QVariant(2));
}

// Lists are walked as they were at the call.
void tst_Features::receiversChangeTheTable()
{
    TestDevice device;
    QList<Device::DeviceFeature> features{Device::DF_Calibration, Device::DF_PlateDetection};
    int changes = 0;
    connect(&device, &Device::featuresChanged, &device, [&device, &features, &changes] {
        features.clear();
        if (++changes == 3)
            device.addFeature({Device::DF_None, Device::DF_LedBarEffect});
    });
    Journal journal;
    device.addFeature(features);
    device.removeAllFeatures();
    QCOMPARE(journal.take(),
             QStringList({"featuresChanged | 4", "featuresChanged | 4 5", "featuresChanged | 5",
                          "featuresChanged | 0 5", "featuresChanged | 0 5 11",
                          "featuresChanged | 0 11"}));
}

void tst_Features::descriptors()
{
    Journal journal;
    TestDevice device;
    connect(&device, &Device::descriptorChanged, &device,
            [&device](auto feature) { Journal::note(device.descriptor(feature).toString()); });
    for (int round = 0; round < 2; ++round) {
        device.setDescriptor(Device::DF_Orientation, QVariant());
        QVERIFY(device.hasFeature(Device::DF_Orientation));
        QCOMPARE(journal.take(), QStringList());
        device.setDescriptor(Device::DF_Orientation, "a");
        device.setDescriptor(Device::DF_Orientation, "a");
        device.setDescriptor(Device::DF_Orientation, QVariantList{1, 2});
        device.setDescriptor(Device::DF_Orientation, QVariantList{1, 2});
        device.setDescriptor(Device::DF_Orientation, QVariant());
        const QString changed = "descriptorChanged 9 | 9";
        QCOMPARE(journal.take(), QStringList({changed, "a", changed, "", changed, ""}));
        device.removeFeature(Device::DF_Orientation);
        QCOMPARE(journal.take(), QStringList{"featuresChanged |"});
    }
}

void tst_Features::configurations()
{
    Journal journal;
    TestDevice device;
    connect(&device, &Device::configurationChanged, &device,
            [&device](auto feature) { Journal::note(device.configuration(feature).toString()); });
    device.setConfiguration(Device::DF_Orientation, "a");
    device.setConfiguration(Device::DF_Orientation, "a");
    device.setConfiguration(Device::DF_Orientation, QVariant());
    const QString changed = "configurationChanged 9 |";
    QCOMPARE(journal.take(), QStringList({changed, "a", changed, "a", changed, ""}));
}

QTEST_APPLESS_MAIN(tst_Features)
#include "tst_features.moc"
