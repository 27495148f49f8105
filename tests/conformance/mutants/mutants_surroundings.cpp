#include "mutants_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLocale>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace qel::devices;

namespace {

// Surroundings.

template<void (*Change)()>
struct Disturbing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        Change();
        GoodDevice::connected();
    }
};

void setLocale()
{
    QLocale::setDefault(QLocale(QLocale::German));
}

void changeFolder()
{
    QDir::setCurrent(QStringLiteral("/"));
}

void setVariable()
{
    qputenv("GOOD_READER", "yes");
}

void takeSignal()
{
    std::signal(SIGUSR1, [](int) {});
}

void takeMessages()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        std::fputs(qPrintable(text), stderr);
    });
}

void print()
{
    std::puts("Here I am.");
}

struct RunLeavesFile : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~RunLeavesFile() override
    {
        for (const int file : qAsConst(m_files))
            ::close(file);
    }
    void start(DeviceFeature feature) override
    {
        if (feature == DF_AmbientTemperature)
            m_files += ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        GoodDevice::start(feature);
    }
    QVector<int> m_files;
};

// By hand.

struct SeesNoPlate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void slotChanged() override { }
};

struct AlwaysEmpty : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        const bool isSlot = ok && feature == DF_PlateDetection;
        GoodDevice::emitEnding(feature, ok,
                               isSlot ? QVariant::fromValue(SlotStatus::Empty) : result);
    }
};

struct NoticesNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        if (const DeviceFeature feature = stopWork())
            refuse(feature, ERROR_DEVICE_CANT_WRITE, {});
    }
};

// Good, where nothing but silence tells that the instrument is gone.
struct HearsNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        const DeviceFeature feature = stopWork();
        setBusy(false);
        if (feature != DF_None)
            refuse(feature, ERROR_DEVICE_TIMEOUT, {});
    }
};

struct GoesWithoutWord : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        close();
    }
};

struct ForgetsRunWhenUnplugged : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        stopWork();
        GoodDevice::unplugged();
    }
};

struct EndsBeforeClosed : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        if (const DeviceFeature feature = stopWork())
            refuse(feature, ERROR_DEVICE_DISCONNECTED, {});
        GoodDevice::unplugged();
    }
};

struct ListsTheAbsent : GoodDriver
{
    bool isThere() override
    {
        return true;
    }
};

struct MissesReturn : GoodDriver
{
    bool isThere() override
    {
        m_isGone |= !GoodDriver::isThere();
        return !m_isGone;
    }
    bool m_isGone = false;
};

} // namespace

QVector<Mutant> surroundingsMutants()
{
    return {
        {"0-hears-nothing", makeDriverOf<HearsNothing>},
        {"1301-sets-locale", makeDriverOf<Disturbing<setLocale>>},
        {"1302-changes-folder", makeDriverOf<Disturbing<changeFolder>>},
        {"1303-sets-variable", makeDriverOf<Disturbing<setVariable>>},
        {"1304-takes-signal", makeDriverOf<Disturbing<takeSignal>>},
        {"1305-takes-messages", makeDriverOf<Disturbing<takeMessages>>},
        {"1306-prints", makeDriverOf<Disturbing<print>>},
        {"1307-quits", makeDriverOf<Disturbing<QCoreApplication::quit>>},
        {"1308-run-leaves-file", makeDriverOf<RunLeavesFile>},
        {"1401-always-empty", makeDriverOf<AlwaysEmpty>},
        {"1401-sees-no-plate", makeDriverOf<SeesNoPlate>},
        {"1402-goes-without-word", makeDriverOf<GoesWithoutWord>},
        {"1402-notices-nothing", makeDriverOf<NoticesNothing>},
        {"1403-ends-before-closed", makeDriverOf<EndsBeforeClosed>},
        {"1403-forgets-run", makeDriverOf<ForgetsRunWhenUnplugged>},
        {"1404-lists-the-absent", makeDriver<ListsTheAbsent>},
        {"1405-misses-return", makeDriver<MissesReturn>},
    };
}
