#include "testdriver.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include <dlfcn.h>
#include <unistd.h>

// Does to the process what the environment variable ROGUE says, "WHERE WHAT": where is load,
// enumerate, open, later (when open() has returned), execute, close or destroy.
static void act(const char *where)
{
    const QByteArrayList words = qgetenv("ROGUE").split(' ');
    if (words.value(0) != where)
        return;
    const QByteArray what = words.value(1);
    if (what == "crash")
        std::raise(SIGSEGV);
    else if (what == "abort")
        std::abort();
    else if (what == "throw")
        throw std::runtime_error("rogue");
    else if (what == "exit")
        std::exit(0);
    else if (what == "quick_exit")
        std::quick_exit(0);
    else if (what == "quit")
        QCoreApplication::quit();
    else if (what == "dawdle")
        usleep(1500 * 1000);
    else if (what == "print")
        std::puts("rogue was here");
    if (what == "shut") { // out all signals, and hang
        std::signal(SIGALRM, SIG_IGN);
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
    }
    while (what == "hang" || what == "shut")
        pause();
    std::fflush(stdout);
}

class RogueDevice : public qel::devices::Device
{
public:
    using Device::Device;
    ~RogueDevice() override
    {
        act("destroy");
    }
    bool open() override
    {
        act("open");
        const QByteArray what = qgetenv("ROGUE");
        if (what == "open quit")
            return true; // on its way, for ever
        addFeature(DF_ReferenceNumber);
        setOpen(true);
        QTimer::singleShot(0, this, [] { act("later"); });
        return true;
    }
    void close() override
    {
        act("close");
        setOpen(false);
    }
    void update() override { }
    void reset() override { }

protected:
    void executeImpl(DeviceFeature feature) override
    {
        static int runs = 0;
        if (++runs == 3)
            act("execute");
        emit executed(feature, true, QStringLiteral("R"));
    }
};

// Each copy of the plugin has a driver of its own.
static QString nameOfFile()
{
    Dl_info info{};
    dladdr(reinterpret_cast<void *>(&act), &info);
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).completeBaseName();
}

class RogueDriver : public TestDriver
{
public:
    RogueDriver()
        : TestDriver(nameOfFile(), QStringLiteral("rogue"))
    { }
    qel::devices::Device *createDevice(const qel::devices::DeviceInfo &info) override
    {
        return new RogueDevice(info, nullptr);
    }
    QList<qel::devices::DeviceInfo> availableDevices() override
    {
        act("enumerate");
        return TestDriver::availableDevices();
    }
};

class RoguePlugin : public QObject, public qel::devices::DevicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "laboratory.json")
    Q_INTERFACES(qel::devices::DevicePlugin)

public:
    void registerDrivers() override
    {
        act("load");
        qel::devices::DeviceBroker::addDriver(std::make_shared<RogueDriver>());
    }
};

#include "rogue.moc"
