#include "testdevice.h"

#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtTest/QtTest>

#include <array>
#include <atomic>
#include <thread>

using namespace qel::devices;

// What the library promises to any thread, done for the first time by several at once.
class tst_Concurrency : public QObject
{
    Q_OBJECT

private slots:
    void firstUse();
};

// The identities that every thread must see alike.
static QVariantList use(const AbsorbanceMeasurement_config &shared)
{
    AbsorbanceMeasurement_config absorbance = shared;
    absorbance.setWavelengths({450, 620});
    LuminescenceMeasurement_config luminescence;
    luminescence.setIntegrationTime(std::chrono::milliseconds(1));
    luminescence.setSelectedWells({true});
    QVariantList seen{quintptr(&LogCDevices()), quintptr(&LogCDriver())};
    for (const QVariantHash &record :
         {QVariantHash(absorbance), QVariantHash(luminescence), QVariantHash(Orientation_result()),
          QVariantHash(LedBarEffect_config())}) {
        QStringList keys = record.keys();
        keys.sort();
        for (const QString &key : std::as_const(keys))
            seen << key << record.value(key).userType();
    }
    seen << QVariant(absorbance.value("wavelengths").value<QVariantList>());
    TestDevice device;
    for (const int code : {NO_DEVICE_ERROR, ERROR_DEVICE_TIMEOUT}) {
        device.setError(code, {});
        seen << device.errorTrId();
    }
    return seen;
}

void tst_Concurrency::firstUse()
{
    QLoggingCategory::setFilterRules("qel.*=false");
    AbsorbanceMeasurement_config shared;
    shared.setRapidModeEnabled(true);
    std::array<QVariantList, 8> seen;
    std::array<std::thread, 8> threads;
    std::atomic<int> missing{int(threads.size())};
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i] = std::thread([&, i] {
            --missing;
            while (missing > 0)
                std::this_thread::yield();
            seen[i] = use(shared);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(seen[0].contains("libqeldevices-ERROR_DEVICE_TIMEOUT"));
    QVERIFY(seen[0].contains(QVariant(QVariantList{450, 620})));
    QVERIFY(seen[0].contains(qMetaTypeId<LedBarEffect_config::Modes>()));
    for (const QVariantList &each : seen)
        QCOMPARE(each, seen[0]);
    QCOMPARE(shared.size(), 1);
}

QTEST_APPLESS_MAIN(tst_Concurrency)
#include "tst_concurrency.moc"
