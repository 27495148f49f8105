#include "results.h"

#include "features.h"

#include <QtCore/QDateTime>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

namespace qel::values {

using devices::Device;

namespace {

using Problems = QVector<Problem>;

QString typeName(const QVariant &value)
{
    return QString::fromLatin1(value.typeName());
}

bool holds(const QVariant &value, const char *type)
{
    return value.isValid() && qstrcmp(value.typeName(), type) == 0;
}

QString text(int number)
{
    return QString::number(number);
}

void checkType(const QString &path, const char *type, const QVariant &value, Problems *problems)
{
    if (!value.isValid())
        problems->append({Problem::Missing, path, {QString::fromLatin1(type)}});
    else if (!holds(value, type))
        problems->append({Problem::WrongType, path, {typeName(value), QString::fromLatin1(type)}});
}

void checkTime(const QString &path, const QDateTime &time, Problems *problems)
{
    if (!time.isValid() || time.timeSpec() != Qt::UTC)
        problems->append({Problem::NotUtc, path, {}});
}

void checkKey(const QString &path, const Key &key, const QVariant &value, Problems *problems)
{
    const int before = problems->size();
    checkType(path, key.type, value, problems);
    if (problems->size() > before)
        return;
    if (value.userType() == QMetaType::QDateTime)
        checkTime(path, value.toDateTime(), problems);
    if (qstrcmp(key.name, "unit") == 0 && *key.unit
        && value.toString() != QString::fromUtf8(key.unit))
        problems->append(
            {Problem::WrongContent, path, {value.toString(), QString::fromUtf8(key.unit)}});
}

Problems checkShape(const QString &path, const Shape &shape, const QVariant &value)
{
    Problems problems;
    if (!shape.type) {
        if (value.isValid())
            problems.append({Problem::Unexpected, path, {typeName(value)}});
        return problems;
    }
    checkType(path, shape.type, value, &problems);
    if (!problems.isEmpty())
        return problems;
    const QVariantHash hash = value.toHash();
    for (const Key &key : shape.keys) {
        const auto name = QLatin1String(key.name);
        checkKey(path + u'.' + name, key, hash.value(name), &problems);
    }
    return problems;
}

// What a run was to do: the configuration's word, or the descriptor's where it has none. Only what
// has the right type counts, as a device refuses everything else.
template<typename T>
std::optional<T> ordered(const char *name, const QVariantHash &descriptor,
                         const QVariantHash &configuration)
{
    const auto key = QLatin1String(name);
    const QVariantHash setting =
        descriptor.value(QStringLiteral("settings")).toHash().value(key).toHash();
    const QVariant value = configuration.value(key, setting.value(QStringLiteral("default")));
    if (value.userType() != qMetaTypeId<T>())
        return {};
    return value.value<T>();
}

// Judges a plate whose keys all have the right types.
class PlateCheck
{
public:
    PlateCheck(const QVariant &descriptor, const QVariant &configuration, const QVariant &result,
               Problems *problems)
        : m_descriptor(descriptor.toHash())
        , m_configuration(configuration.toHash())
        , m_result(result.toHash())
        , m_problems(problems)
    { }

    void run(Device::DeviceFeature feature)
    {
        m_rows = m_result.value(QStringLiteral("rows")).toInt();
        m_columns = m_result.value(QStringLiteral("columns")).toInt();
        if (m_rows < 1 || m_columns < 1 || m_rows > maximumWellCount / m_columns) {
            complain(Problem::PlateSize, {}, {text(m_rows), text(m_columns)});
            return;
        }
        compareSize(QStringLiteral("rows"), m_rows);
        compareSize(QStringLiteral("columns"), m_columns);
        if (feature == Device::DF_AbsorbanceMeasurement) {
            checkReads(std::max(1, compareWavelengths()));
        } else {
            compareIntegrationTime();
            checkReads(1);
            checkSelection();
        }
    }

private:
    void complain(Problem::Code code, const QString &key, const QStringList &details)
    {
        const QString path = QStringLiteral("result");
        m_problems->append({code, key.isEmpty() ? path : path + u'.' + key, details});
    }

    void compareSize(const QString &key, int size)
    {
        const QVariant described = m_descriptor.value(key);
        if (described.userType() == QMetaType::Int && described.toInt() != size)
            complain(Problem::NotAsDescribed, key, {text(size), text(described.toInt())});
    }

    static QString joined(const QList<int> &numbers)
    {
        QStringList texts;
        for (const int number : numbers)
            texts += text(number);
        return texts.join(QStringLiteral(", "));
    }

    // The number of reads that there must be.
    int compareWavelengths()
    {
        const QString key = QStringLiteral("wavelengths");
        const auto measured = m_result.value(key).value<QList<int>>();
        auto expected = ordered<QList<int>>("wavelengths", m_descriptor, m_configuration);
        if (expected && expected->isEmpty()) {
            // None named is all that are offered.
            const auto choices = m_descriptor.value(QStringLiteral("settings"))
                                     .toHash()
                                     .value(key)
                                     .toHash()
                                     .value(QStringLiteral("choices"))
                                     .toList();
            for (const QVariant &choice : choices)
                expected->append(choice.toInt());
        }
        if (expected && !expected->isEmpty() && measured != *expected)
            complain(Problem::NotAsConfigured, key, {joined(measured), joined(*expected)});
        return measured.size();
    }

    void compareIntegrationTime()
    {
        using std::chrono::milliseconds;
        const QString key = QStringLiteral("integrationTime");
        const auto measured = m_result.value(key).value<milliseconds>();
        const auto expected =
            ordered<milliseconds>("integrationTime", m_descriptor, m_configuration);
        if (expected && measured != *expected)
            complain(Problem::NotAsConfigured, key,
                     {QStringLiteral("%1 ms").arg(measured.count()),
                      QStringLiteral("%1 ms").arg(expected->count())});
    }

    void checkReads(int expected)
    {
        const auto reads = m_result.value(QStringLiteral("values")).toList();
        if (reads.size() != expected || reads.isEmpty())
            complain(Problem::ReadCount, QStringLiteral("values"),
                     {text(reads.size()), text(expected)});
        for (int i = 0; i < reads.size(); ++i) {
            const QString key = QStringLiteral("values[%1]").arg(i);
            const auto values = reads[i].value<QVector<double>>();
            if (!holds(reads[i], "QVector<double>"))
                checkType(QStringLiteral("result.") + key, "QVector<double>", reads[i], m_problems);
            else if (values.size() != m_rows * m_columns)
                complain(Problem::WellCount, key,
                         {text(values.size()), text(m_rows), text(m_columns)});
        }
    }

    void checkSelection()
    {
        const auto selected = ordered<QVector<bool>>("selectedWells", m_descriptor, m_configuration)
                                  .value_or(QVector<bool>());
        const auto reads = m_result.value(QStringLiteral("values")).toList();
        const auto values = reads.value(0).value<QVector<double>>();
        if (values.size() != selected.size())
            return;
        for (int i = 0; i < values.size(); ++i) {
            if (selected[i] || std::isnan(values[i]))
                continue;
            complain(Problem::NotSelected, QStringLiteral("values[0][%1]").arg(i), {});
            return;
        }
    }

    const QVariantHash m_descriptor;
    const QVariantHash m_configuration;
    const QVariantHash m_result;
    Problems *m_problems;
    int m_rows = 0;
    int m_columns = 0;
};

} // namespace

Problems checkResult(Device::DeviceFeature feature, const QVariant &descriptor,
                     const QVariant &configuration, const QVariant &result)
{
    const Feature *entry = findFeature(feature);
    if (!entry)
        return {};
    Problems problems = checkShape(QStringLiteral("result"), entry->result, result);
    if (problems.isEmpty() && entry->isMeasurement)
        PlateCheck(descriptor, configuration, result, &problems).run(feature);
    return problems;
}

Problems checkTransient(Device::DeviceFeature feature, const QVariant &value)
{
    const Feature *entry = findFeature(feature);
    if (!entry || !entry->transient.type)
        return {};
    const QString path = QStringLiteral("transient");
    Problems problems = checkShape(path, entry->transient, value);
    if (!problems.isEmpty() || !entry->transient.find(QStringLiteral("progress")))
        return problems;
    const double progress = value.toHash().value(QStringLiteral("progress")).toDouble();
    if (!(progress >= 0 && progress <= 1))
        problems.append(
            {Problem::OutOfRange, path + QStringLiteral(".progress"), {QString::number(progress)}});
    return problems;
}

Problems checkDescriptor(Device::DeviceFeature feature, const QVariant &descriptor)
{
    const Feature *entry = findFeature(feature);
    const QString path = QStringLiteral("descriptor");
    Problems problems;
    if (!entry || !entry->descriptor.type) {
        // A driver may say more than is asked for, but in a hash.
        if (descriptor.isValid())
            checkType(path, "QVariantHash", descriptor, &problems);
        return problems;
    }
    problems = checkShape(path, entry->descriptor, descriptor);
    if (!problems.isEmpty())
        return problems;
    const QVariantHash hash = descriptor.toHash();
    const auto range = detectorRange(descriptor);
    if (!(range.minimum <= range.maximum))
        problems.append({Problem::OutOfRange,
                         path + QStringLiteral(".minimum"),
                         {QString::number(range.minimum)}});
    const int rows = hash.value(QStringLiteral("rows")).toInt();
    const int columns = hash.value(QStringLiteral("columns")).toInt();
    if (entry->isMeasurement && (rows < 1 || columns < 1 || rows > maximumWellCount / columns))
        problems.append({Problem::PlateSize, path, {text(rows), text(columns)}});
    return problems;
}

DetectorRange detectorRange(const QVariant &descriptor)
{
    const QVariantHash hash = descriptor.toHash();
    DetectorRange range;
    const QVariant minimum = hash.value(QStringLiteral("minimum"));
    const QVariant maximum = hash.value(QStringLiteral("maximum"));
    if (minimum.userType() == QMetaType::Double)
        range.minimum = minimum.toDouble();
    if (maximum.userType() == QMetaType::Double)
        range.maximum = maximum.toDouble();
    return range;
}

WellState wellState(double value, const DetectorRange &range)
{
    if (std::isnan(value))
        return WellState::NotMeasured;
    return value >= range.maximum ? WellState::Saturated : WellState::Measured;
}

} // namespace qel::values
