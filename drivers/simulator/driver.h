#ifndef SIMULATOR_DRIVER_H
#define SIMULATOR_DRIVER_H

#include "simulatedinstrument.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
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
/// and unplugged accordingly, and those described as before keep their state, also through an
/// absence as long as a device is there for them. A scenario with mistakes has no instruments; each
/// mistake is one warning in "qel.devices.driver".
class Driver : public qel::devices::DeviceDriver
{
public:
    QString name() override;
    qel::devices::Device *createDevice(const qel::devices::DeviceInfo &info) override;
    QList<qel::devices::DeviceInfo> availableDevices() override;

private:
    void readScenario();
    std::shared_ptr<SimulatedInstrument> instrument(const InstrumentDescription &description);
    void forgetTheGone();

    using Instruments = QHash<QString, std::shared_ptr<SimulatedInstrument>>;

    std::optional<SourceText> m_source; // as it was read last
    Instruments m_instruments;          // those of the scenario, by location
    // Those and the ones that only a device still holds, by description.
    QHash<QByteArray, std::weak_ptr<SimulatedInstrument>> m_known;
};

} // namespace qel::simulator

#endif
