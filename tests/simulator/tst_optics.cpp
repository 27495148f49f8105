#include "optics.h"

#include <QtTest/QtTest>

#include <cmath>
#include <functional>

using namespace qel::simulator;

class tst_Optics : public QObject
{
    Q_OBJECT

private slots:
    void diceHaveTheirMoments_data();
    void diceHaveTheirMoments();
    void noiseIsShotNoise_data();
    void noiseIsShotNoise();
    void beerLambert();
    void detectorsSaturate();
    void layouts();
    void glowRisesAndFades();
    void temperatureDrifts();
};

struct Moments
{
    double mean = 0;
    double deviation = 0;
};

static Moments momentsOf(int count, const std::function<double()> &draw)
{
    double sum = 0;
    double squares = 0;
    for (int i = 0; i < count; ++i) {
        const double value = draw();
        sum += value;
        squares += value * value;
    }
    const double mean = sum / count;
    return {mean, std::sqrt(squares / count - mean * mean)};
}

static SimulatedPlate plateOf(SimulatedPlate::Layout layout)
{
    SimulatedPlate plate;
    plate.layout = layout;
    return plate;
}

void tst_Optics::diceHaveTheirMoments_data()
{
    QTest::addColumn<double>("counts"); // negative: the normal dice
    QTest::addColumn<double>("mean");
    QTest::addColumn<double>("deviation");
    QTest::newRow("normal") << -1.0 << 0.0 << 1.0;
    for (const double mean : {0.3, 4.0, 49.0, 51.0, 1e6})
        QTest::addRow("counts of %g", mean) << mean << mean << std::sqrt(mean);
}

void tst_Optics::diceHaveTheirMoments()
{
    QFETCH(double, counts);
    QFETCH(double, mean);
    QFETCH(double, deviation);
    Dice dice(42, {1});
    const int n = 20000;
    const Moments seen =
        momentsOf(n, [&] { return counts < 0 ? dice.normal() : dice.counts(counts); });
    QVERIFY(std::abs(seen.mean - mean) < 5 * deviation / std::sqrt(n));
    QVERIFY(std::abs(seen.deviation / deviation - 1) < 0.05);
}

void tst_Optics::noiseIsShotNoise_data()
{
    QTest::addColumn<double>("opticalDensity");
    QTest::addColumn<bool>("rapid");
    for (const double opticalDensity : {0.05, 1.0, 2.0}) {
        QTest::addRow("%g OD", opticalDensity) << opticalDensity << false;
        QTest::addRow("%g OD, rapid", opticalDensity) << opticalDensity << true;
    }
}

// N photons vary by their square root, which is 1 / (ln 10 · √N) in OD.
void tst_Optics::noiseIsShotNoise()
{
    QFETCH(double, opticalDensity);
    QFETCH(bool, rapid);
    Dice dice(3, {9});
    const auto read = measureAbsorbance(QVector<double>(20000, opticalDensity), rapid, &dice);
    int next = 0;
    const Moments seen = momentsOf(read.size(), [&] { return read.at(next++); });
    const double photons = (rapid ? 1e5 : 4e6) * std::pow(10, -opticalDensity);
    const double expected =
        std::hypot(1 / (std::log(10) * std::sqrt(photons)), 0.0001 / std::sqrt(12));
    QVERIFY2(std::abs(seen.deviation / expected - 1) < 0.05,
             qPrintable(QString::number(seen.deviation)));
    QVERIFY(std::abs(seen.mean - opticalDensity) < 0.002);
}

void tst_Optics::beerLambert()
{
    const PlateFormat &format = models().constFirst().format;
    SimulatedPlate plate;
    const auto whole = trueAbsorbance(plate, format, 1, 450);
    plate.concentration /= 2;
    const auto half = trueAbsorbance(plate, format, 1, 450);
    plate.concentration *= 2;
    plate.volume /= 2;
    const auto shallow = trueAbsorbance(plate, format, 1, 450);
    const double plastic = whole.at(11); // the blank
    // (59000 + 591 from the neighbouring band) l/(mol·cm) × 60 µmol/l × 0.6211 cm
    QVERIFY(std::abs(whole.at(0) - plastic - 2.221) < 0.001);
    QVERIFY(std::abs((whole.at(0) - plastic) / (half.at(0) - plastic) - 2) < 1e-9);
    QCOMPARE(shallow, half);
    QVERIFY(absorptivity("tmb", 450) > 20 * absorptivity("tmb", 540));
    QVERIFY(absorptivity("crystal-violet", 595) > 20 * absorptivity("crystal-violet", 405));
}

void tst_Optics::detectorsSaturate()
{
    Dice dice(1, {1});
    QCOMPARE(measureAbsorbance({9.0}, false, &dice), QVector<double>{maximumOpticalDensity});
    QCOMPARE(measureLuminescence(1e9, 0.1, &dice), maximumLightRate);
    QVERIFY(measureLuminescence(0, 10, &dice) > 0); // dark counts
}

void tst_Optics::layouts()
{
    for (const PlateFormat &format : plateFormats()) {
        const auto at = [&](const QVector<double> &wells, int row, int column) {
            return wells.at(row * format.columns + column);
        };
        const int lastRow = format.rows - 1;
        const int lastColumn = format.columns - 1;
        const auto dilution = strengths(plateOf(SimulatedPlate::Layout::DilutionSeries), format, 1);
        QCOMPARE(dilution.size(), format.wells());
        QCOMPARE(at(dilution, lastRow, 1), 0.5);
        QCOMPARE(at(dilution, 0, lastColumn), 0.0);
        const auto edge = strengths(plateOf(SimulatedPlate::Layout::EdgeEffect), format, 1);
        if (format.wells() >= 96)
            QVERIFY(at(edge, 0, 3) > at(edge, 1, 3) && at(edge, 1, 3) > at(edge, 2, 3));
        QCOMPARE(at(edge, lastRow, lastColumn), at(edge, 0, 0));
        const auto elisa = strengths(plateOf(SimulatedPlate::Layout::Elisa), format, 1);
        QCOMPARE(at(elisa, 0, 0), at(elisa, 0, 1)); // standards in duplicate
        QVERIFY(at(elisa, 0, 0) > at(elisa, 1, 0));
        QCOMPARE(at(elisa, lastRow, 0), 0.0);
        QVERIFY(strengths(plateOf(SimulatedPlate::Layout::Elisa), format, 2) != elisa);
        QCOMPARE(strengths(plateOf(SimulatedPlate::Layout::Empty), format, 1).count(0.0),
                 format.wells());
    }
}

void tst_Optics::glowRisesAndFades()
{
    const PlateFormat &format = models().at(1).format;
    const auto glow = [&](double seconds) {
        return trueLuminescence(SimulatedPlate(), format, 1, seconds).at(0);
    };
    QVERIFY(glow(30) > glow(0));
    QVERIFY(std::abs(glow(30 + 1800) / glow(30) - std::exp(-1)) < 0.01);
}

void tst_Optics::temperatureDrifts()
{
    QVERIFY(temperature(3600, 1) - temperature(0, 1) > 2);
    QVERIFY(temperature(1e9, 9) < 60);
    QVERIFY(temperature(0, 1) != temperature(0, 6));
}

QTEST_GUILESS_MAIN(tst_Optics)
#include "tst_optics.moc"
