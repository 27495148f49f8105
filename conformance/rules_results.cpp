#include "tour.h"

#include <qelvalues/features.h>
#include <qelvalues/results.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace qel::conformance {

using devices::Device;
using devices::Orientation_result;
using values::Problem;

static const char group[] = "Results";
static const char configurations[] = "Configurations";

// The runs that succeeded with a result of the right shape, which is another rule's matter.
static QVector<Run> soundRuns(Subject &subject)
{
    return only(
        subject.tour().successful(), [](const Run &run) { return !isMisshapen(run); },
        QStringLiteral("no run succeeded"));
}

static QVector<Run> measurements(Subject &subject)
{
    return only(
        soundRuns(subject), [](const Run &run) { return values::isMeasurement(run.feature); },
        QStringLiteral("no measurement succeeded"));
}

static QVector<QVector<double>> readsOf(const Run &run)
{
    QVector<QVector<double>> reads;
    const auto list = run.ending().value.toHash().value(QStringLiteral("values")).toList();
    for (const QVariant &read : list)
        reads += read.value<QVector<double>>();
    return reads;
}

static QString rangeFault(const QString &what, double value, const QVariant &descriptor)
{
    const auto range = values::detectorRange(descriptor);
    if (!std::isfinite(value))
        return QStringLiteral("%1 is %2").arg(what).arg(value);
    if (value < range.minimum || value > range.maximum)
        return QStringLiteral("%1 is %2, outside of %3 to %4")
            .arg(what)
            .arg(value)
            .arg(range.minimum)
            .arg(range.maximum);
    return {};
}

static void checkRange(Subject &subject)
{
    Offences offences;
    const auto runs = soundRuns(subject);
    QVariant thermometer;
    for (const Run &run : runs) {
        if (run.feature == Device::DF_AmbientTemperature)
            thermometer = run.descriptor;
    }
    for (const Run &run : runs) {
        QString fault;
        if (run.feature == Device::DF_AmbientTemperature) {
            fault = rangeFault(QStringLiteral("the temperature"), run.ending().value.toDouble(),
                               run.descriptor);
        } else if (values::isMeasurement(run.feature)) {
            const QVariant temperature =
                run.ending().value.toHash().value(QStringLiteral("temperature"));
            fault =
                rangeFault(QStringLiteral("the temperature"), temperature.toDouble(), thermometer);
            const auto reads = readsOf(run);
            for (const auto &read : reads) {
                for (const double value : read) {
                    // Which wells hold no value is another rule's matter.
                    if (fault.isEmpty() && !std::isnan(value))
                        fault = rangeFault(QStringLiteral("a value"), value, run.descriptor);
                }
            }
        }
        if (!fault.isEmpty())
            offences.add(fault, run);
    }
    offences.conclude();
}

static void checkWells(Subject &subject)
{
    Offences offences;
    const auto runs = measurements(subject);
    for (const Run &run : runs) {
        if (run.kind == Run::Changed)
            continue;
        const auto selected = run.configuration.toHash()
                                  .value(QStringLiteral("selectedWells"))
                                  .value<QVector<bool>>();
        const auto reads = readsOf(run);
        int missing = 0;
        int unasked = 0;
        for (const auto &read : reads) {
            for (int i = 0; i < read.size(); ++i) {
                const bool isAsked = selected.isEmpty() || selected.value(i);
                missing += isAsked && std::isnan(read.at(i)) ? 1 : 0;
                unasked += !isAsked && !std::isnan(read.at(i)) ? 1 : 0;
            }
        }
        if (missing > 0)
            offences.add(QStringLiteral("%1 wells that were to be measured are NaN").arg(missing),
                         run);
        if (unasked > 0)
            offences.add(
                QStringLiteral("%1 wells that were not selected hold a value").arg(unasked), run);
    }
    offences.conclude();
}

// What differs from the configuration of a run, or from its descriptor.
static QStringList differences(const Run &run)
{
    QStringList texts;
    const auto problems =
        values::checkResult(run.feature, run.descriptor, run.configuration, run.ending().value);
    for (const Problem &problem : problems) {
        if (problem.code == Problem::NotAsConfigured || problem.code == Problem::NotAsDescribed)
            texts += values::toString(problem);
    }
    return texts;
}

static void checkKind(Subject &subject, const QVector<Run::Kind> &kinds, const QString &none)
{
    const auto isMeant = [&](const Run &run) { return kinds.contains(run.kind); };
    judge(only(measurements(subject), isMeant, none), differences);
}

static void checkAsConfigured(Subject &subject)
{
    checkKind(subject, {Run::Short, Run::Other}, QStringLiteral("no measurement succeeded"));
}

static void checkDefaults(Subject &subject)
{
    checkKind(subject, {Run::Defaults},
              QStringLiteral("no measurement without a configuration succeeded"));
}

static void checkConfigurationIsTaken(Subject &subject)
{
    checkKind(subject, {Run::Changed},
              QStringLiteral("no measurement has two configurations, or none lasts"));
}

static void checkTimes(Subject &subject)
{
    // Clocks are read to the millisecond, and not at the same moment.
    const int tolerance = 1;
    Offences offences;
    bool found = false;
    const auto runs = soundRuns(subject);
    for (const Run &run : runs) {
        const QVariantHash result = run.ending().value.toHash();
        for (const char *key : {"startedAt", "calibratedAt"}) {
            const QDateTime time = result.value(QLatin1String(key)).toDateTime();
            if (!time.isValid())
                continue;
            found = true;
            if (time < run.startedAt.addSecs(-tolerance) || time > run.endedAt.addSecs(tolerance)) {
                offences.add(QStringLiteral("'%1' is %2, the run lasted from %3 to %4")
                                 .arg(QLatin1String(key), time.toString(Qt::ISODateWithMs),
                                      run.startedAt.toString(Qt::ISODateWithMs),
                                      run.endedAt.toString(Qt::ISODateWithMs)),
                             run);
            }
        }
    }
    offences.conclude();
    if (!found)
        throw NotApplicable{QStringLiteral("no result with a time")};
}

namespace {

// As the accelerometer of an instrument at rest measures it: it points up.
struct Gravity
{
    double x, y, z;

    explicit Gravity(const QVariantHash &result)
        : x(result.value(QLatin1String(Orientation_result::ACCELERATION_X)).toDouble())
        , y(result.value(QLatin1String(Orientation_result::ACCELERATION_Y)).toDouble())
        , z(result.value(QLatin1String(Orientation_result::ACCELERATION_Z)).toDouble())
    { }
    double length() const
    {
        return std::sqrt(x * x + y * y + z * z);
    }
    // Its part in the direction of a side; nothing for no side in particular.
    std::optional<double> towards(Orientation_result::Side side) const
    {
        using Side = Orientation_result::Side;
        switch (side) {
        case Side::Top:
            return z;
        case Side::Bottom:
            return -z;
        case Side::Back:
            return y;
        case Side::Front:
            return -y;
        case Side::Right:
            return x;
        case Side::Left:
            return -x;
        case Side::Unknown:
            break;
        }
        return std::nullopt;
    }
};

} // namespace

static QVector<Run> orientations(Subject &subject)
{
    return only(
        soundRuns(subject), [](const Run &run) { return run.feature == Device::DF_Orientation; },
        QStringLiteral("no orientation was measured"));
}

static void checkGravity(Subject &subject)
{
    judge(orientations(subject), [](const Run &run) -> QStringList {
        const double gravity = 9.81;
        const double tolerance = 1.5;
        const double length = Gravity(run.ending().value.toHash()).length();
        if (std::abs(length - gravity) <= tolerance)
            return {};
        return {QStringLiteral("the acceleration is %1 m/s2 long").arg(length)};
    });
}

static void checkTopSide(Subject &subject)
{
    judge(orientations(subject), [](const Run &run) -> QStringList {
        const QVariantHash result = run.ending().value.toHash();
        const Gravity gravity(result);
        const auto side = result.value(QLatin1String(Orientation_result::TOP_SIDE))
                              .value<Orientation_result::Side>();
        const auto upwards = gravity.towards(side);
        // Whatever is tilted by more than 60 degrees does not face up.
        if (!upwards || *upwards >= gravity.length() / 2)
            return {};
        return {QStringLiteral("'topSide' is %1, but the acceleration is %2, %3, %4")
                    .arg(int(side))
                    .arg(gravity.x)
                    .arg(gravity.y)
                    .arg(gravity.z)};
    });
}

QVector<Rule> resultRules()
{
    return {
        {1101, group, Severity::Failure, false, Needs::Open,
         "Numbers in results are finite and within the range of their descriptor.",
         "A number that cannot be is taken for a measurement, and averaged.",
         "End the run with an error when the instrument delivers such a number; a saturated well "
         "holds the maximum.",
         checkRange},
        {1102, group, Severity::Failure, true, Needs::Open,
         "Wells that were to be measured hold a value, wells that were not selected are NaN. Wells "
         "are counted row by row.",
         "A plate whose values stand in other wells looks as good as a right one.",
         "Fill the read with NaN and write each value to row * columns + column.", checkWells},
        {1103, group, Severity::Failure, true, Needs::Open,
         "A measurement delivers what was configured, and names it: a read for each wavelength in "
         "the order asked for, repeated ones included, all that the choices list for an empty "
         "list; "
         "the integration time; and the plate of the descriptor.",
         "Values under another wavelength or time than they were measured with are wrong values.",
         "Build the result from the configuration that the run was started with.",
         checkAsConfigured},
        {1104, group, Severity::Failure, true, Needs::Open,
         "The times in a result lie within the run.",
         "A result from another day, which the instrument had stored, is taken for the present "
         "plate.",
         "Take the time when the run starts, in UTC, and ask the instrument for a new result.",
         checkTimes},
        {1105, group, Severity::Recommendation, false, Needs::Open,
         "The acceleration at rest has the length of gravity in m/s2.",
         "In other units, g for instance, tilts are computed wrongly.",
         "Multiply what the sensor says in g by 9.81.", checkGravity},
        {1106, group, Severity::Recommendation, false, Needs::Open,
         "The side that faces up is the one that the acceleration at rest points to.",
         "One of the two is wrong, and the user is told to turn an instrument that stands upright.",
         "Turn the axes of the sensor into those of the instrument: x to its right, y to its back, "
         "z up.",
         checkTopSide},
        {1201, configurations, Severity::Failure, true, Needs::Open,
         "What the descriptor names as default holds where the configuration lacks the setting.",
         "The form shows the default, and the user believes that it was measured with it.",
         "Read the default from the descriptor, not from a second place.", checkDefaults},
        {1202, configurations, Severity::Failure, true, Needs::Open,
         "The configuration counts that was set when the run was started.",
         "An application prepares the next run while this one goes on.",
         "Copy configuration(feature) in executeImpl(), and read it nowhere else.",
         checkConfigurationIsTaken},
    };
}

} // namespace qel::conformance
