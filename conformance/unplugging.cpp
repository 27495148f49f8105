#include "unplugging.h"

#include <algorithm>
#include <iterator>

namespace qel::conformance {

using devices::Device;
using devices::DeviceInfo;

QVector<Event> Unplugging::endings() const
{
    QVector<Event> some;
    std::copy_if(events.cbegin(), events.cend(), std::back_inserter(some),
                 [](const Event &event) { return event.kind == Event::Executed; });
    return some;
}

namespace {

// Keeps an instrument at work: nobody knows when the plug is pulled.
class Work
{
public:
    explicit Work(Instrument &instrument)
        : m_instrument(instrument)
    {
        try {
            m_feature = instrument.startLongRun();
        } catch (const NotApplicable &) {
            // It is idle, then.
        }
    }

    void goOn()
    {
        Device *device = m_instrument.device();
        if (m_feature == Device::DF_None || !device || !device->isOpen() || device->isBusy())
            return;
        m_instrument.executeAgain(m_feature);
    }
    Device::DeviceFeature feature() const
    {
        return m_feature;
    }

private:
    Instrument &m_instrument;
    Device::DeviceFeature m_feature = Device::DF_None;
};

} // namespace

// Another cable may mean another location, but the serial number is that of the instrument.
static std::optional<DeviceInfo> find(Subject &subject, const DeviceInfo &record)
{
    const auto records = subject.records();
    const auto found = std::find_if(records.cbegin(), records.cend(), [&](const DeviceInfo &info) {
        return record.serial().isEmpty() ? info == record : info.serial() == record.serial();
    });
    return found == records.cend() ? std::nullopt : std::make_optional(*found);
}

static void reopen(Subject &subject, const DeviceInfo &record, Unplugging *seen)
{
    Instrument fresh(subject, record);
    try {
        fresh.open();
        seen->isOpenedAgain = true;
    } catch (const Unmet &unmet) {
        seen->reopening = unmet.why;
    }
}

Unplugging makeUnplugging(Subject &subject)
{
    // An application looks for instruments now and then.
    const int lookEvery = 500;
    const int patience = subject.limits().open;
    Unplugging seen;
    Instrument instrument(subject);
    instrument.open();
    const DeviceInfo record = instrument->deviceInfo();
    Work work(instrument);
    seen.feature = work.feature();
    subject.ask("Pull the plug of the instrument while it works.", [&] { work.goOn(); });

    QElapsedTimer clock;
    clock.start();
    while (!seen.isClosed && clock.elapsed() < patience) {
        QElapsedTimer pause;
        pause.start();
        while (!seen.isClosed && pause.elapsed() < std::min(lookEvery, patience)) {
            work.goOn();
            seen.isClosed =
                subject.waitFor(5, [&] { return !instrument->isOpen() && !instrument->isBusy(); });
        }
        work.goOn();
        seen.isListed = find(subject, record).has_value();
    }
    subject.settle();
    seen.errorCode = instrument->errorCode();
    seen.events = instrument.seen().events(instrument.runStart());

    subject.ask("Put the plug in again, and wait until the instrument is ready.");
    std::optional<DeviceInfo> again;
    clock.restart();
    while (!again && clock.elapsed() < patience) {
        again = find(subject, record);
        if (!again)
            subject.waitFor(std::min(lookEvery, patience), [] { return false; });
    }
    seen.isListedAgain = again.has_value();
    if (again)
        reopen(subject, *again, &seen);
    return seen;
}

} // namespace qel::conformance
