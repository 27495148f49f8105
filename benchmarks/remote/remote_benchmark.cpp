// Each plugin is one that finds simulated instruments: itself, in another process or elsewhere. The
// first three print the median and the 90th percentile of a time in µs, tab separated.
//
//   remote_benchmark close COUNT PLUGIN      to close a device, which is a command and its answer
//   remote_benchmark call COUNT PLUGIN       to execute a feature that is over at once
//   remote_benchmark run COUNT PLUGIN        to measure a plate of 96 wells
//   remote_benchmark echo COUNT ADDRESS      the same for a message to another process and back
//   remote_benchmark handover COUNT ADDRESS  the same between the event loops of both processes
//   remote_benchmark sessions COUNT PLUGIN   opens so many instruments; with each line of its
//                                            input, measures a plate in all of them at once and
//                                            prints the time in ms and how many results there are
//   remote_benchmark watch COUNT PLUGIN FIRST
//                                            watches so many instruments from the FIRST on, as long
//                                            as its input is open
//   remote_benchmark search COUNT PLUGIN FIRST
//                                            and looks each second which ones there are
#include "instruments.grpc.pb.h"

#include <clientstream.h>
#include <serverstream.h>

#include <qelfrontend/enumeration.h>
#include <qelfrontend/instrumentwatch.h>
#include <qelfrontend/run.h>

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QSocketNotifier>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace qel::devices;
using namespace qel::rpc;
using namespace qel::frontend;
using Devices = std::vector<std::unique_ptr<Device>>;

constexpr int patience = 60000; // ms

static void print(
    int count, const std::function<void()> &operation, const std::function<void()> &prepare = [] {})
{
    for (int i = 0; i < count / 10 + 1; ++i) {
        prepare();
        operation();
    }
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        operation();
        times.push_back(double(timer.nsecsElapsed()) / 1000);
    }
    std::sort(times.begin(), times.end());
    std::printf("%.1f\t%.1f\n", times[times.size() / 2], times[times.size() * 9 / 10]);
}

// The child does not outlive the one that has started it.
static pid_t forkPeer()
{
    const pid_t peer = ::fork();
    if (peer == 0)
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    return peer;
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

static int echo(int count, const char *address)
{
    const pid_t other = forkPeer();
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
    limit.start(patience);
    while (!isThere())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

using EchoServer = ServerStream<wire::Told, wire::Ask>;
using EchoClient = ClientStream<wire::Ask, wire::Told>;

static int answerInEventLoop(const char *address)
{
    wire::Instruments::AsyncService service;
    grpc::ServerBuilder builder;
    builder.AddListeningPort(address, grpc::InsecureServerCredentials());
    builder.RegisterService(&service);
    auto calls = builder.AddCompletionQueue();
    auto *const queue = calls.get();
    Completions completions(std::move(calls));
    const auto server = builder.BuildAndStart();
    QObject here;
    std::shared_ptr<EchoServer> stream;
    const auto answer = [&stream] {
        const auto asked = stream->take();
        for (const wire::Ask &ask : asked) {
            wire::Told told;
            *told.mutable_hello() = ask.hello();
            stream->send(std::move(told));
        }
    };
    EchoServer::accept(
        &completions,
        [&](auto *context, auto *call, void *tag) {
            service.RequestWatch(context, call, queue, queue, tag);
        },
        [&](std::shared_ptr<EchoServer> arrived, const std::string &) {
            stream = std::move(arrived);
            stream->attach(&here, answer);
        });
    return QCoreApplication::exec();
}

static int handOver(int count, const char *address, QCoreApplication *application)
{
    const auto channel = grpc::CreateChannel(address, grpc::InsecureChannelCredentials());
    channel->WaitForConnected(std::chrono::system_clock::now() + std::chrono::seconds(10));
    const auto stub = wire::Instruments::NewStub(channel);
    const auto stream =
        EchoClient::start([&](grpc::ClientContext *context, grpc::CompletionQueue *queue) {
            return stub->PrepareAsyncWatch(context, queue);
        });
    std::size_t sent = 0;
    std::size_t arrived = 0;
    stream->attach(application, [&] { arrived += stream->take().size(); });
    print(count, [&] {
        wire::Ask ask;
        ask.mutable_hello()->set_library("as long as a small call");
        stream->send(std::move(ask));
        ++sent;
        await([&] { return arrived == sent || stream->hasEnded(); });
    });
    stream->detach();
    stream->cancel();
    return arrived == sent ? 0 : 1;
}

// The first ones that the plugin finds.
static Devices createDevices(int count, const char *plugin)
{
    if (!DeviceBroker::loadPlugin(QString::fromLocal8Bit(plugin)))
        qFatal("no driver plugin '%s'", plugin);
    QElapsedTimer age;
    age.start();
    QList<DeviceInfo> found;
    while (found.size() < count && age.elapsed() < patience) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        found = enumerate().devices();
    }
    if (found.size() < count)
        qFatal("%d instruments instead of %d", found.size(), count);
    Devices devices;
    for (int i = 0; i < count; ++i)
        devices.emplace_back(DeviceBroker::createDevice(found[i]));
    return devices;
}

// All at once. Returns how many have a result, and leaves a sentence for those that have none.
static std::size_t runAll(const Devices &devices, const RunRequest &request, QString *problem)
{
    std::vector<std::unique_ptr<Run>> runs;
    std::size_t ended = 0;
    std::size_t results = 0;
    for (const auto &device : devices) {
        runs.push_back(std::make_unique<Run>(device.get(), request));
        QObject::connect(runs.back().get(), &Run::finished, [&](const Outcome &outcome) {
            ++ended;
            if (outcome.isResult())
                ++results;
            else
                *problem = outcome.sentence;
        });
        runs.back()->start();
    }
    await([&] { return ended == runs.size(); });
    return results;
}

// Whoever had an instrument before may not have left it yet.
static void openAll(const Devices &devices)
{
    QElapsedTimer age;
    age.start();
    QString problem;
    while (runAll(devices, {}, &problem) < devices.size()) {
        if (age.elapsed() > patience)
            qFatal("not all instruments open: %s", qPrintable(problem));
        QThread::msleep(20);
    }
}

static int drive(int count, const char *plugin, Device::DeviceFeature feature)
{
    const Devices devices = createDevices(1, plugin);
    Device *const device = devices.front().get();
    openAll(devices);
    await([&] { return device->hasFeature(feature); });
    bool works = true;
    print(count, [&] {
        bool isOver = false;
        const auto connection = QObject::connect(
            device, &Device::executed, [&](Device::DeviceFeature, bool ok, const QVariant &) {
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

static int closeOften(int count, const char *plugin)
{
    const Devices devices = createDevices(1, plugin);
    Device *const device = devices.front().get();
    const auto close = [device] {
        device->close();
        await([device] { return !device->isOpen(); });
    };
    print(count, close, [&] { openAll(devices); });
    return 0;
}

static void say(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

static int holdSessions(int count, const char *plugin)
{
    const Devices devices = createDevices(count, plugin);
    openAll(devices);
    say("open");
    RunRequest plate;
    plate.feature = Device::DF_AbsorbanceMeasurement;
    bool works = true;
    char line[16];
    while (std::fgets(line, sizeof line, stdin)) {
        QString problem;
        QElapsedTimer timer;
        timer.start();
        const std::size_t results = runAll(devices, plate, &problem);
        const double time = double(timer.nsecsElapsed()) / 1000000;
        say(qPrintable(QStringLiteral("%1\t%2").arg(time).arg(results)));
        works = works && results == devices.size();
        if (!problem.isEmpty())
            qWarning("%s", qPrintable(problem));
    }
    return works ? 0 : 1;
}

static int watch(int count, const char *plugin, int first, bool searches)
{
    const Devices devices = createDevices(first + count, plugin);
    for (int i = first; i < first + count; ++i) {
        Device *const device = devices[std::size_t(i)].get();
        if (!QMetaObject::invokeMethod(device, "observe") || device->errorCode() != 0)
            qFatal("instrument %d cannot be watched", i);
    }
    InstrumentWatch instruments;
    if (searches)
        instruments.start();
    say("watching");
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    return QCoreApplication::exec();
}

int main(int argc, char *argv[])
{
    const QByteArray what = argc >= 4 ? argv[1] : "";
    const int count = argc >= 4 ? std::atoi(argv[2]) : 0;
    if (what == "echo")
        return echo(count, argv[3]);
    // Before there is a thread.
    const bool handsOver = what == "handover";
    const pid_t other = handsOver ? forkPeer() : -1;
    QCoreApplication application(argc, argv);
    if (handsOver && other == 0)
        return answerInEventLoop(argv[3]);
    if (handsOver) {
        const int status = handOver(count, argv[3], &application);
        ::kill(other, SIGKILL);
        return status;
    }
    if (what == "close")
        return closeOften(count, argv[3]);
    if (what == "call")
        return drive(count, argv[3], Device::DF_Orientation);
    if (what == "run")
        return drive(count, argv[3], Device::DF_AbsorbanceMeasurement);
    if (what == "sessions")
        return holdSessions(count, argv[3]);
    if ((what == "watch" || what == "search") && argc == 5)
        return watch(count, argv[3], std::atoi(argv[4]), what == "search");
    std::fputs("usage: remote_benchmark WHAT COUNT PLUGIN|ADDRESS [FIRST]\n", stderr);
    return 2;
}
