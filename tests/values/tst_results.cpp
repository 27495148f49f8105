#include <qelvalues/features.h>
#include <qelvalues/results.h>

#include <QtCore/QDateTime>
#include <QtTest/QTest>

#include <cmath>
#include <functional>

using namespace qel::devices;
using namespace qel::values;

using Change = std::function<void(QVariantHash *)>;
Q_DECLARE_METATYPE(Change)

template<typename T>
static QVariant of(const T &value)
{
    return QVariant::fromValue(value);
}

static QString s(const char *text)
{
    return QString::fromUtf8(text);
}

static QVariantHash descriptor(Device::DeviceFeature feature)
{
    const bool isAbsorbance = feature == Device::DF_AbsorbanceMeasurement;
    const QVariantHash wavelengths{{s("type"), s("QList<int>")},
                                   {s("choices"), QVariantList{450, 620}},
                                   {s("default"), of(QList<int>())}};
    const QVariantHash time{{s("type"), s("std::chrono::milliseconds")},
                            {s("default"), of(std::chrono::milliseconds(500))}};
    return {
        {s("rows"), 2},
        {s("columns"), 3},
        {s("unit"), isAbsorbance ? s("OD") : s("RLU/s")},
        {s("minimum"), 0.0},
        {s("maximum"), 4.0},
        {s("settings"),
         QVariantHash{{s("wavelengths"), wavelengths}, {s("integrationTime"), time}}},
    };
}

static QVariantHash result(Device::DeviceFeature feature)
{
    const bool isAbsorbance = feature == Device::DF_AbsorbanceMeasurement;
    const QVariant read = of(QVector<double>{1, 2, 3, std::nan(""), 4, 0});
    QVariantHash hash{
        {s("rows"), 2},
        {s("columns"), 3},
        {s("unit"), isAbsorbance ? s("OD") : s("RLU/s")},
        {s("values"), isAbsorbance ? QVariantList{read, read} : QVariantList{read}},
        {s("startedAt"), QDateTime({2024, 5, 6}, {7, 8, 9}, Qt::UTC)},
        {s("temperature"), 25.0},
        {s("more"), s("is allowed")},
    };
    if (isAbsorbance)
        hash.insert(s("wavelengths"), of(QList<int>{450, 620}));
    else
        hash.insert(s("integrationTime"), of(std::chrono::milliseconds(500)));
    return hash;
}

class ResultsTest : public QObject
{
    Q_OBJECT

private slots:
    void measurements_data();
    void measurements();
    void otherResults_data();
    void otherResults();
    void descriptors_data();
    void descriptors();
    void transients();
    void wellStates();
};

void ResultsTest::measurements_data()
{
    QTest::addColumn<bool>("isAbsorbance");
    QTest::addColumn<QVariant>("configuration");
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, bool isAbsorbance, const QVariantHash &configuration,
                        const Change &change, const char *problem) {
        QTest::newRow(name) << isAbsorbance
                            << (configuration.isEmpty() ? QVariant() : QVariant(configuration))
                            << change << s(problem);
    };
    const auto set = [](const char *key, const QVariant &value) -> Change {
        return [key, value](QVariantHash *hash) { hash->insert(s(key), value); };
    };
    const auto remove = [](const char *key) -> Change {
        return [key](QVariantHash *hash) { hash->remove(s(key)); };
    };
    const Change nothing = [](QVariantHash *) {};
    const QVector<double> six(6);

    row("all wavelengths", true, {}, nothing, "");
    row("default time", false, {}, nothing, "");
    row("no unit", true, {}, remove("unit"), "result.unit is missing, not QString");
    row("other unit", true, {}, set("unit", s("mOD")), "result.unit is \"mOD\", not \"OD\"");
    row("rows as text", true, {}, set("rows", s("2")), "result.rows is QString, not int");
    row(
        "another plate", true, {},
        [](QVariantHash *hash) {
            hash->insert(s("rows"), 1);
            hash->insert(s("columns"), 6);
        },
        "result.rows is 1, the descriptor says 2; result.columns is 6, the descriptor says 3");
    row("impossible plate", true, {}, set("columns", 1 << 30),
        "result has a plate of 2 by 1073741824 wells");
    row("no plate", true, {}, set("rows", 0), "result has a plate of 0 by 3 wells");
    row("local time", true, {}, set("startedAt", QDateTime({2024, 5, 6}, {7, 8})),
        "result.startedAt is not a valid time in UTC");
    row("no time", true, {}, set("startedAt", QDateTime()),
        "result.startedAt is not a valid time in UTC");
    row("a read of floats", true, {}, set("values", QVariantList{of(six), of(QVector<float>(6))}),
        "result.values[1] is QVector<float>, not QVector<double>");
    row("wells missing", true, {}, set("values", QVariantList{of(QVector<double>(5)), of(six)}),
        "result.values[0] has 5 values for 2 by 3 wells");
    row("a read missing", true, {}, set("values", QVariantList{of(six)}),
        "result.values has 1 reads, not 2");
    row("reads twice", false, {}, set("values", QVariantList{of(six), of(six)}),
        "result.values has 2 reads, not 1");
    row(
        "nothing read", true, {{s("wavelengths"), of(QList<int>{450, 620})}},
        [](QVariantHash *hash) {
            hash->insert(s("values"), QVariantList());
            hash->insert(s("wavelengths"), of(QList<int>()));
        },
        "result.wavelengths is , the configuration says 450, 620; "
        "result.values has 0 reads, not 1");
    row("in another order", true, {{s("wavelengths"), of(QList<int>{620, 450})}}, nothing,
        "result.wavelengths is 450, 620, the configuration says 620, 450");
    row("another time", false, {{s("integrationTime"), of(std::chrono::milliseconds(70))}}, nothing,
        "result.integrationTime is 500 ms, the configuration says 70 ms");
    // The device has refused a setting of another type, or it has not looked at it.
    row("a senseless setting", false, {{s("integrationTime"), 70}}, nothing, "");
    row("selected", false, {{s("selectedWells"), of(QVector<bool>{1, 1, 1, 0, 1, 1})}}, nothing,
        "");
    row("not selected", false, {{s("selectedWells"), of(QVector<bool>{1, 1, 1, 1, 1, 0})}}, nothing,
        "result.values[0][5] has a value for a well that was not selected");
}

void ResultsTest::measurements()
{
    QFETCH(bool, isAbsorbance);
    QFETCH(QVariant, configuration);
    QFETCH(Change, change);
    QFETCH(QString, problem);
    const auto feature =
        isAbsorbance ? Device::DF_AbsorbanceMeasurement : Device::DF_LuminescenceMeasurement;
    QVariantHash hash = result(feature);
    change(&hash);
    QCOMPARE(toString(checkResult(feature, descriptor(feature), configuration, hash)), problem);
}

void ResultsTest::otherResults_data()
{
    QTest::addColumn<int>("feature");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("problem");
    const auto row = [](Device::DeviceFeature feature, const QVariant &result,
                        const char *problem) {
        QTest::addRow("%d %s", feature, problem) << int(feature) << result << s(problem);
    };
    row(Device::DF_AmbientTemperature, 21.5, "");
    row(Device::DF_AmbientTemperature, 21, "result is int, not double");
    row(Device::DF_AmbientTemperature, {}, "result is missing, not double");
    row(Device::DF_PlateDetection, of(SlotStatus::Empty), "");
    row(Device::DF_PlateDetection, 0, "result is int, not qel::devices::SlotStatus");
    row(Device::DF_LedBarEffect, {}, "");
    row(Device::DF_LedBarEffect, true, "result is bool, not invalid");
    row(Device::DF_Orientation, Orientation_result(0, 0, 9.81f, Orientation_result::Side::Top), "");
    row(Device::DF_Orientation,
        QVariantHash{
            {s("accelerationX"), 0.0}, {s("accelerationY"), 0.0f}, {s("accelerationZ"), 0.0f}},
        "result.accelerationX is double, not float; "
        "result.topSide is missing, not qel::devices::Orientation_result::Side");
    row(Device::DF_Calibration, QVariantHash{{s("calibratedAt"), QDateTime()}},
        "result.calibratedAt is not a valid time in UTC");
    row(Device::DF_AbsorbanceMeasurement, QVariantMap(), "result is QVariantMap, not QVariantHash");
    row(static_cast<Device::DeviceFeature>(99), 1, "");
}

void ResultsTest::otherResults()
{
    QFETCH(int, feature);
    QFETCH(QVariant, result);
    QFETCH(QString, problem);
    QCOMPARE(toString(checkResult(static_cast<Device::DeviceFeature>(feature), {}, {}, result)),
             problem);
}

void ResultsTest::descriptors_data()
{
    QTest::addColumn<int>("feature");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("problem");
    const auto row = [](Device::DeviceFeature feature, const QVariant &value, const char *problem) {
        QTest::addRow("%d %s", feature, problem) << int(feature) << value << s(problem);
    };
    const auto absorbance = Device::DF_AbsorbanceMeasurement;
    const auto with = [&](const char *key, const QVariant &value) {
        QVariantHash hash = descriptor(absorbance);
        hash.insert(s(key), value);
        return hash;
    };
    row(absorbance, descriptor(absorbance), "");
    row(absorbance, {}, "descriptor is missing, not QVariantHash");
    row(absorbance, with("minimum", 0), "descriptor.minimum is int, not double");
    row(absorbance, with("minimum", 5.0), "descriptor.minimum is 5, which cannot be");
    row(absorbance, with("rows", 0), "descriptor has a plate of 0 by 3 wells");
    row(absorbance, with("unit", s("RLU/s")), "descriptor.unit is \"RLU/s\", not \"OD\"");
    row(Device::DF_Orientation, QVariantHash{{s("unit"), s("m/s²")}}, "");
    row(Device::DF_Orientation, QVariantHash(), "descriptor.unit is missing, not QString");
    row(Device::DF_Calibration, {}, "");
    row(Device::DF_Calibration, QVariantHash{{s("more"), 1}}, "");
    row(Device::DF_Calibration, 1, "descriptor is int, not QVariantHash");
}

void ResultsTest::descriptors()
{
    QFETCH(int, feature);
    QFETCH(QVariant, value);
    QFETCH(QString, problem);
    QCOMPARE(toString(checkDescriptor(static_cast<Device::DeviceFeature>(feature), value)),
             problem);
}

void ResultsTest::transients()
{
    const auto progress = [](const QVariant &value) {
        return toString(
            checkTransient(Device::DF_Calibration, QVariantHash{{s("progress"), value}}));
    };
    QCOMPARE(progress(0.0), QString());
    QCOMPARE(progress(1.0), QString());
    QCOMPARE(progress(1), s("transient.progress is int, not double"));
    QCOMPARE(progress(1.5), s("transient.progress is 1.5, which cannot be"));
    QCOMPARE(progress(std::nan("")), s("transient.progress is nan, which cannot be"));
    QVERIFY(checkTransient(Device::DF_PlateDetection, of(SlotStatus::Empty)).isEmpty());
    QVERIFY(!checkTransient(Device::DF_PlateDetection, 0).isEmpty());
}

void ResultsTest::wellStates()
{
    const auto range = detectorRange(descriptor(Device::DF_AbsorbanceMeasurement));
    QCOMPARE(wellState(std::nan(""), range), WellState::NotMeasured);
    QCOMPARE(wellState(3.999, range), WellState::Measured);
    QCOMPARE(wellState(-0.1, range), WellState::Measured);
    QCOMPARE(wellState(4, range), WellState::Saturated);
    QCOMPARE(wellState(1e9, detectorRange({})), WellState::Measured);
}

QTEST_GUILESS_MAIN(ResultsTest)
#include "tst_results.moc"
