#include "resume.h"

#include "tool.h"

#include <qelfrontend/platecsv.h>
#include <qelfrontend/runjson.h>
#include <qelfrontend/wells.h>

#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/settings.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>

#include <algorithm>

namespace qelctl {

using namespace qel;
using namespace qel::frontend;
using namespace qel::devices;

namespace {

// What is known of a file once it has been read to its end, or to what stands in the way.
struct Found
{
    Earlier earlier;
    qint64 length = 0;  // of the runs that are whole
    int problemAt = -1; // where something else than a run begins
    bool isOther = false;
};

Found readDocuments(const QByteArray &data, const DeviceInfo &device, Device::DeviceFeature feature)
{
    Found found;
    for (int start = 0, end = 0; (end = data.indexOf('\n', start)) >= 0; start = end + 1) {
        QString problem;
        const auto run = readRunDocument(data.mid(start, end - start), &problem);
        if (!run || run->record.feature != feature) {
            found.problemAt = start;
            return found;
        }
        const DeviceInfo &from = run->record.device;
        found.isOther |= from.serial() != device.serial() || from.driver() != device.driver();
        ++found.earlier.runs;
        found.earlier.settings = run->json.value(QStringLiteral("configuration")).toObject();
        found.length = end + 1;
    }
    if (found.length < data.size() && data.at(int(found.length)) != '{')
        found.problemAt = int(found.length);
    return found;
}

// The fields of the line at `position`, which may go over several lines of text, and moves
// `position` behind it. Empty when the line has no end.
QByteArrayList takeLine(const QByteArray &data, char delimiter, int *position)
{
    QByteArrayList fields{QByteArray()};
    bool isQuoted = false;
    for (int i = *position; i < data.size(); ++i) {
        const char character = data.at(i);
        if (character == '"') {
            // A doubled one stands for itself.
            if (!isQuoted && i > *position && data.at(i - 1) == '"')
                fields.last() += '"';
            isQuoted = !isQuoted;
        } else if (isQuoted || (character != delimiter && character != '\n')) {
            fields.last() += character;
        } else if (character == delimiter) {
            fields += QByteArray();
        } else {
            *position = i + 1;
            if (fields.last().endsWith('\r'))
                fields.last().chop(1);
            return fields;
        }
    }
    return {};
}

// What the lines of a plate tell of the settings.
class SettingsOfPlate
{
public:
    explicit SettingsOfPlate(const QByteArrayList &names)
        : m_names(names)
    { }

    void add(const QByteArrayList &fields)
    {
        const auto field = [&](const char *name) { return fields.at(m_names.indexOf(name)); };
        if (field("read").toInt() > m_reads) {
            m_reads = field("read").toInt();
            m_wavelengths.append(field("wavelength_nm").toInt());
        }
        m_integrationTime = field("integration_time_ms");
        m_columns = std::max(m_columns, field("column").toInt());
        if (m_reads == 1)
            m_wells.append(field("flag") != "not measured");
    }

    QJsonObject settings(Device::DeviceFeature feature) const
    {
        if (feature == Device::DF_AbsorbanceMeasurement)
            return {{QLatin1String(AbsorbanceMeasurement_config::WAVELENGTHS), m_wavelengths}};
        return {
            {QLatin1String(LuminescenceMeasurement_config::INTEGRATION_TIME),
             m_integrationTime.toInt()},
            {QLatin1String(LuminescenceMeasurement_config::SELECTED_WELLS),
             writeWells(m_wells, m_columns)},
        };
    }

private:
    QByteArrayList m_names;
    int m_reads = 0;
    int m_columns = 0;
    QJsonArray m_wavelengths;
    QByteArray m_integrationTime;
    QVector<bool> m_wells;
};

// A run ends with the same well or key as the first one. That one was put in its place whole.
Found readTable(const QByteArray &data, char delimiter, const DeviceInfo &device,
                Device::DeviceFeature feature)
{
    CsvOptions options;
    options.delimiter = delimiter;
    const bool isPlate = values::isMeasurement(feature);
    const QByteArray header = isPlate ? tidyCsvHeader(options) : valueCsvHeader(options);
    Found found;
    if (!data.startsWith(header)) {
        found.problemAt = 0;
        return found;
    }
    int position = 0;
    const QByteArrayList names = takeLine(header, delimiter, &position);
    const auto isOfFeature = [&](const QByteArrayList &fields) {
        return isPlate
            ? fields.at(names.indexOf("wavelength_nm")).isEmpty()
                == (feature == Device::DF_LuminescenceMeasurement)
            : fields.at(names.indexOf("feature")) == values::featureArgument(feature).toUtf8();
    };
    const QByteArray serial = device.serial().toUtf8();
    const int runColumn = names.indexOf("run");
    const int lastColumn = names.indexOf(isPlate ? "well" : "key");

    SettingsOfPlate settings(names);
    QByteArray lastOfFirst;
    QByteArray last;
    int linesOfFirst = 0;
    int lines = 0;
    int number = 1;
    qint64 startOfRun = position;
    while (true) {
        const int start = position;
        const QByteArrayList fields = takeLine(data, delimiter, &position);
        if (fields.isEmpty())
            break;
        const int run = fields.value(runColumn).toInt();
        if (fields.size() != names.size() || !isOfFeature(fields)
            || (run != number && run != number + 1)) {
            found.problemAt = start;
            return found;
        }
        const QByteArray from = fields.at(names.indexOf("serial"));
        found.isOther |= from != serial && from != '\'' + serial;
        if (run > number) {
            number = run;
            lines = 0;
            startOfRun = start;
        }
        ++lines;
        last = fields.at(lastColumn);
        if (number == 1) {
            lastOfFirst = last;
            linesOfFirst = lines;
            if (isPlate)
                settings.add(fields);
        }
    }
    const bool isWhole =
        lines > 0 && last == lastOfFirst && (position == data.size() || lines >= linesOfFirst);
    found.earlier.runs = isWhole ? number : number - 1;
    if (isPlate)
        found.earlier.settings = settings.settings(feature);
    found.length = isWhole ? position : startOfRun;
    return found;
}

} // namespace

std::optional<Earlier> finishedRuns(const QString &path, Format format, char delimiter,
                                    const DeviceInfo &device, Device::DeviceFeature feature,
                                    QString *problem)
{
    if (format != Format::Json && format != Format::Csv) {
        *problem = text("qelctl-run-resume-format");
        return std::nullopt;
    }
    QFile file(path);
    if (!file.exists())
        return Earlier();
    if (!file.open(QIODevice::ReadWrite)) {
        *problem = text("qelctl-cannot-read", path, file.errorString());
        return std::nullopt;
    }
    const QByteArray data = file.readAll();
    const Found found = format == Format::Json ? readDocuments(data, device, feature)
                                               : readTable(data, delimiter, device, feature);
    if (found.isOther) {
        *problem = text("qelctl-run-resume-other", path);
        return std::nullopt;
    }
    if (found.problemAt > 0) {
        const auto line = 1 + std::count(data.begin(), data.begin() + found.problemAt, '\n');
        *problem = text("qelctl-run-resume-line", path, QString::number(line));
        return std::nullopt;
    }
    if (found.problemAt == 0 || (found.earlier.runs == 0 && !data.isEmpty())) {
        *problem = text("qelctl-run-resume-none", path);
        return std::nullopt;
    }
    if (found.length < data.size() && !file.resize(found.length)) {
        *problem = text("qelctl-cannot-write", path, file.errorString());
        return std::nullopt;
    }
    return found.earlier;
}

QString differingSetting(const Earlier &earlier, const QJsonObject &configuration,
                         const QVariant &descriptor)
{
    for (auto i = earlier.settings.begin(); i != earlier.settings.end(); ++i) {
        const QJsonValue value = configuration.value(i.key());
        if (value.isUndefined() || value == i.value())
            continue;
        // An empty list means all there are.
        const auto setting = values::findSetting(i.key(), descriptor);
        const QVariantList all = setting ? setting->choices : QVariantList();
        if (value != QJsonArray() || i.value() != QJsonArray::fromVariantList(all))
            return i.key();
    }
    return {};
}

} // namespace qelctl
