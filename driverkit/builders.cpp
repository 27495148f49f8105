#include "builders.h"

#include <qeldevices/device.h>

#include <cmath>
#include <limits>

namespace qel::driver {

SettingBuilder::SettingBuilder(const QVariant &preset, bool isOptional)
    : m_setting{{QStringLiteral("type"), QString::fromLatin1(preset.typeName())}}
{
    if (isOptional)
        m_setting.insert(QStringLiteral("default"), preset);
}

SettingBuilder &SettingBuilder::range(const QVariant &minimum, const QVariant &maximum)
{
    m_setting.insert(QStringLiteral("minimum"), minimum);
    m_setting.insert(QStringLiteral("maximum"), maximum);
    return *this;
}

SettingBuilder &SettingBuilder::step(const QVariant &step)
{
    m_setting.insert(QStringLiteral("step"), step);
    return *this;
}

SettingBuilder &SettingBuilder::unit(const QString &unit)
{
    m_setting.insert(QStringLiteral("unit"), unit);
    return *this;
}

SettingBuilder &SettingBuilder::choices(const QVariantList &values, const QStringList &names)
{
    m_setting.insert(QStringLiteral("choices"), values);
    if (!names.isEmpty())
        m_setting.insert(QStringLiteral("names"), names);
    return *this;
}

SettingBuilder &SettingBuilder::length(int length)
{
    m_setting.insert(QStringLiteral("length"), length);
    return *this;
}

SettingBuilder::operator QVariant() const
{
    return m_setting;
}

QVariantHash temperatureDescriptor(double minimum, double maximum)
{
    return {{QStringLiteral("unit"), QStringLiteral("°C")},
            {QStringLiteral("minimum"), minimum},
            {QStringLiteral("maximum"), maximum}};
}

static QVariantHash plateDescriptor(const Detector &detector, const QString &unit,
                                    const QVariantHash &settings)
{
    return {{QStringLiteral("rows"), detector.rows},
            {QStringLiteral("columns"), detector.columns},
            {QStringLiteral("unit"), unit},
            {QStringLiteral("minimum"), detector.minimum},
            {QStringLiteral("maximum"), detector.maximum},
            {QStringLiteral("settings"), settings}};
}

QVariantHash absorbanceDescriptor(const Detector &detector, const QList<int> &wavelengths,
                                  const QVariantHash &settings)
{
    QVariantList choices;
    for (const int wavelength : wavelengths)
        choices << wavelength;
    QVariantHash all = settings;
    all.insert(QLatin1String(devices::AbsorbanceMeasurement_config::WAVELENGTHS),
               SettingBuilder::optional(QList<int>()).unit(QStringLiteral("nm")).choices(choices));
    return plateDescriptor(detector, QStringLiteral("OD"), all);
}

QVariantHash luminescenceDescriptor(const Detector &detector, const QVariant &integrationTime)
{
    using Configuration = devices::LuminescenceMeasurement_config;
    return plateDescriptor(
        detector, QStringLiteral("RLU/s"),
        {{QLatin1String(Configuration::INTEGRATION_TIME), integrationTime},
         {QLatin1String(Configuration::SELECTED_WELLS),
          SettingBuilder::optional(QVector<bool>()).length(detector.rows * detector.columns)}});
}

PlateResult::PlateResult(const QVariantHash &descriptor, int reads, double temperature)
    : m_descriptor(descriptor)
    , m_temperature(temperature)
{
    const QVector<double> empty(rows() * columns(), std::numeric_limits<double>::quiet_NaN());
    m_reads.fill(empty, reads);
}

int PlateResult::rows() const
{
    return m_descriptor.value(QStringLiteral("rows")).toInt();
}

int PlateResult::columns() const
{
    return m_descriptor.value(QStringLiteral("columns")).toInt();
}

bool PlateResult::setValue(int read, int well, double value)
{
    if (read < 0 || read >= m_reads.size() || well < 0 || well >= m_reads.at(read).size())
        return false;
    m_reads[read][well] = value;
    return true;
}

int PlateResult::count() const
{
    int count = 0;
    for (const QVector<double> &read : m_reads) {
        for (const double value : read)
            count += !std::isnan(value);
    }
    return count;
}

QVariantHash PlateResult::common() const
{
    QVariantList values;
    for (const QVector<double> &read : m_reads)
        values << QVariant::fromValue(read);
    return {{QStringLiteral("rows"), rows()},
            {QStringLiteral("columns"), columns()},
            {QStringLiteral("unit"), m_descriptor.value(QStringLiteral("unit"))},
            {QStringLiteral("values"), values},
            {QStringLiteral("startedAt"), m_startedAt},
            {QStringLiteral("temperature"), m_temperature}};
}

QVariant PlateResult::absorbance(const QList<int> &wavelengths) const
{
    QVariantHash result = common();
    result.insert(QStringLiteral("wavelengths"), QVariant::fromValue(wavelengths));
    return result;
}

QVariant PlateResult::luminescence(std::chrono::milliseconds integrationTime) const
{
    QVariantHash result = common();
    result.insert(QStringLiteral("integrationTime"), QVariant::fromValue(integrationTime));
    return result;
}

} // namespace qel::driver
