#include "testdevice.h"

#include <qeldevices/deviceerrors.h>
#include <qeldevices/logging.h>

#include <QtCore/QProcess>

#include <array>
#include <atomic>
#include <cstdio>
#include <thread>

using namespace qel::devices;

// What every thread must see alike, among it the ids of the types that it is about to register.
static QVariantList use(const AbsorbanceMeasurement_config &shared)
{
    AbsorbanceMeasurement_config absorbance = shared;
    absorbance.setWavelengths({450, 620});
    LuminescenceMeasurement_config luminescence;
    luminescence.setIntegrationTime(std::chrono::milliseconds(1));
    luminescence.setSelectedWells({true});
    const std::array<QVariantHash, 4> records{absorbance, luminescence, Orientation_result(),
                                              LedBarEffect_config()};
    QVariantList seen{quintptr(&LogCDevices()), quintptr(&LogCDriver())};
    for (const QVariantHash &record : records) {
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

// What the library promises to any thread, done for the first time by several at once. Qt's own
// test runner stays out: its watchdog is one more thread, which the thread sanitizer cannot follow.
static int once()
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

    bool passed = shared.size() == 1 && seen[0].contains("libqeldevices-ERROR_DEVICE_TIMEOUT")
        && seen[0].contains(QVariant(QVariantList{450, 620}))
        && seen[0].contains(qMetaTypeId<LedBarEffect_config::Modes>());
    for (const QVariantList &each : seen)
        passed = passed && each == seen[0];
    return passed ? 0 : 1;
}

// A first time there is only once in a process, and a race is not lost every time.
int main(int argc, char **argv)
{
    if (argc > 1)
        return once();
    constexpr int repetitions = 50;
    int failed = 0;
    for (int i = 0; i < repetitions; ++i)
        failed += QProcess::execute(QString::fromLocal8Bit(argv[0]), {"once"}) != 0;
    std::printf("%d passed, %d failed\n", repetitions - failed, failed);
    return failed ? 1 : 0;
}
