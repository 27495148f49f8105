#ifndef SIMULATOR_DRIVER_H
#define SIMULATOR_DRIVER_H

#include "instrument.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <memory>
#include <optional>
#include <utility>

namespace qel::simulator {

/// The text of a scenario, or a sentence on why there is none.
using SourceText = std::pair<QByteArray, QString>;

/// The driver "simulator": a lab of simulated instruments, described by a scenario.
///
/// The scenario is the JSON file that the environment variable QELDEVICES_SIMULATOR names, or the
/// built-in one. It is read at every enumeration; when it has changed, instruments are plugged in
/// and unplugged accordingly, and those described as before keep their state. A scenario with
/// mistakes has no instruments; each mistake is one warning in "qel.devices.driver".
class Driver : public qel::devices::DeviceDriver
{
public:
    QString name() override;
    qel::devices::Device *createDevice(const qel::devices::DeviceInfo &info) override;
    QList<qel::devices::DeviceInfo> availableDevices() override;

private:
    void readScenario();
    std::shared_ptr<Instrument> instrument(const InstrumentDescription &description);

    std::optional<SourceText> m_source;                 // as it was read last
    QVector<std::shared_ptr<Instrument>> m_instruments; // those of the scenario
    QVector<std::shared_ptr<Instrument>> m_store;       // all there have been, with their state
};

} // namespace qel::simulator

#endif
