#ifndef INSTRUMENT_H
#define INSTRUMENT_H

#include "link.h"

#include <qeldevices/device.h>

// One instrument. It does one thing at a time: opening, or one run.
class Instrument : public qel::devices::Device
{
    Q_OBJECT

public:
    explicit Instrument(const qel::devices::DeviceInfo &info);

    bool open() override;
    void close() override;
    void update() override;
    void reset() override;

protected:
    void executeImpl(DeviceFeature feature) override;
    void confirmActionImpl(int actionId) override;
    void abortActionImpl(int actionId) override;

private:
    void ask(const QByteArray &command);
    void take(const QByteArray &answer);
    void giveUp();
    void showFeatures();
    void reportProgress(double progress);
    DeviceFeature stopWork();
    void finish(bool ok, const QVariant &result, int code = 0, const QString &details = {});

    Link m_link;
    QTimer m_patience; // running while an answer is awaited
    bool m_isOpening = false;
    DeviceFeature m_running = DF_None;
    int m_request = -1; // the open request for action
};

#endif
