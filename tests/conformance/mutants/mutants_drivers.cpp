#include "mutants_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QThread>

using namespace qel::devices;

namespace {

constexpr int tooLong = 400;

// Drivers.

struct NoName : GoodDriver
{
    QString name() override
    {
        return {};
    }
};

struct ForeignRecord : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return {DeviceInfo(DeviceInfo::Simulator, QStringLiteral("Good"), QStringLiteral("left"),
                           QStringLiteral("Reader"), QStringLiteral("G-1"))};
    }
};

struct ListedTwice : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return GoodDriver::availableDevices() + GoodDriver::availableDevices().mid(0, 1);
    }
};

struct CountingName : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return {DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("left"),
                           QStringLiteral("Reader %1").arg(++m_count), QStringLiteral("G-1"))};
    }
    int m_count = 0;
};

struct EnumerationHangs : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        for (;;)
            QThread::msleep(tooLong);
    }
};

struct EnumerationCloses : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        if (m_last && !m_last->isBusy())
            m_last->close();
        return GoodDriver::availableDevices();
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct HidesOpen : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        QList<DeviceInfo> records = GoodDriver::availableDevices();
        if (m_last && m_last->isOpen())
            records.removeOne(m_last->deviceInfo());
        return records;
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct EnumerationResets : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        if (m_last && m_last->isBusy())
            m_last->reset();
        return GoodDriver::availableDevices();
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct AlwaysTheFirst : GoodDriver
{
    Device *createDevice(const DeviceInfo &info) override
    {
        const bool isKnown = availableDevices().contains(info);
        return isKnown ? makeDevice(availableDevices().constFirst()) : nullptr;
    }
};

struct HasParent : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        Device *device = GoodDriver::makeDevice(info);
        device->setParent(QCoreApplication::instance());
        return device;
    }
};

struct OtherSerial : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        Device *device = GoodDriver::makeDevice(info);
        device->setSerial(QStringLiteral("unknown"));
        return device;
    }
};

struct SharedObject : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        if (info.location() != QLatin1String("left"))
            return GoodDriver::makeDevice(info);
        if (!m_device)
            m_device = GoodDriver::makeDevice(info);
        return m_device;
    }
    QPointer<Device> m_device;
};

struct AnyLocation : GoodDriver
{
    Device *createDevice(const DeviceInfo &info) override
    {
        return makeDevice(info);
    }
};

struct AsksTheApplication : GoodDriver
{
    ~AsksTheApplication() override
    {
        if (!QCoreApplication::instance())
            qFatal("there is no application");
    }
};

// Several devices.

struct SharedBusy : GoodDevice
{
    explicit SharedBusy(const DeviceInfo &info)
        : GoodDevice(info)
    {
        all += this;
    }
    void start(DeviceFeature feature) override
    {
        for (const auto &device : qAsConst(all)) {
            if (device && device != this && device->isOpen())
                device->setBusy(true);
        }
        GoodDevice::start(feature);
    }
    static QVector<QPointer<SharedBusy>> all;
};
QVector<QPointer<SharedBusy>> SharedBusy::all;

struct OneAtATime : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        static QPointer<OneAtATime> last;
        if (last && last != this && last->isOpen())
            last->close();
        last = this;
        GoodDevice::connected();
    }
};

struct ForgetsSettings : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        setConfiguration(DF_LedBarEffect, {});
        GoodDevice::connected();
    }
};

} // namespace

QVector<Mutant> driversMutants()
{
    return {
        {"104-no-driver", makeDriver<GoodDriver>},
        {"105-registers-once", makeDriver<GoodDriver>},
        {"201-no-name", makeDriver<NoName>},
        {"202-foreign-record", makeDriver<ForeignRecord>},
        {"202-enumeration-hangs", makeDriver<EnumerationHangs>},
        {"203-listed-twice", makeDriver<ListedTwice>},
        {"204-counting-name", makeDriver<CountingName>},
        {"205-enumeration-closes", makeDriver<EnumerationCloses>},
        {"206-hides-open", makeDriver<HidesOpen>},
        {"207-enumeration-resets", makeDriver<EnumerationResets>},
        {"301-has-parent", makeDriver<HasParent>},
        {"302-other-serial", makeDriver<OtherSerial>},
        {"302-always-the-first", makeDriver<AlwaysTheFirst>},
        {"303-shared-object", makeDriver<SharedObject>},
        {"304-any-location", makeDriver<AnyLocation>},
        {"306-one-at-a-time", makeDriverOf<OneAtATime>},
        {"306-shared-busy", makeDriverOf<SharedBusy>},
        {"411-forgets-settings", makeDriverOf<ForgetsSettings>},
        {"909-asks-the-application", makeDriver<AsksTheApplication>},
    };
}
