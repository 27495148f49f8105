#ifndef READER_H
#define READER_H

#include "connection.h"

#include <qeldriver/builders.h>
#include <qeldriver/instrument.h>
#include <qeldriver/requestlink.h>

#include <functional>
#include <optional>

// One instrument. The base class keeps the order of things: this one says what the instrument does.
class Reader : public qel::driver::Instrument
{
    Q_OBJECT

public:
    explicit Reader(const qel::devices::DeviceInfo &info);

protected:
    void startOpening() override;
    void startRun(DeviceFeature feature, const QVariantHash &configuration) override;
    void stopWork() override;
    void disconnectInstrument() override;

private:
    void ask(const QByteArray &command, const QByteArray &answer,
             std::function<bool(const QByteArrayList &words)> take);
    void giveUp(int code, const char *details);
    void showFeatures();
    void measure(const QList<int> &wavelengths);

    Connection m_connection;
    qel::driver::RequestLink m_link;
    QByteArray m_model;
    QList<int> m_wavelengths; // of the measurement that runs
    std::optional<qel::driver::PlateResult> m_plate;
};

#endif
