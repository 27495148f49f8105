#ifndef SIMULATOR_JOBS_H
#define SIMULATOR_JOBS_H

#include "simulatedinstrument.h"

#include <qeldevices/device.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <functional>

namespace qel::simulator {

/// How a run went: its result, or why there is none.
struct JobOutcome
{
    QVariant result;
    int code = qel::devices::NO_DEVICE_ERROR;
    QString info; ///< translation id of additional information
};

/// The work of one run, as the instrument does it.
struct Job
{
    enum class Slot { DoesNotMatter, NeedsPlate, NeedsEmpty };

    double seconds = 0; ///< of simulated time; 0 for what the instrument knows at once
    bool reportsProgress = false;
    bool needsCalibration = false;
    Slot slot = Slot::DoesNotMatter;
    /// Called when the time is up: changes the instrument and says how it went.
    std::function<JobOutcome(SimulatedInstrument &)> finish;
};

/// What the simulated instruments say of `feature`; invalid where there is nothing to say.
QVariant descriptorOf(qel::devices::Device::DeviceFeature feature, const Model &model);

/// The job of running `feature` on `instrument` with `configuration`, which has been checked
/// against the descriptor's settings.
Job jobFor(qel::devices::Device::DeviceFeature feature, const QVariantHash &configuration,
           const SimulatedInstrument &instrument);

} // namespace qel::simulator

#endif
