// Prints the median and the 90th percentile of a time in µs, tab separated.
//
//   remote_benchmark call SERIAL COUNT PLUGIN   to execute a feature that is over at once
//   remote_benchmark run SERIAL COUNT PLUGIN    to measure a plate of 96 wells
//   remote_benchmark echo ADDRESS COUNT         to send a message to another process and get it
//   back
#include "instruments.grpc.pb.h"

#include <qelfrontend/enumeration.h>
#include <qelfrontend/selection.h>

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <signal.h>
#include <unistd.h>

using namespace qel::devices;
using namespace qel::rpc;

static void print(int count, const std::function<void()> &operation)
{
    for (int i = 0; i < count / 10 + 1; ++i)
        operation();
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        QElapsedTimer timer;
        timer.start();
        operation();
        times.push_back(double(timer.nsecsElapsed()) / 1000);
    }
    std::sort(times.begin(), times.end());
    std::printf("%.1f\t%.1f\n", times[times.size() / 2], times[times.size() * 9 / 10]);
}

class Echo final : public wire::Instruments::Service
{
    grpc::Status Watch(grpc::ServerContext *,
                       grpc::ServerReaderWriter<wire::Told, wire::Ask> *stream) override
    {
        wire::Ask ask;
        while (stream->Read(&ask)) {
            wire::Told told;
            *told.mutable_hello() = ask.hello();
            stream->Write(told);
        }
        return grpc::Status::OK;
    }
};

static int echo(const char *address, int count)
{
    const pid_t other = ::fork();
    if (other == 0) {
        Echo service;
        grpc::ServerBuilder builder;
        builder.AddListeningPort(address, grpc::InsecureServerCredentials());
        builder.RegisterService(&service);
        builder.BuildAndStart()->Wait();
        return 0;
    }
    const auto channel = grpc::CreateChannel(address, grpc::InsecureChannelCredentials());
    channel->WaitForConnected(std::chrono::system_clock::now() + std::chrono::seconds(10));
    const auto stub = wire::Instruments::NewStub(channel);
    grpc::ClientContext context;
    const auto stream = stub->Watch(&context);
    bool works = true;
    print(count, [&] {
        wire::Ask ask;
        ask.mutable_hello()->set_library("as long as a small call");
        wire::Told told;
        works = works && stream->Write(ask) && stream->Read(&told);
    });
    ::kill(other, SIGKILL);
    return works ? 0 : 1;
}

static void await(const std::function<bool()> &isThere)
{
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [] { qFatal("no answer within a minute"); });
    limit.start(60000);
    while (!isThere())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

static int drive(char *arguments[], Device::DeviceFeature feature)
{
    const char *const serial = arguments[2];
    if (!DeviceBroker::loadPlugin(QString::fromLocal8Bit(arguments[4])))
        qFatal("no driver plugin '%s'", arguments[4]);
    QString problem;
    std::optional<DeviceInfo> info;
    QElapsedTimer patience;
    patience.start();
    while (!info && patience.elapsed() < 20000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        info = qel::frontend::selectDevice(QString::fromLocal8Bit(serial),
                                           qel::frontend::enumerate().devices(), &problem);
    }
    if (!info)
        qFatal("%s", qPrintable(problem));
    const std::unique_ptr<Device> device(DeviceBroker::createDevice(*info));
    device->open();
    await([&] { return device->isOpen() && device->hasFeature(feature); });
    bool works = true;
    print(std::atoi(arguments[3]), [&] {
        bool isOver = false;
        const auto connection = QObject::connect(
            device.get(), &Device::executed, [&](Device::DeviceFeature, bool ok, const QVariant &) {
                works = works && ok;
                isOver = true;
            });
        device->execute(feature);
        await([&] { return isOver; });
        QObject::disconnect(connection);
        await([&] { return !device->isBusy(); });
    });
    return works ? 0 : 1;
}

int main(int argc, char *argv[])
{
    const QByteArray what = argc > 1 ? argv[1] : "";
    if (what == "echo" && argc == 4)
        return echo(argv[2], std::atoi(argv[3]));
    QCoreApplication application(argc, argv);
    if (what == "call" && argc == 5)
        return drive(argv, Device::DF_Orientation);
    if (what == "run" && argc == 5)
        return drive(argv, Device::DF_AbsorbanceMeasurement);
    std::fputs("usage: remote_benchmark call|run|echo SERIAL|ADDRESS COUNT [PLUGIN]\n", stderr);
    return 2;
}
