#include "features.h"

#include <algorithm>

namespace qel::values {

using devices::Device;

namespace {

constexpr char hash[] = "QVariantHash";

Shape value(const char *type, const char *unit = "")
{
    return {type, unit, {}};
}

Shape hashOf(const QVector<Key> &keys)
{
    return {hash, "", keys};
}

// clang-format off
QVector<Feature> makeFeatures()
{
    const Shape nothing;
    const Shape progress = hashOf({{"progress", "double"}});
    const Shape settings = hashOf({{"settings", hash}});
    const Shape slot = value("qel::devices::SlotStatus");
    const Shape firmware = hashOf({
        {"version",    "QString"},
        {"bootloader", "QString"},
        {"date",       "QDate"},
    });
    const auto measuring = [](const char *unit) {
        return hashOf({
            {"rows",     "int"},
            {"columns",  "int"},
            {"unit",     "QString", unit},
            {"minimum",  "double",  unit},
            {"maximum",  "double",  unit},
            {"settings", hash},
        });
    };
    // `own` is what tells the results of one measuring feature from those of the other.
    const auto plate = [](const char *unit, const Key &own) {
        return hashOf({
            {"rows",        "int"},
            {"columns",     "int"},
            {"unit",        "QString",      unit},
            {"values",      "QVariantList", unit},
            {"startedAt",   "QDateTime"},
            {"temperature", "double",       "°C"},
            own,
        });
    };

    // feature, whether it is offered, moves, measures;
    //     descriptor,
    //     configuration,
    //     transient value,
    //     result
    return {
        {Device::DF_None, false, false, false,
            nothing, nothing, nothing, nothing},
        {Device::DF_AmbientTemperature, true, false, false,
            hashOf({
                {"unit",    "QString", "°C"},
                {"minimum", "double",  "°C"},
                {"maximum", "double",  "°C"},
            }),
            nothing,
            nothing,
            value("double", "°C")},
        {Device::DF_AbsorbanceMeasurement, true, true, true,
            measuring("OD"),
            hashOf({
                {"wavelengths", "QList<int>", "nm"},
                {"rapidMode",   "bool"},
            }),
            progress,
            plate("OD", {"wavelengths", "QList<int>", "nm"})},
        {Device::DF_LuminescenceMeasurement, true, true, true,
            measuring("RLU/s"),
            hashOf({
                {"integrationTime", "std::chrono::milliseconds", "ms"},
                {"selectedWells",   "QVector<bool>"},
            }),
            progress,
            plate("RLU/s", {"integrationTime", "std::chrono::milliseconds", "ms"})},
        {Device::DF_Calibration, true, true, false,
            nothing,
            nothing,
            progress,
            hashOf({{"calibratedAt", "QDateTime"}})},
        {Device::DF_PlateDetection, true, false, false,
            nothing, nothing, slot, slot},
        {Device::DF_FirmwareInfo, true, false, false,
            nothing, nothing, nothing, firmware},
        {Device::DF_FirmwareUpdate, true, true, false,
            settings,
            hashOf({{"image", "QByteArray"}}),
            progress,
            firmware},
        {Device::DF_ReferenceNumber, true, false, false,
            nothing, nothing, nothing, value("QString")},
        {Device::DF_Orientation, true, false, false,
            hashOf({{"unit", "QString", "m/s²"}}),
            nothing,
            nothing,
            hashOf({
                {"accelerationX", "float", "m/s²"},
                {"accelerationY", "float", "m/s²"},
                {"accelerationZ", "float", "m/s²"},
                {"topSide",       "qel::devices::Orientation_result::Side"},
            })},
        {Device::DF_PartsAligned, true, false, false,
            nothing, nothing, nothing, value("bool")},
        {Device::DF_LedBarEffect, true, false, false,
            settings,
            hashOf({
                {"effect", "qel::devices::LedBarEffect_Effect"},
                {"color",  "qel::devices::LedBarEffect_config::Color"},
                {"mode",   "qel::devices::LedBarEffect_config::Modes"},
                {"state",  "uchar"},
            }),
            nothing,
            nothing},
    };
}
// clang-format on

} // namespace

const Key *Shape::find(const QString &name) const
{
    const auto found = std::find_if(keys.begin(), keys.end(), [&name](const Key &key) {
        return name == QLatin1String(key.name);
    });
    return found == keys.end() ? nullptr : &*found;
}

const QVector<Feature> &features()
{
    static const QVector<Feature> table = makeFeatures();
    return table;
}

const Feature *findFeature(Device::DeviceFeature feature)
{
    const auto &all = features();
    const auto found = std::find_if(all.begin(), all.end(), [feature](const Feature &entry) {
        return entry.feature == feature;
    });
    return found == all.end() ? nullptr : &*found;
}

bool isMeasurement(Device::DeviceFeature feature)
{
    const Feature *found = findFeature(feature);
    return found && found->isMeasurement;
}

bool isMoving(Device::DeviceFeature feature)
{
    const Feature *found = findFeature(feature);
    return found && found->isMoving;
}

} // namespace qel::values
