#ifndef THERMOMETER_H
#define THERMOMETER_H

#include <qeldriver/instrument.h>

#include <QtCore/QTimer>

// An instrument that measures the ambient temperature and takes its time to answer.
class Thermometer : public qel::driver::Instrument
{
    Q_OBJECT

public:
    explicit Thermometer(const qel::devices::DeviceInfo &info);

protected:
    void startOpening() override;
    void startRun(DeviceFeature feature, const QVariantHash &configuration) override;
    void stopWork() override;

private:
    QTimer m_answer; // running as long as the instrument owes the answer to a run
};

#endif
