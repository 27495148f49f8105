#include "models.h"

#include <algorithm>

namespace qel::simulator {

using qel::devices::Device;

const QVector<PlateFormat> &plateFormats()
{
    static const QVector<PlateFormat> all{
        {2, 3, 960, 2000},  {3, 4, 380, 1000},  {4, 6, 190, 500}, {6, 8, 95, 300},
        {8, 12, 32.2, 200}, {16, 24, 10.9, 80}, {32, 48, 2.3, 8},
    };
    return all;
}

static PlateFormat formatWith(int wells)
{
    const auto &all = plateFormats();
    return *std::find_if(all.cbegin(), all.cend(),
                         [&](const PlateFormat &format) { return format.wells() == wells; });
}

const QList<Model> &models()
{
    static const QList<Device::DeviceFeature> commonFeatures{
        Device::DF_AmbientTemperature, Device::DF_PlateDetection,  Device::DF_FirmwareInfo,
        Device::DF_FirmwareUpdate,     Device::DF_ReferenceNumber, Device::DF_Orientation,
        Device::DF_LedBarEffect,
    };
    static const QList<Model> all{
        {QStringLiteral("absorbance-96"),
         QStringLiteral("Simulated absorbance reader"),
         QStringLiteral("SIM-ABS-96"),
         formatWith(96),
         {405, 450, 492, 620},
         commonFeatures
             + QList<Device::DeviceFeature>{Device::DF_AbsorbanceMeasurement,
                                            Device::DF_Calibration, Device::DF_PartsAligned}},
        {QStringLiteral("luminescence-96"),
         QStringLiteral("Simulated luminescence reader"),
         QStringLiteral("SIM-LUM-96"),
         formatWith(96),
         {},
         commonFeatures + QList<Device::DeviceFeature>{Device::DF_LuminescenceMeasurement}},
        {QStringLiteral("combined-384"),
         QStringLiteral("Simulated combined reader"),
         QStringLiteral("SIM-COM-384"),
         formatWith(384),
         {340, 405, 450, 492, 540, 595, 620, 650},
         commonFeatures
             + QList<Device::DeviceFeature>{Device::DF_AbsorbanceMeasurement,
                                            Device::DF_LuminescenceMeasurement,
                                            Device::DF_Calibration, Device::DF_PartsAligned}},
        {QStringLiteral("identity-only"),
         QStringLiteral("Simulated instrument"),
         QStringLiteral("SIM-ID"),
         {},
         {},
         {}},
    };
    return all;
}

} // namespace qel::simulator
