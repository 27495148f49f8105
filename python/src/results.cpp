#include "results.h"

#include "instrument.h"
#include "variant.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/problems.h>
#include <qelfrontend/resultfile.h>
#include <qelfrontend/selection.h>
#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <pybind11/stl.h>

#include <QtCore/QJsonDocument>

#include <limits>

namespace py = pybind11;

namespace qelpython {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::DeviceInfo;

namespace {

const char *kindName(Outcome::Kind kind)
{
    switch (kind) {
    case Outcome::Unfinished:
        return "unfinished";
    case Outcome::Result:
        return "result";
    case Outcome::Refused:
        return "refused";
    case Outcome::CannotOpen:
        return "cannot-open";
    case Outcome::Failed:
        return "failed";
    case Outcome::AbortedByUser:
        return "aborted";
    case Outcome::TimedOut:
        return "timed-out";
    case Outcome::DeviceGone:
        return "device-gone";
    }
    return "failed";
}

Plate plateFrom(const Ending &ending)
{
    if (ending.plate)
        return *ending.plate;
    QString problem;
    const auto plate = plateFromResult(ending.record.feature, ending.record.outcome.result,
                                       &problem, ending.record.descriptor);
    if (!plate)
        throw py::value_error(problem.toStdString());
    return *plate;
}

py::object plateOf(const Ending &ending)
{
    using namespace py::literals;
    const Plate plate = plateFrom(ending);
    py::list reads;
    for (const PlateRead &read : plate.reads)
        reads.append(py::make_tuple(toPython(read.label), read.wavelength,
                                    arrayOf(read.values, {plate.rows, plate.columns})));
    py::object integrationTime = py::none();
    if (plate.integrationTime)
        integrationTime = py::int_(qint64(plate.integrationTime->count()));
    return py::dict("rows"_a = plate.rows, "columns"_a = plate.columns,
                    "unit"_a = toPython(plate.unit), "maximum"_a = plate.maximum, "reads"_a = reads,
                    "started_at"_a = toPython(plate.startedAt), "temperature"_a = plate.temperature,
                    "integration_time"_a = integrationTime);
}

py::bytes csvOf(const Ending &ending, bool asGrid)
{
    const Plate plate = plateFrom(ending);
    const QByteArray csv =
        asGrid ? plateCsv(plate) : tidyCsvHeader() + tidyCsv(plate, ending.record.device);
    return py::bytes(csv.constData(), size_t(csv.size()));
}

// What jsonOf() wrote. What the document does not tell, such as the descriptor, is missing.
std::shared_ptr<Ending> readDocument(const std::string &text)
{
    QString problem;
    const auto run = readRunDocument(QByteArray::fromStdString(text), &problem);
    if (!run)
        throw py::value_error(problem.toStdString());
    return std::make_shared<Ending>(Ending{run->record, false, {}, run->json, run->plate});
}

py::object configurationOf(const Ending &ending)
{
    if (ending.document)
        return toPython(ending.document->value(QLatin1String("configuration")));
    return toPython(
        QJsonValue(writeConfiguration(ending.record.configuration, ending.record.descriptor)));
}

py::str jsonOf(const Ending &ending, bool inOneLine)
{
    QString problem;
    const auto document = ending.document ? ending.document : runToJson(ending.record, &problem);
    if (!document)
        throw py::value_error(problem.toStdString());
    return toPython(QString::fromUtf8(QJsonDocument(*document).toJson(
        inOneLine ? QJsonDocument::Compact : QJsonDocument::Indented)));
}

[[noreturn]] void raiseOSError(const QString &problem, const QString &path)
{
    PyErr_SetString(PyExc_OSError, (path + QStringLiteral(": ") + problem).toUtf8().constData());
    throw py::error_already_set();
}

// The file of a series, which is continued where there is one.
class KeptFile
{
public:
    explicit KeptFile(const std::string &path)
        : m_path(QString::fromStdString(path))
    {
        QString problem;
        m_file = ResultFile::open(m_path, ResultFile::Existing::Continue, &problem);
        if (!m_file)
            raiseOSError(problem, m_path);
    }

    void add(const std::string &text)
    {
        QString problem;
        bool isKept = false;
        {
            const py::gil_scoped_release release;
            isKept = m_file->add(QByteArray::fromStdString(text), &problem);
        }
        if (!isKept)
            raiseOSError(problem, m_path);
    }

private:
    const QString m_path;
    std::unique_ptr<ResultFile> m_file;
};

} // namespace

void bindResults(py::module_ &module)
{
    py::class_<KeptFile>(module, "KeptFile")
        .def(py::init<const std::string &>())
        .def("add", &KeptFile::add);
    py::class_<Ending, std::shared_ptr<Ending>>(module, "Ending")
        .def_property_readonly(
            "kind", [](const Ending &ending) { return kindName(ending.record.outcome.kind); })
        .def_readonly("is_not_offered", &Ending::isNotOffered)
        .def_property_readonly(
            "configuration_problems",
            [](const Ending &ending) { return toPython(ending.configurationProblems); })
        .def_property_readonly("code",
                               [](const Ending &ending) { return ending.record.outcome.code; })
        .def_property_readonly(
            "id", [](const Ending &ending) { return toPython(ending.record.outcome.trId); })
        .def_property_readonly(
            "sentence",
            [](const Ending &ending) { return toPython(ending.record.outcome.sentence); })
        .def_property_readonly(
            "details",
            [](const Ending &ending) { return toPython(ending.record.outcome.additionalInfo); })
        .def_property_readonly(
            "started_at",
            [](const Ending &ending) { return toPython(ending.record.outcome.startedAt); })
        .def_property_readonly("elapsed",
                               [](const Ending &ending) {
                                   return double(ending.record.outcome.elapsed.count()) / 1000;
                               })
        .def_property_readonly(
            "feature",
            [](const Ending &ending) { return toPython(featureName(ending.record.feature)); })
        .def_property_readonly(
            "is_measurement",
            [](const Ending &ending) { return isMeasurement(ending.record.feature); })
        .def_property_readonly("device",
                               [](const Ending &ending) { return toPython(ending.record.device); })
        .def_property_readonly(
            "descriptor", [](const Ending &ending) { return toPython(ending.record.descriptor); })
        .def_property_readonly("configuration", &configurationOf)
        .def_property_readonly(
            "value", [](const Ending &ending) { return toPython(ending.record.outcome.result); })
        .def_property_readonly(
            "delivered",
            [](const Ending &ending) { return toPython(ending.record.outcome.delivered); })
        .def("plate", &plateOf)
        .def("csv", &csvOf)
        .def("json", &jsonOf);
    module.def("read_document", &readDocument);
}

} // namespace qelpython
