#ifndef THERMOMETER_H
#define THERMOMETER_H

#include <qeldevices/device.h>

#include <QtCore/QTimer>

// An instrument that measures the ambient temperature and takes its time to answer.
class Thermometer : public qel::devices::Device
{
    Q_OBJECT

public:
    explicit Thermometer(const qel::devices::DeviceInfo &info);

    bool open() override;
    void close() override;
    void update() override { }
    void reset() override;

protected:
    void executeImpl(DeviceFeature feature) override;

private:
    void abort();
    void finish(bool ok, const QVariant &result);

    QTimer m_answer; // running as long as the instrument owes the answer to a run
};

#endif
