#include "home.h"
#include "instrument.h"
#include "mailbox.h"
#include "results.h"
#include "variant.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/instrumentwatch.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/selection.h>
#include <qelvalues/features.h>
#include <qelvalues/names.h>

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
    bindResults(module);
}

} // namespace qelpython
