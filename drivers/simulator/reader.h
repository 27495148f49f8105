#ifndef SIMULATOR_READER_H
#define SIMULATOR_READER_H

#include "jobs.h"
#include "simulatedinstrument.h"

#include <qeldevices/device.h>

#include <QtCore/QTimer>
#include <QtCore/QVector>

#include <memory>
#include <optional>

namespace qel::simulator {

/// The device of a simulated instrument.
///
/// It does one task at a time: opening, or one run. A task is a row of timer ticks with everything
/// that can happen on the way; it ends in end() and nowhere else, so that no run has two endings or
/// none. Before anything is reported the task is gone and the flags are right: a receiver may open,
/// close, execute or reset from any signal.
class Reader : public qel::devices::Device
{
    Q_OBJECT

public:
    /// A closed device on `instrument`, known as `info`.
    Reader(const qel::devices::DeviceInfo &info, std::shared_ptr<SimulatedInstrument> instrument);
    ~Reader() override;

    bool open() override;
    void close() override;
    void update() override;
    void reset() override;

protected:
    void executeImpl(DeviceFeature feature) override;
    void confirmActionImpl(int actionId) override;
    void abortActionImpl(int actionId) override;

private:
    struct Task
    {
        int number;            // tells it from the next one
        DeviceFeature feature; // DF_None for opening
        Job job;
        QVector<Fault> faults;
        int steps;    // ticks until the work is done; 0: it is done at once
        int interval; // ms between two ticks
        int step = 0;
        int nextFault = 0;    // of `faults`, to strike once half of the work is done
        bool waiting = false; // for an answer to `actionId`
        int actionId = -1;
    };

    void start(DeviceFeature feature, const Job &job, const QVector<Fault> &faults);
    bool goesOn(int taskNumber) const;
    void tick();
    void reportProgress();
    bool strikeFaults();
    bool preparePlate();
    void ask(const QString &text);
    void answer(int actionId, bool confirmed);
    void finish();
    void finishOpening();
    void end(bool ok, const JobOutcome &outcome, int endings = 1);
    void lose(int code, const QString &info);
    void waitForTimedFault();

    const std::shared_ptr<SimulatedInstrument> m_instrument;
    std::optional<Task> m_task;
    int m_taskNumber = 0;
    QTimer m_ticks;
    QTimer m_timedFaults;
};

} // namespace qel::simulator

#endif
