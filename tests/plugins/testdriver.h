#ifndef TESTDRIVER_H
#define TESTDRIVER_H

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

/// A driver that lists one instrument, which tells where the driver came from, and opens none.
class TestDriver : public qel::devices::DeviceDriver
{
public:
    TestDriver(const QString &name, const QString &origin)
        : m_name(name)
        , m_origin(origin)
    { }

    QString name() override
    {
        return m_name;
    }
    qel::devices::Device *createDevice(const qel::devices::DeviceInfo &) override
    {
        return nullptr;
    }
    QList<qel::devices::DeviceInfo> availableDevices() override
    {
        return {{qel::devices::DeviceInfo::Simulator, m_name, "bench", m_origin, "1"}};
    }

private:
    const QString m_name;
    const QString m_origin;
};

#endif
