#include "unplugging.h"

#include <QtCore/QTimer>

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

// Keeps an instrument at work, since nobody knows when the plug is pulled, until a run fails.
class Work
{
public:
    explicit Work(ProbedDevice &instrument)
        : m_instrument(instrument)
    {
        try {
            m_feature = instrument.startLongRun();
        } catch (const NotApplicable &) {
            return; // It is idle, then.
        }
        // Not from within the ending: what chained runs do is another matter.
        instrument.recorder().setReaction([this](const Event &event) {
            if (event.kind == Event::Executed)
                QTimer::singleShot(0, &m_context, [this] { goOn(); });
        });
        goOn();
    }
    ~Work()
    {
        m_instrument.recorder().setReaction({});
    }
    Q_DISABLE_COPY(Work)

    Device::DeviceFeature feature() const
    {
        return m_feature;
    }

private:
    void goOn()
    {
        // Somebody has left it alone for hours.
        const int enough = 1000000;
        const Device *device = m_instrument.device();
        if (device && device->isOpen() && !device->isBusy() && !hasFailed()
            && m_instrument.seen().count() < enough)
            m_instrument.executeAgain(m_feature);
    }
    bool hasFailed() const
    {
        const auto events = m_instrument.seen().events(m_instrument.runStart());
        return std::any_of(events.cbegin(), events.cend(), [](const Event &event) {
            return event.kind == Event::Executed && !event.flag;
        });
    }

    ProbedDevice &m_instrument;
    Device::DeviceFeature m_feature = Device::DF_None;
    QObject m_context;
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
    ProbedDevice fresh(subject, record);
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
    ProbedDevice instrument(subject);
    instrument.open();
    const DeviceInfo record = instrument->deviceInfo();
    seen.interface = record.interface();
    const Work work(instrument);
    seen.feature = work.feature();
    subject.ask("Pull the plug of the instrument while it works.");

    QElapsedTimer clock;
    clock.start();
    while (!seen.isClosed && clock.elapsed() < patience) {
        seen.isClosed = subject.waitFor(std::min(lookEvery, patience), [&] {
            return !instrument->isOpen() && !instrument->isBusy();
        });
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
    // Of most instruments there can be one open device only.
    instrument.close();
    if (again)
        reopen(subject, *again, &seen);
    return seen;
}

} // namespace qel::conformance
