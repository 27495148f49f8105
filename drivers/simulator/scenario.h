#ifndef SIMULATOR_SCENARIO_H
#define SIMULATOR_SCENARIO_H

#include "models.h"

#include <qeldevices/device.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

namespace qel::simulator {

/// What stands in the wells of a plate.
struct SimulatedPlate
{
    enum class Layout { DilutionSeries, Elisa, EdgeEffect, Empty };

    Layout layout = Layout::DilutionSeries;
    QString dye = QStringLiteral("tmb"); ///< see dyes()
    double concentration = 60e-6;        ///< of the dye in the strongest well, in mol/l
    double volume = 200;                 ///< in each well, in µl
    double brightness = 500000;          ///< peak light of the strongest well, in RLU/s
};

/// One thing that goes wrong, or happens, at a moment that the scenario names.
struct Fault
{
    enum class Moment { Open, Execute, Enumerate, Time };
    enum class Action {
        Refuse,
        Error,
        Delay,
        Stall,
        DropEnding,
        DoubleEnding,
        PartialData,
        WrongType,
        Ask,
        Unplug,
        InsertPlate,
        RemovePlate,
    };

    Moment moment = Moment::Execute;
    Action action = Action::Error;
    /// The feature whose execution is meant; DF_None means any.
    qel::devices::Device::DeviceFeature feature = qel::devices::Device::DF_None;
    int nth = 0;            ///< only this occurrence of the moment, counted from 1; 0: every one
    double probability = 1; ///< of happening at an occurrence that counts
    int after = 0;          ///< ms from when the instrument first appeared, for Moment::Time
    int delay = 0;          ///< ms, for Action::Delay
    int code = qel::devices::ERROR_DEVICE_VENDOR_SPECIFIC; ///< for Action::Error
    QString info;      ///< translation id of additional information, for Action::Error
    QString text;      ///< translation id of the request, for Action::Ask
    int absentFor = 0; ///< enumerations missed after Action::Unplug; 0: all to come
};

/// One instrument of a scenario.
struct InstrumentDescription
{
    Model model; ///< with the plate format of the scenario
    QString name;
    QString serial;
    QString location;
    std::optional<SimulatedPlate> plate; ///< what is in the slot at first; none where it is empty
    quint64 seed = 1;
    double timeScale = 1;   ///< real time per simulated time; 0: as fast as the event loop turns
    bool calibrated = true; ///< without it, measurements fail until a calibration
    int apiVersion = 1;     ///< of the protocol it speaks; the driver knows 1
    QVector<Fault> faults;
    /// What the scenario says, with inherited values filled in: the same for the same instrument.
    QByteArray source;

    /// The identity under which `driver` lists the instrument.
    qel::devices::DeviceInfo info(const QString &driver) const;
};

/// The instruments of a simulated lab, or what is wrong with their description.
struct Scenario
{
    QVector<InstrumentDescription> instruments;
    /// One sentence each, with the line or JSON path, what was expected and what was found. With
    /// any mistake there are no instruments.
    QStringList mistakes;
};

/// Reads a scenario; docs/simulator.md describes the format.
Scenario parseScenario(const QByteArray &json);

/// The scenario that holds when no other is named: an absorbance and a luminescence reader.
QByteArray builtInScenario();

} // namespace qel::simulator

#endif
