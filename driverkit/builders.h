/// @file
/// Descriptors, settings and results with the keys and types that applications expect.
#ifndef QELDRIVER_BUILDERS_H
#define QELDRIVER_BUILDERS_H

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <chrono>

namespace qel::driver {

/// Describes one setting of a feature. Each function adds one key and returns the setting, so that
/// calls can be chained: `SettingBuilder::optional(false)`,
/// `SettingBuilder::optional(std::chrono::milliseconds(500)).range(10, 10000)`.
class SettingBuilder
{
public:
    /// A setting of the type of `preset`, which holds where the configuration lacks it.
    template<typename T>
    static SettingBuilder optional(const T &preset)
    {
        return SettingBuilder(QVariant::fromValue(preset), true);
    }
    /// A setting of type `T` that every configuration must have.
    template<typename T>
    static SettingBuilder required()
    {
        return SettingBuilder(QVariant::fromValue(T()), false);
    }

    /// The least and the greatest value allowed, of each element where the value is a list.
    SettingBuilder &range(const QVariant &minimum, const QVariant &maximum);
    /// Only values a whole number of steps above the minimum are allowed.
    SettingBuilder &step(const QVariant &step);
    /// The unit of the number, or of a list's elements.
    SettingBuilder &unit(const QString &unit);
    /// The values allowed, of each element where the value is a list, and what to call them where a
    /// number says little.
    SettingBuilder &choices(const QVariantList &values, const QStringList &names = {});
    /// The number of elements of a list that is not empty.
    SettingBuilder &length(int length);

    /// What goes under the setting's key.
    operator QVariant() const;

private:
    SettingBuilder(const QVariant &preset, bool isOptional);
    QVariantHash m_setting;
};

/// A plate and what the detector can tell of it.
struct Detector
{
    int rows = 8;       ///< of wells
    int columns = 12;   ///< of wells
    double minimum = 0; ///< of a value, in the feature's unit
    double maximum = 0; ///< of a value: one that reads so is saturated
};

/// The descriptor of DF_AmbientTemperature.
/// @param minimum,maximum what the sensor can tell, in °C
QVariantHash temperatureDescriptor(double minimum, double maximum);
/// The descriptor of DF_AbsorbanceMeasurement, in OD.
/// @param wavelengths those that the instrument has, in nm, the ones measured by default; further
/// settings in `settings`
QVariantHash absorbanceDescriptor(const Detector &detector, const QList<int> &wavelengths,
                                  const QVariantHash &settings = {});
/// The descriptor of DF_LuminescenceMeasurement, in RLU/s, with a selection of wells.
/// @param integrationTime as SettingBuilder makes it of a `std::chrono::milliseconds`
QVariantHash luminescenceDescriptor(const Detector &detector, const QVariant &integrationTime);

/// Gathers the values of a measurement, well by well, into the result of the run.
class PlateResult
{
public:
    /// An empty plate, with all wells not measured (NaN) in each of `reads` reads of the plate. The
    /// measurement starts now.
    /// @param descriptor of the feature that runs
    PlateResult(const QVariantHash &descriptor, int reads, double temperature);

    int rows() const;    ///< of wells
    int columns() const; ///< of wells
    /// Keeps `value` of a well, counted from 0 row by row from A1. False where there is no such
    /// read or well; the value is not kept then.
    bool setValue(int read, int well, double value);
    /// How many values have been kept, each well once.
    int count() const;

    /// The result of DF_AbsorbanceMeasurement.
    QVariant absorbance(const QList<int> &wavelengths) const;
    /// The result of DF_LuminescenceMeasurement.
    QVariant luminescence(std::chrono::milliseconds integrationTime) const;

private:
    QVariantHash common() const;

    QVariantHash m_descriptor;
    QVector<QVector<double>> m_reads;
    QDateTime m_startedAt = QDateTime::currentDateTimeUtc();
    double m_temperature;
};

} // namespace qel::driver

#endif
