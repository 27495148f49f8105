#include "instrument.h"

#include "home.h"
#include "variant.h"

#include <qelfrontend/closing.h>
#include <qelfrontend/configuration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/provenance.h>
#include <qelfrontend/selection.h>
#include <qelvalues/names.h>

namespace py = pybind11;

namespace qelpython {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

Instrument::Instrument(std::unique_ptr<Device> device)
    : m_device(std::move(device))
{
    Home::enter(this);
}

Instrument::~Instrument()
{
    Home::leave(this);
    for (const auto &ticket : m_tickets)
        ticket->mailbox->close();
}

Device *Instrument::device() const
{
    return m_device.get();
}

void Instrument::run(const std::shared_ptr<RunTicket> &ticket)
{
    m_tickets.push_back(ticket);
    if (m_tickets.size() == 1)
        startNext();
}

void Instrument::cancel(const std::shared_ptr<RunTicket> &ticket)
{
    ticket->isCancelled = true;
    if (ticket->run)
        ticket->run->cancel();
}

void Instrument::startNext()
{
    if (!m_tickets.empty())
        begin(m_tickets.front());
    else if (m_isEnding)
        closeDevice();
}

void Instrument::begin(const std::shared_ptr<RunTicket> &ticket)
{
    RunRequest request;
    request.feature = ticket->feature;
    request.deadline = ticket->deadline;
    request.configure = [ticket](const QVariant &descriptor, QString *) {
        return readConfiguration(ticket->configuration, descriptor, &ticket->configurationProblems);
    };
    auto *run = new Run(m_device.get(), request, this);
    ticket->run = run;
    const auto mailbox = ticket->mailbox;
    connect(run, &Run::progressChanged, run, [mailbox](double progress) {
        mailbox->put([progress] { return py::make_tuple("progress", progress); });
    });
    connect(run, &Run::transientValue, run,
            [mailbox](Device::DeviceFeature feature, const QVariant &value) {
                mailbox->put([feature, value] {
                    return py::make_tuple("value", toPython(featureName(feature)), toPython(value));
                });
            });
    connect(run, &Run::actionRequired, run, [mailbox](int id, const QString &text) {
        mailbox->put([id, text] { return py::make_tuple("action", id, toPython(text)); });
    });
    connect(run, &Run::finished, this, [this, run, ticket](const Outcome &outcome) {
        deliver(ticket, outcome);
        run->deleteLater();
        m_tickets.pop_front();
        startNext();
    });
    if (ticket->isCancelled || m_isEnding)
        run->cancel();
    else
        run->start();
}

void Instrument::deliver(const std::shared_ptr<RunTicket> &ticket, const Outcome &outcome)
{
    const auto feature = ticket->feature.value_or(Device::DF_None);
    const auto ending = std::make_shared<Ending>(Ending{
        {m_device->deviceInfo(), pluginOfDevice(*m_device), feature, m_device->descriptor(feature),
         m_device->configuration(feature), outcome},
        outcome.kind == Outcome::Refused && ticket->feature && !m_device->hasFeature(feature),
        ticket->configurationProblems,
        std::nullopt});
    ticket->mailbox->put([ending] { return py::make_tuple("ended", ending); });
    ticket->mailbox->close();
}

void Instrument::observe(QObject *listener, const std::shared_ptr<Mailbox> &mailbox)
{
    listener->setParent(this);
    Device *device = m_device.get();
    connect(device, &Device::openChanged, listener, [mailbox](bool open) {
        mailbox->put([open] { return py::make_tuple("open", open); });
    });
    connect(device, &Device::busyChanged, listener, [mailbox](bool busy) {
        mailbox->put([busy] { return py::make_tuple("busy", busy); });
    });
    connect(device, &Device::featuresChanged, listener,
            [mailbox] { mailbox->put([] { return py::make_tuple("features"); }); });
    connect(device, &Device::transientValue, listener,
            [mailbox](Device::DeviceFeature feature, const QVariant &value) {
                mailbox->put([feature, value] {
                    return py::make_tuple("value", toPython(featureName(feature)), toPython(value));
                });
            });
    connect(device, &Device::executed, listener,
            [mailbox](Device::DeviceFeature feature, bool ok, const QVariant &value) {
                mailbox->put([feature, ok, value] {
                    return py::make_tuple("ended", toPython(featureName(feature)), ok,
                                          toPython(value));
                });
            });
    connect(device, &Device::actionRequired, listener, [mailbox](int, const QString &id) {
        mailbox->put([text = translated(id)] { return py::make_tuple("action", toPython(text)); });
    });
    connect(device, &Device::errorChanged, listener, [mailbox, device] {
        const int code = device->errorCode();
        const QString sentence = code == 0 ? QString() : translated(device->errorTrId());
        mailbox->put(
            [code, sentence] { return py::make_tuple("error", code, toPython(sentence)); });
    });
}

void Instrument::end(const std::function<void()> &done)
{
    m_atEnd.push_back(done);
    if (m_isEnding)
        return;
    m_isEnding = true;
    const auto tickets = m_tickets;
    for (const auto &ticket : tickets)
        cancel(ticket);
    if (tickets.empty())
        closeDevice();
}

void Instrument::closeDevice()
{
    qel::frontend::closeDevice(m_device.get(), std::chrono::seconds(2), this, [this](bool) {
        QMetaObject::invokeMethod(this, &Instrument::finish, Qt::QueuedConnection);
    });
}

void Instrument::finish()
{
    const auto atEnd = std::exchange(m_atEnd, {});
    delete this;
    for (const auto &done : atEnd)
        done();
}

} // namespace qelpython
