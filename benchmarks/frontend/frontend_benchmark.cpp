// Times in C++ what benchmarks/python_benchmark times in Python: prints a line for each operation,
// tab separated: its name, then the median of its times in µs. The first argument is the serial of
// the reader of 96 wells, the second that of the one of 1536, the third how often each is done.
#include <qelfrontend/configuration.h>
#include <qelfrontend/enumeration.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/run.h>
#include <qelfrontend/runjson.h>
#include <qelfrontend/selection.h>
#include <qelfrontend/startup.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

using namespace qel::devices;
using namespace qel::frontend;

static constexpr auto feature = Device::DF_AbsorbanceMeasurement;

static std::unique_ptr<Device> deviceOf(const char *serial)
{
    QString problem;
    const auto info = selectDevice(QString::fromLocal8Bit(serial), enumerate().devices(), &problem);
    if (!info)
        qFatal("%s", qPrintable(problem));
    return std::unique_ptr<Device>(DeviceBroker::createDevice(*info));
}

// Opens the device as well, where it is not yet open.
static Outcome measure(Device *device)
{
    RunRequest request;
    request.feature = feature;
    request.configure = [](const QVariant &descriptor, QString *) {
        QStringList problems;
        const QJsonObject settings{{QStringLiteral("wavelengths"), QJsonArray{450}}};
        return readConfiguration(settings, descriptor, &problems);
    };
    Run run(device, request);
    QEventLoop loop;
    QObject::connect(&run, &Run::finished, &loop, &QEventLoop::quit);
    run.start();
    loop.exec();
    if (!run.outcome().isResult())
        qFatal("%s", qPrintable(run.outcome().sentence));
    return run.outcome();
}

static void print(const char *name, int count, const std::function<void()> &operation)
{
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        QElapsedTimer timer;
        timer.start();
        operation();
        times.push_back(double(timer.nsecsElapsed()) / 1000);
    }
    std::nth_element(times.begin(), times.begin() + count / 2, times.end());
    std::printf("%s\t%.2f\n", name, times[size_t(count) / 2]);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 4)
        qFatal("usage: frontend_benchmark SERIAL-96 SERIAL-1536 COUNT");
    startLibrary();
    const int count = std::max(1, std::atoi(argv[3]));

    const auto small = deviceOf(argv[1]);
    measure(small.get());
    volatile bool isOpen = false;
    print("call", count, [&] { isOpen = small->isOpen(); });
    QString problem;
    print("run", count, [&] {
        const Outcome outcome = measure(small.get());
        plateFromResult(feature, outcome.result, &problem, small->descriptor(feature));
    });

    const auto large = deviceOf(argv[2]);
    const Outcome outcome = measure(large.get());
    const QVariant descriptor = large->descriptor(feature);
    print("arrays", count, [&] { plateFromResult(feature, outcome.result, &problem, descriptor); });
    const RunRecord record{large->deviceInfo(),           {},     feature, descriptor,
                           large->configuration(feature), outcome};
    print("json", count,
          [&] { QJsonDocument(runToJson(record, &problem).value_or(QJsonObject())).toJson(); });
    return 0;
}
