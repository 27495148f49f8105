#include "resume.h"

#include "tool.h"

#include <qelvalues/valuecodec.h>

#include <QtCore/QFile>
#include <QtCore/QJsonObject>

namespace qelctl {

using qel::devices::DeviceInfo;

namespace {

// What is known of a file after its lines have been read.
struct Found
{
    int runs = 0;
    qint64 length = 0; // of the runs that are whole
    bool isOther = false;
};

Found readDocuments(const QByteArrayList &lines, const DeviceInfo &device)
{
    Found found;
    for (const QByteArray &line : lines) {
        qel::values::Problem problem;
        const auto json = qel::values::parseJson(line, &problem);
        const QJsonObject run = json ? json->toObject() : QJsonObject();
        if (run.value(QStringLiteral("format")) != QLatin1String("qeldevices-run"))
            break;
        const QJsonObject from = run.value(QStringLiteral("device")).toObject();
        if (from.value(QStringLiteral("serial")).toString() != device.serial()
            || from.value(QStringLiteral("driver")).toString() != device.driver()) {
            found.isOther = true;
            return found;
        }
        ++found.runs;
        found.length += line.size();
    }
    return found;
}

// Each run has as many lines as the first.
Found readTable(const QByteArrayList &lines, char delimiter, const DeviceInfo &device)
{
    Found found;
    const QByteArrayList header = lines.value(0).trimmed().split(delimiter);
    const int runColumn = header.size() - header.indexOf("run"); // from behind: texts come first
    if (!header.contains("run"))
        return found;
    qint64 length = lines.value(0).size();
    int inRun = 0;
    int linesOfRun = 0;
    int number = 1;
    for (int i = 1; i < lines.size(); ++i) {
        const QByteArrayList fields = lines.at(i).trimmed().split(delimiter);
        if (!lines.at(i).contains(device.serial().toUtf8())) {
            found.isOther = true;
            return found;
        }
        const int run = fields.value(fields.size() - runColumn).toInt();
        if (run != number) {
            if (run != number + 1)
                break;
            linesOfRun = linesOfRun == 0 ? inRun : linesOfRun;
            found.runs = number;
            found.length = length;
            number = run;
            inRun = 0;
        }
        ++inRun;
        length += lines.at(i).size();
        if (inRun == linesOfRun || (linesOfRun == 0 && i + 1 == lines.size())) {
            found.runs = number;
            found.length = length;
        }
    }
    return found;
}

} // namespace

std::optional<int> finishedRuns(const QString &path, Format format, char delimiter,
                                const DeviceInfo &device, QString *problem)
{
    if (format != Format::Json && format != Format::Csv) {
        *problem = text("qelctl-run-resume-format");
        return std::nullopt;
    }
    QFile file(path);
    if (!file.exists())
        return 0;
    if (!file.open(QIODevice::ReadWrite)) {
        *problem = text("qelctl-cannot-read", path, file.errorString());
        return std::nullopt;
    }
    QByteArrayList lines;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.endsWith('\n'))
            lines += line;
    }
    const Found found =
        format == Format::Json ? readDocuments(lines, device) : readTable(lines, delimiter, device);
    if (found.isOther) {
        *problem = text("qelctl-run-resume-other", path);
        return std::nullopt;
    }
    if (found.runs == 0 && file.size() > 0) {
        *problem = text("qelctl-run-resume-none", path);
        return std::nullopt;
    }
    if (found.length < file.size() && !file.resize(found.length)) {
        *problem = text("qelctl-cannot-write", path, file.errorString());
        return std::nullopt;
    }
    return found.runs;
}

} // namespace qelctl
