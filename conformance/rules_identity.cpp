#include "configurations.h"
#include "probeddevice.h"

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::DeviceInfo;

static const char group[] = "Identity";

static void checkFresh(Subject &subject)
{
    ProbedDevice instrument(subject);
    QStringList seen;
    if (instrument->parent())
        seen += QStringLiteral("it has a parent");
    if (instrument->isOpen())
        seen += QStringLiteral("it is open");
    if (instrument->isBusy())
        seen += QStringLiteral("it is busy");
    if (instrument->errorCode() != 0)
        seen += QStringLiteral("it has error %1").arg(errorName(instrument->errorCode()));
    if (!instrument.offered().isEmpty())
        seen += QStringLiteral("it offers features");
    if (!seen.isEmpty())
        throw Broken{seen.join(QStringLiteral(", "))};
}

static void checkIdentity(Subject &subject)
{
    const auto records = subject.records();
    for (const DeviceInfo &record : records) {
        const std::unique_ptr<Device> device(subject.create(record));
        if (!device)
            throw Broken{QStringLiteral("createDevice() returned null for a listed instrument")};
        if (device->deviceInfo() == record)
            continue;
        const DeviceInfo own = device->deviceInfo();
        throw Broken{
            QStringLiteral("the record is (%1, '%2', '%3', '%4', '%5'), the device's (%6, '%7', "
                           "'%8', '%9', '%10')")
                .arg(record.interface())
                .arg(record.driver(), record.location(), record.name(), record.serial())
                .arg(own.interface())
                .arg(own.driver(), own.location(), own.name(), own.serial())};
    }
}

static void checkDistinct(Subject &subject)
{
    const DeviceInfo record = subject.record();
    std::unique_ptr<Device> first(subject.create(record));
    std::unique_ptr<Device> second(subject.create(record));
    if (first && first == second) {
        // One object only: it must not be deleted twice.
        static_cast<void>(second.release());
        throw Broken{QStringLiteral("two calls returned the same object")};
    }
    if (!first || !second)
        throw Broken{QStringLiteral("createDevice() returned null for a listed instrument")};
}

static void checkUnknown(Subject &subject)
{
    const DeviceInfo known = subject.record();
    const DeviceInfo unknown(known.interface(), known.driver(),
                             QStringLiteral("no such place, says the checker"), known.name(),
                             QStringLiteral("no such serial number"));
    const std::unique_ptr<Device> device(subject.create(unknown));
    if (device)
        throw Broken{QStringLiteral("createDevice() returned a device for location '%1'")
                         .arg(unknown.location())};
}

static void checkSilent(Subject &subject)
{
    ProbedDevice instrument(subject);
    subject.settle();
    if (instrument.seen().count() > 0)
        throw Broken{QStringLiteral("the device emitted before it was used")};
}

static void checkApart(Subject &subject)
{
    const auto records = subject.records();
    const DeviceInfo first = subject.record();
    ProbedDevice one(subject);
    const auto other = std::find_if(records.cbegin(), records.cend(),
                                    [&](const DeviceInfo &info) { return !(info == first); });
    if (other == records.cend())
        throw NotApplicable{QStringLiteral("the driver lists one instrument only")};
    ProbedDevice two(subject, *other);
    one.open();
    two.callOpen();
    subject.waitFor(subject.limits().open, [&] { return two->isOpen() || two->errorCode() != 0; });
    if (!two->isOpen())
        throw NotApplicable{QStringLiteral("a second instrument does not open, error %1")
                                .arg(errorName(two->errorCode()))};
    subject.awaitTable(two.device());
    if (!one->isOpen())
        throw Broken{QStringLiteral("opening one device closed another")};
    const auto features = one.configurable();
    for (const auto feature : features) {
        const QVariant configuration = someConfiguration(feature, one->descriptor(feature));
        one->setConfiguration(feature, configuration);
        if (configuration.isValid() && isSame(two->configuration(feature), configuration))
            throw Broken{QStringLiteral("two devices share the configuration of %1")
                             .arg(featureName(feature))};
    }
    const int start = two.seen().count();
    try {
        const auto feature = one.startLongRun();
        if (two->isBusy())
            throw Broken{
                QStringLiteral("a run of %1 makes another device busy").arg(featureName(feature))};
    } catch (const NotApplicable &) {
        // Then nothing is busy.
    }
    one.close();
    const auto events = two.seen().events(start);
    for (const Event &event : events) {
        // A plate may come at any time.
        if (event.kind != Event::TransientValue)
            throw Broken{QStringLiteral("what one device does makes another emit")};
    }
}

QVector<Rule> identityRules()
{
    return {
        {301, group, Severity::Failure, false, Needs::Instrument,
         "A new device has no parent and is closed, idle, without error and without features.",
         "The caller owns it and connects to its signals; what happened before goes unseen.",
         "Leave the constructor to store things; talk to the instrument from open() on.",
         checkFresh},
        {302, group, Severity::Failure, false, Needs::Instrument,
         "The identity of a new device equals the record it was created for.",
         "A front end finds the device of a record by comparing them.",
         "Pass the record on to the constructor of Device unchanged.", checkIdentity},
        {303, group, Severity::Failure, false, Needs::Instrument,
         "createDevice() returns a new object on every call.",
         "The caller deletes what it was given; a second owner would hold a dangling pointer.",
         "Do not keep devices for later; share the connection behind them instead.", checkDistinct},
        {304, group, Severity::Failure, false, Needs::Instrument,
         "createDevice() returns null for a record at a location that the driver does not know.",
         "An application may hold a record of an instrument that is gone; null is how it learns.",
         "Look the location up among the instruments that the driver lists.", checkUnknown},
        {305, group, Severity::Failure, false, Needs::Instrument,
         "A device emits nothing until it is used.",
         "Signals of an object that nobody has opened are mistaken for the outcome of a call.",
         "Start timers and connections in open().", checkSilent},
        {306, group, Severity::Failure, false, Needs::Open,
         "Devices of different instruments have nothing to do with each other.",
         "Laboratories have several instruments of a kind, and measure with them at the same time.",
         "Keep all state in the device; share what is behind a connection, such as a bus, only.",
         checkApart},
    };
}

} // namespace qel::conformance
