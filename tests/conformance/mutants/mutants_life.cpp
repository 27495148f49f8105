#include "mutants_p.h"

#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>

#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace qel::devices;

namespace {

constexpr int tooLong = 400;

// Good, in an unusual way.

struct SlowClose : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        if (!isOpen() || m_isParking)
            return GoodDevice::close();
        m_isParking = true;
        const DeviceFeature feature = stopWork();
        setBusy(true);
        after(60, [this, feature] {
            m_isParking = false;
            setStatus({});
            if (feature != DF_None)
                emitEnding(feature, false, {});
        });
    }
    void executeImpl(DeviceFeature feature) override
    {
        if (m_isParking)
            refuse(feature, ERROR_DEVICE_NOT_READY, {});
        else
            GoodDevice::executeImpl(feature);
    }
    void reset() override
    {
        if (!m_isParking)
            GoodDevice::reset();
    }
    bool m_isParking = false;
};

// Life cycle.

struct CloseForgetsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        stopWork();
        GoodDevice::close();
    }
};

struct EndingBeforeFlags : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = stopWork();
        if (feature != DF_None)
            emitEnding(feature, false, {});
        GoodDevice::close();
    }
};

struct SecondEndingAfterClose : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = m_running;
        GoodDevice::close();
        if (feature != DF_None)
            after(2, [this, feature] { emitEnding(feature, false, {}); });
    }
};

struct ResetCloses : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        if (m_running != DF_None)
            close();
        GoodDevice::reset();
    }
};

struct ResetForgetsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        stopWork();
        GoodDevice::reset();
    }
};

struct ResetEndsNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        const bool wasIdle = isOpen() && m_running == DF_None;
        GoodDevice::reset();
        if (wasIdle)
            emitEnding(DF_AmbientTemperature, false, {});
    }
};

struct ResetOpens : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        GoodDevice::reset();
        open();
    }
};

struct UpdateEnds : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        if (isOpen() && !isBusy())
            emitEnding(DF_AmbientTemperature, true, 20.0);
    }
};

struct ClosesInDestructor : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~ClosesInDestructor() override
    {
        close();
    }
};

struct DiesWhileOpening : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~DiesWhileOpening() override
    {
        if (m_isOpening)
            qFatal("deleted too early");
    }
};

struct DiesOfDeferredDeletion : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::DeferredDelete)
            qFatal("deleted by a receiver");
        return GoodDevice::event(event);
    }
};

struct LeavesFile : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        if (::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0)
            qFatal("there is no /dev/null");
        GoodDevice::connected();
    }
};

struct LeavesThread : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        std::thread([] {
            for (;;)
                QThread::sleep(1);
        }).detach();
        GoodDevice::connected();
    }
};

// Time and threads.

struct BlockingUpdate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        QThread::msleep(tooLong);
    }
};

struct BlockingSlot : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        if (m_running == DF_AmbientTemperature)
            QThread::msleep(tooLong);
        GoodDevice::finish(ok);
    }
};

struct OtherThread : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reportProgress(double progress) override
    {
        std::thread([this, progress] { GoodDevice::reportProgress(progress); }).join();
    }
};

struct LeaksWhenDeletedOpen : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~LeaksWhenDeletedOpen() override
    {
        if (isOpen() && ::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0)
            qFatal("there is no /dev/null");
    }
};

struct UpdateEndsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        if (m_running != DF_None)
            finish(false);
    }
};

struct UpdateClearsError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        setError(NO_DEVICE_ERROR, {});
    }
};

struct LateAnswer : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = m_running;
        GoodDevice::close();
        const int late = 120;
        if (feature != DF_None)
            after(late, [this, feature] { emitEnding(feature, false, {}); });
    }
};

struct NestedLoopInCall : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
};

struct NestedLoopInSlot : NestedLoopInCall
{
    using NestedLoopInCall::NestedLoopInCall;
    void update() override { }
    void finish(bool ok) override
    {
        if (m_running == DF_AmbientTemperature)
            NestedLoopInCall::update();
        if (m_running != DF_None)
            GoodDevice::finish(ok);
    }
};

} // namespace

QVector<Mutant> lifeMutants()
{
    return {
        {"0-slow-close", makeDriverOf<SlowClose>},
        {"901-close-forgets-run", makeDriverOf<CloseForgetsRun>},
        {"901-ending-before-flags", makeDriverOf<EndingBeforeFlags>},
        {"901-second-ending-after-close", makeDriverOf<SecondEndingAfterClose>},
        {"902-reset-closes", makeDriverOf<ResetCloses>},
        {"902-reset-forgets-run", makeDriverOf<ResetForgetsRun>},
        {"903-reset-ends-nothing", makeDriverOf<ResetEndsNothing>},
        {"904-reset-opens", makeDriverOf<ResetOpens>},
        {"905-update-ends", makeDriverOf<UpdateEnds>},
        {"906-closes-in-destructor", makeDriverOf<ClosesInDestructor>},
        {"906-dies-while-opening", makeDriverOf<DiesWhileOpening>},
        {"907-dies-of-deferred-deletion", makeDriverOf<DiesOfDeferredDeletion>},
        {"908-leaves-file", makeDriverOf<LeavesFile>},
        {"908-leaks-when-deleted-open", makeDriverOf<LeaksWhenDeletedOpen>},
        {"908-leaves-thread", makeDriverOf<LeavesThread>},
        {"910-update-clears-error", makeDriverOf<UpdateClearsError>},
        {"910-update-ends-run", makeDriverOf<UpdateEndsRun>},
        {"911-late-answer", makeDriverOf<LateAnswer>},
        {"1001-blocking-update", makeDriverOf<BlockingUpdate>},
        {"1002-blocking-slot", makeDriverOf<BlockingSlot>},
        {"1003-other-thread", makeDriverOf<OtherThread>},
        {"1004-nested-loop-in-call", makeDriverOf<NestedLoopInCall>},
        {"1004-nested-loop-in-slot", makeDriverOf<NestedLoopInSlot>},
    };
}
