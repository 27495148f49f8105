#include "home.h"
#include "instrument.h"
#include "mailbox.h"
#include "variant.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/instrumentwatch.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platecsv.h>
#include <qelfrontend/problems.h>
#include <qelfrontend/selection.h>
#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/results.h>
#include <qelvalues/valuecodec.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <pybind11/stl.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>

namespace py = pybind11;

namespace qelpython {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

namespace {

// Has the event loop make a letter with `work` and waits for it.
py::object ask(const std::function<Mailbox::Letter()> &work)
{
    if (!Home::isRunning())
        throw std::runtime_error("qeldevices is not running");
    const auto mailbox = std::make_shared<Mailbox>();
    Home::post([mailbox, work] { mailbox->put(work()); });
    return mailbox->take(-1).value();
}

// For drivers that read the environment, which the event loop must not see half written.
void setVariable(const std::string &name, const std::string &value)
{
    ask([name, value]() -> Mailbox::Letter {
        if (value.empty())
            qunsetenv(name.c_str());
        else
            qputenv(name.c_str(), QByteArray::fromStdString(value));
        return [] { return py::none(); };
    });
}

py::object drivers()
{
    return ask([]() -> Mailbox::Letter {
        return [names = DeviceBroker::availableDrivers()] { return toPython(names); };
    });
}

// An instrument as Python holds it. The instrument itself belongs to the event loop.
struct Handle
{
    ~Handle()
    {
        Home::post([instrument = instrument] {
            if (*instrument)
                (*instrument)->end([] {});
        });
    }

    std::shared_ptr<QPointer<Instrument>> instrument = std::make_shared<QPointer<Instrument>>();
};

// The handle and a dict of what it stands for; a sentence when `text` means no instrument.
py::object openHandle(const std::string &text)
{
    const QString wanted = QString::fromStdString(text);
    const auto handle = std::make_shared<Handle>();
    return ask([wanted, handle]() -> Mailbox::Letter {
        QString problem;
        const auto info = selectDevice(wanted, DeviceBroker::availableDevices(), &problem);
        if (!info)
            return [problem] { return toPython(problem); };
        std::unique_ptr<Device> device(DeviceBroker::createDevice(*info));
        if (!device)
            return [] { return py::none(); };
        *handle->instrument = new Instrument(std::move(device));
        return [handle, info = *info] { return py::make_tuple(handle, toPython(info)); };
    });
}

// What `read` says of the device; None when it is gone.
py::object askDevice(const Handle &handle, const std::function<Mailbox::Letter(Device *)> &read)
{
    return ask([instrument = handle.instrument, read]() -> Mailbox::Letter {
        if (!*instrument)
            return [] { return py::none(); };
        return read((*instrument)->device());
    });
}

py::object describeFeature(Device::DeviceFeature feature, const QVariant &descriptor)
{
    using namespace py::literals;
    py::dict sentences;
    const auto settings = descriptor.toHash().value(QStringLiteral("settings")).toHash();
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        sentences[toPython(setting.key())] = toPython(describeSetting(setting.key(), descriptor));
    return py::dict("number"_a = int(feature), "name"_a = toPython(featureName(feature)),
                    "argument"_a = toPython(featureArgument(feature)),
                    "is_measurement"_a = isMeasurement(feature),
                    "descriptor"_a = toPython(descriptor), "sentences"_a = sentences);
}

py::object featuresOf(const Handle &handle)
{
    return askDevice(handle, [](Device *device) -> Mailbox::Letter {
        QList<QPair<Device::DeviceFeature, QVariant>> features;
        const auto offered = offeredFeatures(*device);
        for (const auto feature : offered)
            features.append({feature, device->descriptor(feature)});
        return [features] {
            py::list list;
            for (const auto &[feature, descriptor] : features)
                list.append(describeFeature(feature, descriptor));
            return list;
        };
    });
}

py::object stateOf(const Handle &handle)
{
    return askDevice(handle, [](Device *device) -> Mailbox::Letter {
        return [info = device->deviceInfo(), isOpen = device->isOpen(), isBusy = device->isBusy()] {
            py::dict state = toPython(info);
            state["is_open"] = isOpen;
            state["is_busy"] = isBusy;
            return state;
        };
    });
}

std::shared_ptr<RunTicket> startRun(const Handle &handle, const std::optional<int> &feature,
                                    const std::string &configuration, double timeout)
{
    const auto ticket = std::make_shared<RunTicket>();
    if (feature)
        ticket->feature = Device::DeviceFeature(*feature);
    ticket->configuration =
        QJsonDocument::fromJson(QByteArray::fromStdString(configuration)).object();
    ticket->deadline = std::chrono::milliseconds(qint64(timeout * 1000));
    Home::post([ticket, instrument = handle.instrument] {
        if (*instrument)
            (*instrument)->run(ticket);
        else
            ticket->mailbox->close();
    });
    return ticket;
}

// Has the event loop call `call` with the run of `ticket`, if that is still under way.
template<typename Call>
void postToRun(const std::shared_ptr<RunTicket> &ticket, Call call)
{
    Home::post([ticket, call] {
        if (ticket->run)
            call(ticket->run.data());
    });
}

// What comes until nobody listens any more. The listener belongs to the event loop.
struct Stream
{
    ~Stream()
    {
        Home::post([listener = listener] { delete listener->data(); });
    }

    std::shared_ptr<Mailbox> mailbox = std::make_shared<Mailbox>();
    std::shared_ptr<QPointer<QObject>> listener = std::make_shared<QPointer<QObject>>();
};

// `attach` makes the listener put letters into the mailbox; the stream ends with the listener.
std::shared_ptr<Stream>
stream(const std::function<bool(QObject *, const std::shared_ptr<Mailbox> &)> &attach)
{
    const auto made = std::make_shared<Stream>();
    ask([mailbox = made->mailbox, listener = made->listener, attach]() -> Mailbox::Letter {
        auto *object = new QObject;
        *listener = object;
        QObject::connect(object, &QObject::destroyed, [mailbox] { mailbox->close(); });
        if (!attach(object, mailbox))
            delete object;
        return [] { return py::none(); };
    });
    return made;
}

std::shared_ptr<Stream> observe(const Handle &handle)
{
    return stream([instrument = handle.instrument](QObject *listener, const auto &mailbox) {
        if (*instrument)
            (*instrument)->observe(listener, mailbox);
        return !instrument->isNull();
    });
}

std::shared_ptr<Stream> watch(double pause)
{
    return stream([pause](QObject *listener, const std::shared_ptr<Mailbox> &mailbox) {
        auto *watch = new InstrumentWatch(QStringList(), listener);
        QObject::connect(watch, &InstrumentWatch::arrived, listener, [mailbox](const auto &info) {
            mailbox->put([info] { return py::make_tuple("arrived", toPython(info)); });
        });
        QObject::connect(watch, &InstrumentWatch::left, listener, [mailbox](const auto &info) {
            mailbox->put([info] { return py::make_tuple("left", toPython(info)); });
        });
        QObject::connect(watch, &InstrumentWatch::changed, listener,
                         [mailbox](const auto &before, const auto &now) {
                             mailbox->put([before, now] {
                                 return py::make_tuple("changed", toPython(now), toPython(before));
                             });
                         });
        watch->start(std::chrono::milliseconds(qint64(pause * 1000)));
        return true;
    });
}

void closeHandle(const Handle &handle)
{
    const auto mailbox = std::make_shared<Mailbox>();
    Home::post([mailbox, instrument = handle.instrument] {
        const auto done = [mailbox] { mailbox->put([] { return py::none(); }); };
        if (*instrument)
            (*instrument)->end(done);
        else
            done();
    });
    if (Home::isRunning())
        mailbox->take(-1);
}

const char *kindName(Outcome::Kind kind)
{
    switch (kind) {
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

py::object plateOf(const Ending &ending)
{
    using namespace py::literals;
    QString problem;
    const auto plate =
        plateFromResult(ending.record.feature, ending.record.outcome.result, &problem);
    if (!plate)
        throw py::value_error(problem.toStdString());
    py::list reads;
    for (const PlateRead &read : plate->reads)
        reads.append(py::make_tuple(toPython(read.label), read.wavelength,
                                    arrayOf(read.values, {plate->rows, plate->columns})));
    py::object integrationTime = py::none();
    if (plate->integrationTime)
        integrationTime = py::int_(qint64(plate->integrationTime->count()));
    return py::dict("rows"_a = plate->rows, "columns"_a = plate->columns,
                    "unit"_a = toPython(plate->unit), "reads"_a = reads,
                    "started_at"_a = toPython(plate->startedAt),
                    "temperature"_a = plate->temperature, "integration_time"_a = integrationTime);
}

py::bytes csvOf(const Ending &ending, bool asGrid)
{
    QString problem;
    const auto plate =
        plateFromResult(ending.record.feature, ending.record.outcome.result, &problem);
    if (!plate)
        throw py::value_error(problem.toStdString());
    const QByteArray csv =
        asGrid ? plateCsv(*plate) : tidyCsvHeader() + tidyCsv(*plate, ending.record.device);
    return py::bytes(csv.constData(), size_t(csv.size()));
}

py::list resultProblems(const Ending &ending)
{
    const RunRecord &record = ending.record;
    QStringList sentences;
    const auto problems =
        checkResult(record.feature, record.descriptor, record.configuration, record.outcome.result);
    for (const Problem &problem : problems)
        sentences.append(explain(problem));
    return toPython(sentences);
}

// What jsonOf() wrote. What the document does not tell, such as the descriptor, is missing.
std::shared_ptr<Ending> readDocument(const std::string &text)
{
    const QJsonObject document = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    const auto member = [](const QJsonObject &object, const char *key) {
        return object.value(QLatin1String(key)).toString();
    };
    if (member(document, "format") != QLatin1String("qeldevices-run"))
        throw py::value_error("this is no document of a run");
    if (document.value(QLatin1String("version")).toInt() != runJsonVersion)
        throw py::value_error("the document is of another version than this library reads");
    QString nameProblem;
    const auto feature = selectFeature(member(document, "feature"), &nameProblem);
    if (!feature)
        throw py::value_error(nameProblem.toStdString());
    Problem problem;
    const auto result = fromJson(document.value(QLatin1String("result")), &problem);
    if (!result)
        throw py::value_error(explain(problem).toStdString());
    Outcome outcome;
    outcome.result = *result;
    outcome.startedAt = QDateTime::fromString(member(document, "startedAt"), Qt::ISODateWithMs);
    outcome.elapsed = std::chrono::milliseconds(
        qRound64(document.value(QLatin1String("elapsed")).toDouble() * 1000));
    const QJsonObject device = document.value(QLatin1String("device")).toObject();
    auto interface = DeviceInfo::UnknownInterface;
    for (const auto known :
         {DeviceInfo::Simulator, DeviceInfo::Serial, DeviceInfo::UsbHid, DeviceInfo::Network}) {
        if (interfaceName(known) == member(device, "interface"))
            interface = known;
    }
    const DeviceInfo info(interface, member(device, "driver"), member(device, "location"),
                          member(device, "name"), member(device, "serial"));
    return std::make_shared<Ending>(
        Ending{{info, {}, *feature, {}, {}, outcome}, false, {}, document});
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

py::object instruments()
{
    return ask([]() -> Mailbox::Letter {
        return [devices = DeviceBroker::availableDevices()] {
            py::list list;
            for (const DeviceInfo &info : devices)
                list.append(toPython(info));
            return list;
        };
    });
}

void start(const std::vector<std::string> &pluginFolders, const std::string &language)
{
    Home::Options options;
    for (const std::string &folder : pluginFolders)
        options.pluginFolders.append(QString::fromStdString(folder));
    options.language = QString::fromStdString(language);
    QString problem;
    {
        const py::gil_scoped_release release;
        problem = Home::start(options);
    }
    if (!problem.isEmpty())
        throw std::runtime_error(problem.toStdString());
}

void stop(double patience)
{
    const py::gil_scoped_release release;
    Home::stop(std::chrono::milliseconds(qint64(patience * 1000)));
}

// The number of the feature that `text` means; a sentence when it means none.
py::object findFeature(const std::string &text)
{
    QString problem;
    const auto feature = selectFeature(QString::fromStdString(text), &problem);
    return feature ? py::object(py::int_(int(*feature))) : py::object(toPython(problem));
}

void bindRuns(py::module_ &module)
{
    py::class_<RunTicket, std::shared_ptr<RunTicket>>(module, "Run")
        .def("take",
             [](const RunTicket &run, double seconds) { return run.mailbox->take(seconds); })
        .def("fileno", [](const RunTicket &run) { return run.mailbox->descriptor(); })
        .def("cancel",
             [](const std::shared_ptr<RunTicket> &run) {
                 Home::post([run] { Instrument::cancel(run); });
             })
        .def("confirm",
             [](const std::shared_ptr<RunTicket> &run, int id) {
                 postToRun(run, [id](Run *running) { running->confirmAction(id); });
             })
        .def("decline", [](const std::shared_ptr<RunTicket> &run, int id) {
            postToRun(run, [id](Run *running) { running->abortAction(id); });
        });

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
        .def("result_problems", &resultProblems)
        .def("plate", &plateOf)
        .def("csv", &csvOf)
        .def("json", &jsonOf);
}

} // namespace

PYBIND11_MODULE(_native, module)
{
    module.doc() = "The library, as qeldevices uses it. Not for use by others.";
    module.def("start", &start);
    module.def("stop", &stop);
    module.def("is_running", &Home::isRunning);
    module.def("version", [] { return toPython(qel::devices::version()); });
    module.def("instruments", &instruments);
    module.def("drivers", &drivers);
    module.def("set_variable", &setVariable);
    module.def("find_feature", &findFeature);
    module.def("open", &openHandle);
    module.def("watch", &watch);
    module.def("read_document", &readDocument);

    py::class_<Handle, std::shared_ptr<Handle>>(module, "Handle")
        .def("features", &featuresOf)
        .def("state", &stateOf)
        .def("run", &startRun)
        .def("observe", &observe)
        .def("close", &closeHandle);
    py::class_<Stream, std::shared_ptr<Stream>>(module, "Stream")
        .def("take",
             [](const Stream &stream, double seconds) { return stream.mailbox->take(seconds); })
        .def("fileno", [](const Stream &stream) { return stream.mailbox->descriptor(); })
        .def("close", [](const Stream &stream) {
            Home::post([listener = stream.listener] { delete listener->data(); });
        });
    bindRuns(module);
}

} // namespace qelpython
