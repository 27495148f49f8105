#include "models.h"

#include <algorithm>

namespace qel::simulator {

using qel::devices::Device;

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
         8,
         12,
         32.2,
         200,
         {405, 450, 492, 620},
         commonFeatures
             + QList<Device::DeviceFeature>{Device::DF_AbsorbanceMeasurement,
                                            Device::DF_Calibration, Device::DF_PartsAligned}},
        {QStringLiteral("luminescence-96"),
         QStringLiteral("Simulated luminescence reader"),
         QStringLiteral("SIM-LUM-96"),
         8,
         12,
         32.2,
         200,
         {},
         commonFeatures + QList<Device::DeviceFeature>{Device::DF_LuminescenceMeasurement}},
        {QStringLiteral("combined-384"),
         QStringLiteral("Simulated combined reader"),
         QStringLiteral("SIM-COM-384"),
         16,
         24,
         10.9,
         80,
         {340, 405, 450, 492, 540, 595, 620, 650},
         commonFeatures
             + QList<Device::DeviceFeature>{Device::DF_AbsorbanceMeasurement,
                                            Device::DF_LuminescenceMeasurement,
                                            Device::DF_Calibration, Device::DF_PartsAligned}},
        {QStringLiteral("identity-only"),
         QStringLiteral("Simulated instrument"),
         QStringLiteral("SIM-ID"),
         0,
         0,
         0,
         0,
         {},
         {}},
    };
    return all;
}

const Model *findModel(const QString &id)
{
    const auto &all = models();
    const auto found =
        std::find_if(all.cbegin(), all.cend(), [&](const Model &model) { return model.id == id; });
    return found != all.cend() ? &*found : nullptr;
}

} // namespace qel::simulator
