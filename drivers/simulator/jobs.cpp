#include "jobs.h"

#include "optics.h"

#include <QtCore/QDateTime>

#include <chrono>
#include <cmath>
#include <limits>

namespace qel::simulator {

using namespace qel::devices;

namespace {

const auto defaultIntegrationTime = std::chrono::milliseconds(100);

QVariantHash setting(const char *type, const QVariantHash &rest)
{
    QVariantHash description = rest;
    description.insert(QStringLiteral("type"), QString::fromLatin1(type));
    return description;
}

QVariantHash measuringDescriptor(const Model &model, const QString &unit, double minimum,
                                 double maximum, const QVariantHash &settings)
{
    return {
        {QStringLiteral("rows"), model.format.rows},
        {QStringLiteral("columns"), model.format.columns},
        {QStringLiteral("unit"), unit},
        {QStringLiteral("minimum"), minimum},
        {QStringLiteral("maximum"), maximum},
        {QStringLiteral("settings"), settings},
    };
}

QVariantHash absorbanceDescriptor(const Model &model)
{
    QVariantList choices;
    for (const int wavelength : model.wavelengths)
        choices.append(wavelength);
    const QVariantHash settings{
        {QStringLiteral("wavelengths"),
         setting("QList<int>",
                 {{QStringLiteral("choices"), choices},
                  {QStringLiteral("unit"), QStringLiteral("nm")},
                  {QStringLiteral("default"), QVariant::fromValue(QList<int>())}})},
        {QStringLiteral("rapidMode"), setting("bool", {{QStringLiteral("default"), false}})},
    };
    return measuringDescriptor(model, QStringLiteral("OD"), minimumOpticalDensity,
                               maximumOpticalDensity, settings);
}

QVariantHash luminescenceDescriptor(const Model &model)
{
    const QVariantHash settings{
        {QStringLiteral("integrationTime"),
         setting("std::chrono::milliseconds",
                 {{QStringLiteral("minimum"), 10},
                  {QStringLiteral("maximum"), 10000},
                  {QStringLiteral("step"), 10},
                  {QStringLiteral("unit"), QStringLiteral("ms")},
                  {QStringLiteral("default"), QVariant::fromValue(defaultIntegrationTime)}})},
        {QStringLiteral("selectedWells"),
         setting("QVector<bool>",
                 {{QStringLiteral("length"), model.format.wells()},
                  {QStringLiteral("default"), QVariant::fromValue(QVector<bool>())}})},
    };
    return measuringDescriptor(model, QStringLiteral("RLU/s"), 0, maximumLightRate, settings);
}

QVariantHash ledBarDescriptor()
{
    QVariantList effects;
    for (int effect = 0; effect <= int(LedBarEffect_Effect::Breathing); ++effect)
        effects.append(effect);
    const LedBarEffect_config byDefault;
    return {{QStringLiteral("settings"),
             QVariantHash{
                 {QStringLiteral("effect"),
                  setting("qel::devices::LedBarEffect_Effect",
                          {{QStringLiteral("choices"), effects},
                           {QStringLiteral("names"),
                            QStringList{QStringLiteral("Solid"), QStringLiteral("Progress"),
                                        QStringLiteral("Cylon"), QStringLiteral("Rainbow"),
                                        QStringLiteral("Blinking"), QStringLiteral("Breathing")}},
                           {QStringLiteral("default"), QVariant::fromValue(byDefault.effect())}})},
                 {QStringLiteral("color"),
                  setting("qel::devices::LedBarEffect_config::Color",
                          {{QStringLiteral("default"), QVariant::fromValue(byDefault.color())}})},
                 {QStringLiteral("mode"),
                  setting("qel::devices::LedBarEffect_config::Modes",
                          {{QStringLiteral("choices"), QVariantList{1, 2, 4}},
                           {QStringLiteral("names"),
                            QStringList{QStringLiteral("reversed"), QStringLiteral("mirrored"),
                                        QStringLiteral("once")}},
                           {QStringLiteral("default"), QVariant::fromValue(byDefault.modes())}})},
                 {QStringLiteral("state"),
                  setting("uchar",
                          {{QStringLiteral("minimum"), 0},
                           {QStringLiteral("maximum"), 255},
                           {QStringLiteral("default"), QVariant::fromValue(uchar(0))}})},
             }}};
}

// What the results of both measurements have in common, as things stand when the run starts.
QVariantHash measurementFrame(const SimulatedInstrument &instrument, const QString &unit)
{
    const PlateFormat &format = instrument.model().format;
    return {
        {QStringLiteral("rows"), format.rows},
        {QStringLiteral("columns"), format.columns},
        {QStringLiteral("unit"), unit},
        {QStringLiteral("startedAt"), QDateTime::currentDateTimeUtc()},
        {QStringLiteral("temperature"),
         temperature(instrument.clock, instrument.description().seed)},
    };
}

Job absorbanceJob(const QVariantHash &configuration, const SimulatedInstrument &instrument)
{
    const AbsorbanceMeasurement_config config{configuration};
    const bool rapid = config.isRapidModeEnabled();
    QList<int> wavelengths = config.wavelengths();
    if (wavelengths.isEmpty())
        wavelengths = instrument.model().wavelengths;
    const QVariantHash frame = measurementFrame(instrument, QStringLiteral("OD"));

    Job job;
    job.seconds =
        wavelengths.size() * (0.3 + instrument.model().format.wells() * (rapid ? 0.002 : 0.006));
    job.reportsProgress = true;
    job.needsCalibration = true;
    job.slot = Job::Slot::NeedsPlate;
    job.finish = [=](SimulatedInstrument &i) {
        const quint64 seed = i.description().seed;
        QVariantList values;
        for (int read = 0; read < wavelengths.size(); ++read) {
            Dice dice(seed, {0xab, quint32(i.measurements), quint32(read)});
            const auto trueValues =
                trueAbsorbance(i.plate(), i.model().format, seed, wavelengths.at(read));
            values.append(QVariant::fromValue(measureAbsorbance(trueValues, rapid, &dice)));
        }
        QVariantHash result = frame;
        result.insert(QStringLiteral("wavelengths"), QVariant::fromValue(wavelengths));
        result.insert(QStringLiteral("values"), values);
        return JobOutcome{result, NO_DEVICE_ERROR, {}};
    };
    return job;
}

Job luminescenceJob(const QVariantHash &configuration, const SimulatedInstrument &instrument)
{
    const LuminescenceMeasurement_config config{configuration};
    const auto integrationTime =
        config.contains(QLatin1String(LuminescenceMeasurement_config::INTEGRATION_TIME))
        ? config.integrationTime()
        : defaultIntegrationTime;
    QVector<bool> wells = config.selectedWells();
    if (wells.isEmpty())
        wells.fill(true, instrument.model().format.wells());
    const double secondsPerWell = double(integrationTime.count()) / 1000;
    const QVariantHash frame = measurementFrame(instrument, QStringLiteral("RLU/s"));
    const double startedAt = instrument.clock;

    Job job;
    job.seconds = wells.count(true) * (secondsPerWell + 0.02);
    job.reportsProgress = true;
    job.slot = Job::Slot::NeedsPlate;
    job.finish = [=](SimulatedInstrument &i) {
        Dice dice(i.description().seed, {0x1b, quint32(i.measurements)});
        QVector<double> values(wells.size(), std::numeric_limits<double>::quiet_NaN());
        const auto trueValues =
            trueLuminescence(i.plate(), i.model().format, i.description().seed, startedAt);
        for (int well = 0; well < wells.size(); ++well) {
            if (wells.at(well))
                values[well] = measureLuminescence(trueValues.at(well), secondsPerWell, &dice);
        }
        QVariantHash result = frame;
        result.insert(QStringLiteral("integrationTime"), QVariant::fromValue(integrationTime));
        result.insert(QStringLiteral("values"), QVariantList{QVariant::fromValue(values)});
        return JobOutcome{result, NO_DEVICE_ERROR, {}};
    };
    return job;
}

Job calibrationJob()
{
    Job job;
    job.seconds = 4;
    job.reportsProgress = true;
    job.slot = Job::Slot::NeedsEmpty;
    job.finish = [](SimulatedInstrument &i) {
        i.calibrated = true;
        return JobOutcome{
            QVariantHash{{QStringLiteral("calibratedAt"), QDateTime::currentDateTimeUtc()}},
            NO_DEVICE_ERROR,
            {}};
    };
    return job;
}

QVariantHash firmwareInfo(const SimulatedInstrument &instrument)
{
    return {{QStringLiteral("version"), instrument.firmware},
            {QStringLiteral("bootloader"), QStringLiteral("1.1.0")},
            {QStringLiteral("date"), instrument.firmwareDate}};
}

// An image is the line "QELSIM VERSION", the code, and a CRC-16 of both, high byte first.
JobOutcome flash(const QByteArray &image, SimulatedInstrument *instrument)
{
    const QByteArray magic("QELSIM ");
    const int lineEnd = image.indexOf('\n');
    const int codeEnd = image.size() - 2;
    if (!image.startsWith(magic) || lineEnd <= magic.size() || lineEnd >= codeEnd)
        return {{}, ERROR_DEVICE_INVALID_CONFIGURATION, QStringLiteral("qelsimulator-no-firmware")};
    const quint16 expected =
        quint16(quint8(image.at(codeEnd)) << 8 | quint8(image.at(codeEnd + 1)));
    if (qChecksum(image.constData(), uint(codeEnd)) != expected)
        return {
            {}, ERROR_DEVICE_CHECKSUM_MISMATCH, QStringLiteral("qelsimulator-damaged-firmware")};
    if (lineEnd + 1 == codeEnd)
        return {{}, ERROR_DEVICE_BOOT_FAIL, QStringLiteral("qelsimulator-empty-firmware")};
    instrument->firmware = QString::fromUtf8(image.mid(magic.size(), lineEnd - magic.size()));
    instrument->firmwareDate = QDateTime::currentDateTimeUtc().date();
    return {firmwareInfo(*instrument), NO_DEVICE_ERROR, {}};
}

Job firmwareUpdateJob(const QVariantHash &configuration)
{
    const QByteArray image = configuration.value(QStringLiteral("image")).toByteArray();
    Job job;
    job.seconds = 2 + image.size() / 20000.0;
    job.reportsProgress = true;
    job.finish = [image](SimulatedInstrument &i) { return flash(image, &i); };
    return job;
}

Job ledBarJob(const QVariantHash &configuration)
{
    Job job;
    job.seconds = 0.05;
    job.finish = [configuration](SimulatedInstrument &i) {
        LedBarEffect_config effect;
        for (auto value = configuration.cbegin(); value != configuration.cend(); ++value)
            effect.insert(value.key(), value.value());
        i.ledBar = effect;
        return JobOutcome();
    };
    return job;
}

// What the instrument tells without changing.
Job questionJob(double seconds, const std::function<QVariant(const SimulatedInstrument &)> &answer)
{
    Job job;
    job.seconds = seconds;
    job.finish = [answer](SimulatedInstrument &i) {
        return JobOutcome{answer(i), NO_DEVICE_ERROR, {}};
    };
    return job;
}

} // namespace

QVariant descriptorOf(Device::DeviceFeature feature, const Model &model)
{
    switch (feature) {
    case Device::DF_AmbientTemperature:
        return QVariantHash{{QStringLiteral("unit"), QStringLiteral("°C")},
                            {QStringLiteral("minimum"), 0.0},
                            {QStringLiteral("maximum"), 60.0}};
    case Device::DF_AbsorbanceMeasurement:
        return absorbanceDescriptor(model);
    case Device::DF_LuminescenceMeasurement:
        return luminescenceDescriptor(model);
    case Device::DF_FirmwareUpdate:
        return QVariantHash{{QStringLiteral("settings"),
                             QVariantHash{{QStringLiteral("image"), setting("QByteArray", {})}}}};
    case Device::DF_Orientation:
        return QVariantHash{{QStringLiteral("unit"), QStringLiteral("m/s²")}};
    case Device::DF_LedBarEffect:
        return ledBarDescriptor();
    default:
        return {};
    }
}

Job jobFor(Device::DeviceFeature feature, const QVariantHash &configuration,
           const SimulatedInstrument &instrument)
{
    switch (feature) {
    case Device::DF_AmbientTemperature:
        return questionJob(0.2, [](const SimulatedInstrument &i) {
            return temperature(i.clock, i.description().seed);
        });
    case Device::DF_AbsorbanceMeasurement:
        return absorbanceJob(configuration, instrument);
    case Device::DF_LuminescenceMeasurement:
        return luminescenceJob(configuration, instrument);
    case Device::DF_Calibration:
        return calibrationJob();
    case Device::DF_PlateDetection:
        return questionJob(
            0.1, [](const SimulatedInstrument &i) { return QVariant::fromValue(i.slotStatus()); });
    case Device::DF_FirmwareInfo:
        return questionJob(0, &firmwareInfo);
    case Device::DF_FirmwareUpdate:
        return firmwareUpdateJob(configuration);
    case Device::DF_ReferenceNumber:
        return questionJob(0,
                           [](const SimulatedInstrument &i) { return i.model().referenceNumber; });
    case Device::DF_Orientation:
        return questionJob(0.1, [](const SimulatedInstrument &) {
            return Orientation_result(0.03f, -0.05f, 9.81f, Orientation_result::Side::Top);
        });
    case Device::DF_PartsAligned:
        return questionJob(0.5, [](const SimulatedInstrument &) { return true; });
    case Device::DF_LedBarEffect:
        return ledBarJob(configuration);
    case Device::DF_None:
        break;
    }
    return questionJob(0, [](const SimulatedInstrument &) { return QVariant(); });
}

} // namespace qel::simulator
