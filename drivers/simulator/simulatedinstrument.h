#ifndef SIMULATOR_SIMULATEDINSTRUMENT_H
#define SIMULATOR_SIMULATEDINSTRUMENT_H

#include "scenario.h"

#include <qeldevices/device.h>

#include <QtCore/QDate>
#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

namespace qel::simulator {

/// The instrument itself, as it stands on the bench: what it keeps while no device is open on it.
///
/// It knows what the scenario has in store for it: at each moment that faults can hang on, its
/// device asks which of them strike.
class SimulatedInstrument : public QObject
{
    Q_OBJECT

public:
    explicit SimulatedInstrument(const InstrumentDescription &description);

    const InstrumentDescription &description() const
    {
        return m_description;
    }
    const Model &model() const
    {
        return m_description.model;
    }

    /// Whether the instrument is connected to the computer.
    bool isPlugged() const
    {
        return m_plugged;
    }
    /// Connects the instrument again.
    void plugIn();
    /// Disconnects the instrument for the next `enumerations`; 0 means until plugIn().
    void unplug(int enumerations = 0);
    /// Whether the instrument is listed by the enumeration that is under way. Plugs it in again
    /// when it has been absent long enough, and may take the time that the scenario says.
    bool answersEnumeration();

    /// What is in the slot; DilutionSeries where a plate was inserted that the scenario leaves
    /// open.
    const SimulatedPlate &plate() const
    {
        return m_plate;
    }
    bool hasPlate() const
    {
        return m_hasPlate;
    }
    void setHasPlate(bool hasPlate);
    qel::devices::SlotStatus slotStatus() const;

    /// The faults that strike now, in the order of the scenario. Every call counts as an
    /// occurrence.
    QVector<Fault>
    strike(Fault::Moment moment,
           qel::devices::Device::DeviceFeature feature = qel::devices::Device::DF_None);
    /// Carries out the timed faults that are due. Those that need a device are handed to it with
    /// failed().
    void passTime();
    /// Milliseconds until passTime() has something to do; -1 when there is nothing to wait for.
    int nextTimedFault() const;

    /// Seconds of simulated time that the instrument's work has taken. Temperature and glow follow
    /// it, so that the numbers do not depend on the speed of the computer.
    double clock = 0;
    /// Measurements begun; each draws its own noise.
    int measurements = 0;
    bool inUse = false; ///< a device is open on it
    bool calibrated = true;
    QString firmware = QStringLiteral("2.4.0");
    QDate firmwareDate{2026, 3, 2};
    QVariantHash ledBar; ///< what its LED bar shows: an LedBarEffect_config

signals:
    /// It is no longer connected.
    void unplugged();
    /// A plate was inserted or taken out.
    void plateChanged();
    /// A timed fault: it reports an error.
    void failed(int code, const QString &info);

private:
    void happen(const Fault &fault);

    struct Script
    {
        Fault fault;
        int occurrences;
        bool done; // a timed fault that has struck
    };

    InstrumentDescription m_description;
    QVector<Script> m_scripts;
    QElapsedTimer m_sinceStart;
    SimulatedPlate m_plate;
    bool m_hasPlate;
    bool m_plugged = true;
    int m_absences = 0; // enumerations still to miss; negative: all
};

} // namespace qel::simulator

#endif
