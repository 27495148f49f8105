#include "plate.h"

#include "messages_p.h"

#include <cmath>

namespace qel::frontend {

using namespace qel::devices;

namespace {

// Wells enough for every plate there is, and few enough for memory.
constexpr int mostWells = 100000;

// Reads the entries of a result, and remembers the first that is not as it should be.
class ResultReader
{
public:
    explicit ResultReader(const QVariant &result)
        : m_entries(result.toHash())
    { }

    template<typename T>
    T take(const char *key)
    {
        const QVariant entry = m_entries.value(QString::fromLatin1(key));
        if (entry.userType() != qMetaTypeId<T>()) {
            complain(message("qelfrontend-plate-type", QString::fromLatin1(key),
                             QString::fromLatin1(QMetaType::typeName(qMetaTypeId<T>())),
                             QString::fromLatin1(entry.typeName())));
            return T();
        }
        return entry.value<T>();
    }

    template<typename T>
    std::optional<T> takeIfThere(const char *key)
    {
        if (!m_entries.contains(QString::fromLatin1(key)))
            return {};
        return take<T>(key);
    }

    void complain(const QString &problem)
    {
        if (m_problem.isEmpty())
            m_problem = problem;
    }

    QString problem() const
    {
        return m_problem;
    }

private:
    QVariantHash m_entries;
    QString m_problem;
};

void takeSize(ResultReader &result, Plate *plate)
{
    plate->rows = result.take<int>("rows");
    plate->columns = result.take<int>("columns");
    if (plate->rows < 1 || plate->columns < 1 || plate->rows > mostWells / plate->columns)
        result.complain(message("qelfrontend-plate-size", QString::number(plate->rows),
                                QString::number(plate->columns)));
}

void takeReads(ResultReader &result, Plate *plate)
{
    const auto reads = result.take<QVariantList>("values");
    if (reads.isEmpty())
        result.complain(message("qelfrontend-plate-empty"));
    for (const QVariant &read : reads) {
        const auto values = read.value<QVector<double>>();
        if (values.size() != plate->rows * plate->columns)
            result.complain(message("qelfrontend-plate-values",
                                    QString::number(plate->reads.size() + 1),
                                    QString::number(values.size()), QString::number(plate->rows),
                                    QString::number(plate->columns)));
        plate->reads.append({plate->unit, {}, values});
    }
}

void takeWavelengths(ResultReader &result, Plate *plate)
{
    const auto wavelengths = result.take<QList<int>>("wavelengths");
    if (wavelengths.size() != plate->reads.size()) {
        result.complain(message("qelfrontend-plate-wavelengths",
                                QString::number(wavelengths.size()),
                                QString::number(plate->reads.size())));
        return;
    }
    for (int i = 0; i < wavelengths.size(); ++i) {
        plate->reads[i].wavelength = wavelengths[i];
        plate->reads[i].label = QStringLiteral("%1 nm").arg(wavelengths[i]);
    }
}

// A wavelength may be measured twice, but its values must not end up under one name.
void tellApart(QVector<PlateRead> *reads)
{
    for (int i = 0; i < reads->size(); ++i) {
        int same = 1;
        for (int k = 0; k < i; ++k)
            same += (*reads)[k].wavelength == (*reads)[i].wavelength;
        if (same > 1)
            (*reads)[i].label += QStringLiteral(" #%1").arg(same);
    }
}

} // namespace

bool isMeasurement(Device::DeviceFeature feature)
{
    return feature == Device::DF_AbsorbanceMeasurement
        || feature == Device::DF_LuminescenceMeasurement;
}

std::optional<Plate> plateFromResult(Device::DeviceFeature feature, const QVariant &result,
                                     QString *problem)
{
    if (!isMeasurement(feature) || result.userType() != QMetaType::QVariantHash) {
        *problem = message("qelfrontend-plate-none");
        return {};
    }
    Plate plate;
    ResultReader reader(result);
    takeSize(reader, &plate);
    plate.unit = reader.take<QString>("unit");
    plate.startedAt = reader.takeIfThere<QDateTime>("startedAt").value_or(QDateTime());
    plate.temperature = reader.takeIfThere<double>("temperature");
    if (reader.problem().isEmpty())
        takeReads(reader, &plate);
    if (feature == Device::DF_AbsorbanceMeasurement)
        takeWavelengths(reader, &plate);
    else
        plate.integrationTime = reader.takeIfThere<std::chrono::milliseconds>("integrationTime");
    tellApart(&plate.reads);
    if (!reader.problem().isEmpty()) {
        *problem = reader.problem();
        return {};
    }
    return plate;
}

} // namespace qel::frontend
