#include "simulatedinstrument.h"

#include "optics.h"

#include <QtCore/QThread>

#include <algorithm>

namespace qel::simulator {

using qel::devices::Device;
using qel::devices::SlotStatus;

SimulatedInstrument::SimulatedInstrument(const InstrumentDescription &description)
    : calibrated(description.calibrated)
    , ledBar(qel::devices::LedBarEffect_config())
    , m_description(description)
    , m_plate(description.plate.value_or(SimulatedPlate()))
    , m_hasPlate(description.plate.has_value())
{
    for (const Fault &fault : description.faults)
        m_scripts.append({fault, 0, false});
    m_sinceStart.start();
}

void SimulatedInstrument::plugIn()
{
    m_plugged = true;
}

void SimulatedInstrument::unplug(int enumerations)
{
    m_absences = enumerations > 0 ? enumerations : -1;
    if (!m_plugged)
        return;
    m_plugged = false;
    inUse = false;
    emit unplugged();
}

bool SimulatedInstrument::answersEnumeration()
{
    passTime();
    const QVector<Fault> faults = strike(Fault::Moment::Enumerate);
    for (const Fault &fault : faults) {
        if (fault.action == Fault::Action::Delay)
            QThread::msleep(fault.delay); // the one fault that has to block: enumeration does
        else
            unplug(fault.absentFor);
    }
    if (m_plugged)
        return true;
    if (m_absences > 0 && --m_absences == 0)
        plugIn(); // listed again from the next enumeration on
    return false;
}

void SimulatedInstrument::setHasPlate(bool hasPlate)
{
    if (hasPlate == m_hasPlate)
        return;
    m_hasPlate = hasPlate;
    emit plateChanged();
}

SlotStatus SimulatedInstrument::slotStatus() const
{
    return m_hasPlate ? SlotStatus::Occupied : SlotStatus::Empty;
}

QVector<Fault> SimulatedInstrument::strike(Fault::Moment moment, Device::DeviceFeature feature)
{
    QVector<Fault> faults;
    for (int i = 0; i < m_scripts.size(); ++i) {
        Script &script = m_scripts[i];
        const Fault &fault = script.fault;
        if (fault.moment != moment
            || (fault.feature != Device::DF_None && fault.feature != feature))
            continue;
        ++script.occurrences;
        if (fault.nth != 0 && fault.nth != script.occurrences)
            continue;
        Dice dice(m_description.seed, {0xfa, quint32(i), quint32(script.occurrences)});
        if (dice.uniform() < fault.probability)
            faults.append(fault);
    }
    return faults;
}

void SimulatedInstrument::passTime()
{
    for (int i = 0; i < m_scripts.size(); ++i) {
        Script &script = m_scripts[i];
        if (script.fault.moment == Fault::Moment::Time && !script.done
            && m_sinceStart.elapsed() >= script.fault.after) {
            script.done = true;
            happen(Fault(script.fault));
        }
    }
}

void SimulatedInstrument::happen(const Fault &fault)
{
    switch (fault.action) {
    case Fault::Action::Unplug:
        unplug(fault.absentFor);
        break;
    case Fault::Action::InsertPlate:
    case Fault::Action::RemovePlate:
        setHasPlate(fault.action == Fault::Action::InsertPlate);
        break;
    default:
        emit failed(fault.code, fault.info);
    }
}

int SimulatedInstrument::nextTimedFault() const
{
    qint64 next = -1;
    for (const Script &script : m_scripts) {
        if (script.fault.moment != Fault::Moment::Time || script.done)
            continue;
        const qint64 wait = std::max<qint64>(0, script.fault.after - m_sinceStart.elapsed());
        next = next < 0 ? wait : std::min(next, wait);
    }
    return int(next);
}

} // namespace qel::simulator
