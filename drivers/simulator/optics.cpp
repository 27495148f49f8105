#include "optics.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qel::simulator {

namespace {

// A spectrum is a sum of bell-shaped bands.
struct Band
{
    double peak;         // nm
    double width;        // standard deviation, nm
    double absorptivity; // at the peak, l/(mol·cm)
};

struct Dye
{
    const char *name;
    Band bands[2];
};

constexpr Dye dyes[] = {
    {"tmb", {{450, 22, 59000}, {380, 30, 9000}}},           // oxidised, stopped with acid
    {"p-nitrophenol", {{405, 27, 18300}, {320, 25, 5000}}}, // alkaline
    {"crystal-violet", {{590, 24, 87000}, {545, 25, 42000}}},
    {"tartrazine", {{427, 33, 23000}, {260, 25, 18000}}},
};

constexpr double plasticOpticalDensity = 0.042;
constexpr double strayLight = 2e-5;    // of the full beam, past every sample
constexpr double photonsPerRead = 4e6; // through an empty well
constexpr double darkRate = 12;        // counts/s of the photomultiplier

// Dividing last gives the number next to the decimal one, which prints short.
double roundTo(double stepsPerUnit, double value)
{
    return std::round(value * stepsPerUnit) / stepsPerUnit;
}

} // namespace

static std::mt19937_64 seeded(quint64 seed, std::initializer_list<quint32> keys)
{
    std::vector<quint32> material{quint32(seed), quint32(seed >> 32)};
    material.insert(material.end(), keys);
    std::seed_seq sequence(material.begin(), material.end());
    return std::mt19937_64(sequence);
}

Dice::Dice(quint64 seed, std::initializer_list<quint32> keys)
    : m_engine(seeded(seed, keys))
{ }

double Dice::uniform()
{
    return double(m_engine() >> 11) * 0x1p-53;
}

double Dice::normal()
{
    double sum = -6; // twelve even numbers have mean 6 and variance 1
    for (int i = 0; i < 12; ++i)
        sum += uniform();
    return sum;
}

double Dice::counts(double mean)
{
    if (mean > 50)
        return std::max(0.0, std::round(mean + std::sqrt(mean) * normal()));
    // Few counts are far from normal: as many even numbers as multiply to exp(-mean).
    const double limit = std::exp(-mean);
    double product = uniform();
    int events = 0;
    for (; product > limit; ++events)
        product *= uniform();
    return events;
}

QStringList dyeNames()
{
    QStringList names;
    for (const Dye &dye : dyes)
        names.append(QString::fromLatin1(dye.name));
    return names;
}

double absorptivity(const QString &dye, int wavelength)
{
    const auto found = std::find_if(std::begin(dyes), std::end(dyes), [&](const Dye &candidate) {
        return dye == QLatin1String(candidate.name);
    });
    if (found == std::end(dyes))
        return 0;
    double sum = 0;
    for (const Band &band : found->bands) {
        const double distance = (wavelength - band.peak) / band.width;
        sum += band.absorptivity * std::exp(-0.5 * distance * distance);
    }
    return sum;
}

// Two-fold dilution along each row; the last column is the blank.
static double dilution(int column, int columns)
{
    return column == columns - 1 ? 0 : std::ldexp(1.0, -column);
}

// Standards in the first two columns, down to a blank in the last row; unknown samples elsewhere.
// The signal follows the concentration in a logistic curve.
static double elisa(int row, int column, const PlateFormat &format, Dice *samples)
{
    const double sample = std::ldexp(1.0, -int(8 * samples->uniform()));
    double concentration = sample;
    if (column < 2)
        concentration = row == format.rows - 1 ? 0 : std::ldexp(1.0, -row);
    constexpr double halfway = 0.1;
    return concentration * (1 + halfway) / (concentration + halfway);
}

// The same everywhere, but liquid has evaporated near the edge.
static double edgeEffect(int row, int column, const PlateFormat &format)
{
    const int toEdge = std::min({row, column, format.rows - 1 - row, format.columns - 1 - column});
    const double evaporated = toEdge == 0 ? 0.18 : toEdge == 1 ? 0.06 : 0;
    return (1 - 0.18) / (1 - evaporated);
}

QVector<double> strengths(const SimulatedPlate &plate, const PlateFormat &format, quint64 seed)
{
    Dice samples(seed, {0xe1});
    QVector<double> wells;
    wells.reserve(format.wells());
    for (int row = 0; row < format.rows; ++row) {
        for (int column = 0; column < format.columns; ++column) {
            switch (plate.layout) {
            case SimulatedPlate::Layout::DilutionSeries:
                wells.append(dilution(column, format.columns));
                break;
            case SimulatedPlate::Layout::Elisa:
                wells.append(elisa(row, column, format, &samples));
                break;
            case SimulatedPlate::Layout::EdgeEffect:
                wells.append(edgeEffect(row, column, format));
                break;
            case SimulatedPlate::Layout::Empty:
                wells.append(0);
                break;
            }
        }
    }
    return wells;
}

QVector<double> trueAbsorbance(const SimulatedPlate &plate, const PlateFormat &format, quint64 seed,
                               int wavelength)
{
    const double pathLength = plate.volume / format.wellArea / 10; // mm³ over mm², in cm
    const double strongest = absorptivity(plate.dye, wavelength) * plate.concentration * pathLength;
    QVector<double> wells = strengths(plate, format, seed);
    for (double &well : wells)
        well = well * strongest + plasticOpticalDensity;
    return wells;
}

QVector<double> measureAbsorbance(const QVector<double> &opticalDensities, bool rapid, Dice *dice)
{
    const double beam = rapid ? photonsPerRead / 40 : photonsPerRead;
    QVector<double> measured;
    measured.reserve(opticalDensities.size());
    for (const double opticalDensity : opticalDensities) {
        const double transmitted = std::pow(10, -opticalDensity) + strayLight;
        const double light = std::max(1.0, dice->counts(transmitted * beam));
        const double value = -std::log10(light / beam);
        measured.append(
            roundTo(10000, std::clamp(value, minimumOpticalDensity, maximumOpticalDensity)));
    }
    return measured;
}

QVector<double> trueLuminescence(const SimulatedPlate &plate, const PlateFormat &format,
                                 quint64 seed, double seconds)
{
    const double glow = (1 - std::exp(-(seconds + 20) / 10)) * std::exp(-seconds / 1800);
    QVector<double> wells = strengths(plate, format, seed);
    for (double &well : wells)
        well *= plate.brightness * glow;
    return wells;
}

double measureLuminescence(double rate, double seconds, Dice *dice)
{
    const double counts = dice->counts((rate + darkRate) * seconds);
    return roundTo(1000, std::min(counts / seconds, maximumLightRate));
}

double temperature(double seconds, quint64 seed)
{
    const double room = 21.5 + double(seed % 10) / 5;
    return roundTo(10, room + 3.2 * (1 - std::exp(-seconds / 1800)));
}

} // namespace qel::simulator
