// What the fuzzers of both ends of a connection have in common.
#ifndef FUZZING_H
#define FUZZING_H

#include <wire.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>

namespace qel::rpc {

constexpr char driverName[] = "fuzzed";
constexpr char location[] = "here";

inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

/// Two ends that are connected.
struct Sockets
{
    Sockets()
    {
        require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) == 0,
                "no sockets");
    }
    int ends[2];
};

/// Runs the event loop until `holds`.
template<typename Condition>
bool spinUntil(Condition &&holds, int milliseconds = 5000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!holds()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::usleep(100);
    }
    return true;
}

/// What has arrived is heard; more may arrive meanwhile.
inline void spin()
{
    spinUntil([turns = 0]() mutable { return turns++ == 3; });
}

/// Sensible, or what the fuzzer likes. What is no UTF-8 goes no further than to the parser.
inline std::string anyText(FuzzedDataProvider *data, const char *sensible)
{
    if (data->ConsumeBool())
        return sensible;
    std::string text = data->ConsumeRandomLengthString(16);
    for (char &byte : text)
        byte &= 0x7f;
    return text;
}

inline wire::Hello anyHello(FuzzedDataProvider *data)
{
    wire::Hello any = hello();
    if (data->ConsumeIntegralInRange(0, 15) == 15)
        any.set_protocol(data->ConsumeIntegral<int>());
    return any;
}

inline wire::Record anyRecord(FuzzedDataProvider *data)
{
    wire::Record record;
    record.set_interface(data->ConsumeIntegralInRange(-1, 9));
    record.set_driver(anyText(data, driverName));
    record.set_location(anyText(data, location));
    record.set_serial(anyText(data, "S-1"));
    return record;
}

inline wire::FeatureValue anyValue(FuzzedDataProvider *data)
{
    static const char *const values[] = {"", "null", "7", R"({"progress": 0.5})", R"({"a": [1]})"};
    wire::FeatureValue value;
    value.set_feature(data->ConsumeIntegralInRange(-1, 15));
    value.mutable_value()->set_json(anyText(data, data->PickValueInArray(values)));
    if (data->ConsumeIntegralInRange(0, 7) == 7)
        value.mutable_value()->set_problem("it cannot");
    return value;
}

} // namespace qel::rpc

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

#endif
