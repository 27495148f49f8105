#ifndef TESTS_FAKEDEVICE_H
#define TESTS_FAKEDEVICE_H

#include <qeldevices/device.h>

#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <functional>

/// A device that does what a test tells it, and writes down what is asked of it.
class FakeDevice : public qel::devices::Device
{
    Q_OBJECT

public:
    using Action = std::function<void(FakeDevice *)>;

    FakeDevice()
        : Device({qel::devices::DeviceInfo::Simulator, QStringLiteral("fake"), QStringLiteral("1"),
                  QStringLiteral("Fake"), QStringLiteral("F-1")},
                 nullptr)
    { }

    // What the operations do; the defaults are those of a well-behaved device.
    std::function<bool(FakeDevice *)> onOpen = [](FakeDevice *device) {
        device->addFeature(DF_AmbientTemperature);
        device->setOpen(true);
        return true;
    };
    Action onExecute = [](FakeDevice *device) {
        device->later([device] { emit device->executed(DF_AmbientTemperature, true, 42.0); });
    };
    Action onClose = [](FakeDevice *device) { device->setOpen(false); };
    Action onReset = [](FakeDevice *) {};
    Action onAbort = [](FakeDevice *) {};
    Action onConfirm = [](FakeDevice *) {};

    QStringList calls;

    template<typename Function>
    void later(Function function, int ms = 5)
    {
        QTimer::singleShot(ms, this, function);
    }

    bool open() override
    {
        calls += QStringLiteral("open");
        return onOpen(this);
    }
    void close() override
    {
        calls += QStringLiteral("close");
        onClose(this);
    }
    void update() override { }
    void reset() override
    {
        calls += QStringLiteral("reset");
        onReset(this);
    }

protected:
    void executeImpl(DeviceFeature) override
    {
        calls += QStringLiteral("execute");
        onExecute(this);
    }
    void confirmActionImpl(int) override
    {
        calls += QStringLiteral("confirm");
        onConfirm(this);
    }
    void abortActionImpl(int) override
    {
        calls += QStringLiteral("abort");
        onAbort(this);
    }
};

#endif
