#include "mutants_p.h"

#include <algorithm>

using namespace qel::devices;

namespace {

// Configurations.

// Allows what is wrong in one way.
template<typename Lenience>
struct Lenient : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool allows(const QVariantHash &rules, const QVariant &value) const override
    {
        return Lenience()(rules, value) || GoodDevice::allows(rules, value);
    }
};

struct AnyTime
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<std::chrono::milliseconds>();
    }
};

struct TimeWithinLimits
{
    bool operator()(const QVariantHash &rules, const QVariant &value) const
    {
        const auto time = value.value<std::chrono::milliseconds>().count();
        return value.userType() == qMetaTypeId<std::chrono::milliseconds>()
            && time >= rules.value(QStringLiteral("minimum")).toInt()
            && time <= rules.value(QStringLiteral("maximum")).toInt();
    }
};

struct NumberAsText
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == QMetaType::QString;
    }
};

struct AnyList
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == QMetaType::QVariantList;
    }
};

struct FirstWavelengthOnly
{
    bool operator()(const QVariantHash &rules, const QVariant &value) const
    {
        const auto list = value.value<QList<int>>();
        return value.userType() == qMetaTypeId<QList<int>>() && !list.isEmpty()
            && rules.value(QStringLiteral("choices")).toList().contains(list.constFirst());
    }
};

struct AnyBits
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<LedBarEffect_config::Modes>();
    }
};

struct AnyEffect
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<LedBarEffect_Effect>();
    }
};

struct AnyWellCount
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<QVector<bool>>();
    }
};

// Results.

// Reads other values from the plate.
template<typename Change>
struct Misread : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVector<double> readPlate(const QVector<bool> &selected) const override
    {
        QVector<double> values = GoodDevice::readPlate(selected);
        Change()(&values);
        return values;
    }
};

struct ToInfinity
{
    void operator()(QVector<double> *values) const
    {
        std::replace(values->begin(), values->end(), 50.0, qInf());
    }
};

struct AboveMaximum
{
    void operator()(QVector<double> *values) const
    {
        std::replace(values->begin(), values->end(), 50.0, 100.5);
    }
};

struct ToNothing
{
    void operator()(QVector<double> *values) const
    {
        values->fill(qQNaN());
    }
};

struct ToEverything
{
    void operator()(QVector<double> *values) const
    {
        values->fill(50.0);
    }
};

// A plate of two rows and three columns, counted by columns.
struct Transposed
{
    void operator()(QVector<double> *values) const
    {
        const QVector<double> v = *values;
        *values = {v[0], v[2], v[4], v[1], v[3], v[5]};
    }
};

struct ColdBlooded : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        return feature == DF_AmbientTemperature ? QVariant(-273.2) : GoodDevice::resultOf(feature);
    }
};

// Says something else of a measurement.
template<typename Change>
struct Misreport : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariantHash measured(DeviceFeature feature) const override
    {
        QVariantHash result = GoodDevice::measured(feature);
        Change()(&result, feature);
        return result;
    }
};

struct OldTemperature
{
    void operator()(QVariantHash *result, Device::DeviceFeature) const
    {
        result->insert(QStringLiteral("temperature"), qQNaN());
    }
};

struct SortedWavelengths
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("wavelengths");
        auto list = result->value(key).value<QList<int>>();
        std::sort(list.begin(), list.end());
        if (feature == Device::DF_AbsorbanceMeasurement)
            result->insert(key, QVariant::fromValue(list));
    }
};

struct EachWavelengthOnce
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("wavelengths");
        auto list = result->value(key).value<QList<int>>();
        auto reads = result->value(QStringLiteral("values")).toList();
        if (feature != Device::DF_AbsorbanceMeasurement || list.size() < 2
            || list.constFirst() != list.constLast())
            return;
        list.removeLast();
        reads.removeLast();
        result->insert(key, QVariant::fromValue(list));
        result->insert(QStringLiteral("values"), reads);
    }
};

struct FixedTime
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("integrationTime");
        if (feature == Device::DF_LuminescenceMeasurement
            && result->value(key).value<std::chrono::milliseconds>().count() == 20)
            result->insert(key, QVariant::fromValue(std::chrono::milliseconds(10)));
    }
};

struct StoredResult
{
    void operator()(QVariantHash *result, Device::DeviceFeature) const
    {
        const QString key = QStringLiteral("startedAt");
        result->insert(key, result->value(key).toDateTime().addDays(-1));
    }
};

struct AxesMixedUp : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        return feature == DF_Orientation
            ? QVariantHash(Orientation_result(9.81F, 0, 0, Orientation_result::Side::Top))
            : GoodDevice::resultOf(feature);
    }
};

struct AccelerationInG : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        if (feature != DF_Orientation)
            return GoodDevice::resultOf(feature);
        return QVariantHash(Orientation_result(0.0F, 0.0F, 1.0F, Orientation_result::Side::Top));
    }
};

struct SecondDefault : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant setTo(DeviceFeature feature, const char *key) const override
    {
        if (!m_configuration.contains(QLatin1String(key)) && qstrcmp(key, "integrationTime") == 0)
            return QVariant::fromValue(std::chrono::milliseconds(200));
        return GoodDevice::setTo(feature, key);
    }
};

struct ReadsSettingsLate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        m_configuration = configuration(m_running).toHash();
        GoodDevice::finish(ok);
    }
};

} // namespace

QVector<Mutant> resultsMutants()
{
    return {
        {"606-any-bits", makeDriverOf<Lenient<AnyBits>>},
        {"606-any-effect", makeDriverOf<Lenient<AnyEffect>>},
        {"606-any-list", makeDriverOf<Lenient<AnyList>>},
        {"606-any-time", makeDriverOf<Lenient<AnyTime>>},
        {"606-any-well-count", makeDriverOf<Lenient<AnyWellCount>>},
        {"606-first-wavelength-only", makeDriverOf<Lenient<FirstWavelengthOnly>>},
        {"606-ignores-step", makeDriverOf<Lenient<TimeWithinLimits>>},
        {"606-number-as-text", makeDriverOf<Lenient<NumberAsText>>},
        {"1101-above-maximum", makeDriverOf<Misread<AboveMaximum>>},
        {"1101-cold-blooded", makeDriverOf<ColdBlooded>},
        {"1101-infinite", makeDriverOf<Misread<ToInfinity>>},
        {"1101-no-temperature", makeDriverOf<Misreport<OldTemperature>>},
        {"1102-nothing-measured", makeDriverOf<Misread<ToNothing>>},
        {"1102-selection-ignored", makeDriverOf<Misread<ToEverything>>},
        {"1102-wells-by-columns", makeDriverOf<Misread<Transposed>>},
        {"1103-each-wavelength-once", makeDriverOf<Misreport<EachWavelengthOnce>>},
        {"1103-fixed-time", makeDriverOf<Misreport<FixedTime>>},
        {"1103-sorted-wavelengths", makeDriverOf<Misreport<SortedWavelengths>>},
        {"1104-stored-result", makeDriverOf<Misreport<StoredResult>>},
        {"1105-acceleration-in-g", makeDriverOf<AccelerationInG>},
        {"1106-axes-mixed-up", makeDriverOf<AxesMixedUp>},
        {"1201-second-default", makeDriverOf<SecondDefault>},
        {"1202-reads-settings-late", makeDriverOf<ReadsSettingsLate>},
    };
}
