#ifndef SIMULATOR_OPTICS_H
#define SIMULATOR_OPTICS_H

#include "scenario.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <initializer_list>
#include <random>

namespace qel::simulator {

/// Random numbers that are the same for the same seed on every machine: the standard fixes the
/// engine, and everything made from it here uses exact arithmetic only.
class Dice
{
public:
    /// Independent dice for each combination of `seed` and `keys`.
    Dice(quint64 seed, std::initializer_list<quint32> keys);

    /// Evenly between 0 (included) and 1 (excluded).
    double uniform();
    /// About normal, with mean 0 and standard deviation 1, within ±6.
    double normal();
    /// Counts of a random process that yields `mean` on average.
    double counts(double mean);

private:
    std::mt19937_64 m_engine;
};

/// The dyes a plate can hold.
QStringList dyeNames();

/// Molar absorptivity of the dye called `dye` at `wavelength` nm, in l/(mol·cm).
double absorptivity(const QString &dye, int wavelength);

/// How strong each well of `plate` is, relative to the strongest of its layout (which is 1), row by
/// row. Samples of an unknown strength come from `seed`.
QVector<double> strengths(const SimulatedPlate &plate, const PlateFormat &format, quint64 seed);

/// Limits of what the detectors report.
constexpr double minimumOpticalDensity = -0.2;
constexpr double maximumOpticalDensity = 4.0;
constexpr double maximumLightRate = 1e7; // RLU/s

/// Absorbance of each well at `wavelength` nm without noise, in OD: Beer and Lambert's law over the
/// height of the liquid, plus the plate's own plastic.
QVector<double> trueAbsorbance(const SimulatedPlate &plate, const PlateFormat &format, quint64 seed,
                               int wavelength);

/// What the photodiode makes of `opticalDensities`: shot noise of the light that arrives, stray
/// light, saturation at maximumOpticalDensity, rounded to 0.0001 OD. `rapid` sees a fortieth of the
/// light.
QVector<double> measureAbsorbance(const QVector<double> &opticalDensities, bool rapid, Dice *dice);

/// Light of each well in RLU/s without noise, `seconds` after the reaction was started: a glow that
/// rises within half a minute and fades over half an hour.
QVector<double> trueLuminescence(const SimulatedPlate &plate, const PlateFormat &format,
                                 quint64 seed, double seconds);

/// What the photomultiplier makes of `rate` RLU/s when it counts for `seconds`: whole counts with
/// shot noise and dark counts, saturation at maximumLightRate, in RLU/s rounded to 0.001.
double measureLuminescence(double rate, double seconds, Dice *dice);

/// Temperature inside the instrument in °C after `seconds` of work, to 0.1 °C.
double temperature(double seconds, quint64 seed);

} // namespace qel::simulator

#endif
