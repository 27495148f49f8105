#include "probeddevice.h"

#include <algorithm>

namespace qel::conformance {

using devices::DeviceInfo;

static const char group[] = "Driver and enumeration";

static QString describe(const DeviceInfo &info)
{
    return QStringLiteral("(%1, '%2', '%3', '%4', '%5')")
        .arg(info.interface())
        .arg(info.driver(), info.location(), info.name(), info.serial());
}

static void checkName(Subject &subject)
{
    const QString name = subject.driver()->name();
    if (name.isEmpty())
        throw Broken{QStringLiteral("name() is empty")};
    const QString again = subject.driver()->name();
    if (again != name || !subject.driverNames().contains(name))
        throw Broken{QStringLiteral("name() was '%1', then '%2'").arg(name, again)};
}

static void checkDriverField(Subject &subject)
{
    const QString name = subject.driver()->name();
    const QList<DeviceInfo> records = subject.records();
    if (records.isEmpty())
        throw NotApplicable{QStringLiteral("the driver lists no instrument")};
    for (const DeviceInfo &info : records) {
        if (info.driver() != name) {
            throw Broken{
                QStringLiteral("name() is '%1', but a record is %2").arg(name, describe(info))};
        }
    }
}

static void checkDistinct(Subject &subject)
{
    const QList<DeviceInfo> records = subject.records();
    if (records.isEmpty())
        throw NotApplicable{QStringLiteral("the driver lists no instrument")};
    for (int i = 1; i < records.size(); ++i) {
        if (records.at(i) == records.at(i - 1))
            throw Broken{QStringLiteral("listed twice: %1").arg(describe(records.at(i)))};
    }
}

static void checkStable(Subject &subject)
{
    const QList<DeviceInfo> first = subject.records();
    subject.settle();
    const QList<DeviceInfo> second = subject.records();
    if (first == second)
        return;
    QString seen = QStringLiteral("%1 records, then %2").arg(first.size()).arg(second.size());
    for (int i = 0; i < first.size() && i < second.size(); ++i) {
        if (!(first.at(i) == second.at(i))) {
            seen +=
                QStringLiteral("; %1 became %2").arg(describe(first.at(i)), describe(second.at(i)));
            break;
        }
    }
    throw Broken{seen};
}

static void checkUndisturbed(Subject &subject)
{
    const ProbedDevice &instrument = subject.opened();
    const int start = instrument.seen().count();
    subject.records();
    subject.settle();
    if (!instrument->isOpen())
        throw Broken{QStringLiteral("availableDevices() closed an open device")};
    const auto events = instrument.seen().events(start);
    for (const Event &event : events) {
        // A plate may come at any time.
        if (event.kind != Event::TransientValue)
            throw Broken{QStringLiteral("availableDevices() made an open device emit a signal")};
    }
}

static void checkRunUndisturbed(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    const auto feature = instrument.startLongRun();
    const int start = instrument.runStart();
    if (instrument.seen().count(Event::Executed, start) > 0)
        throw NotApplicable{QStringLiteral("no run lasts long enough")};
    const int before = instrument.seen().count();
    subject.records();
    // What enumeration does shows at once; what the run itself does is other rules' matter.
    const auto events = instrument.seen().events(before);
    for (const Event &event : events) {
        if (event.kind == Event::Executed || event.kind == Event::OpenChanged)
            throw Broken{
                QStringLiteral("availableDevices() ended a run of %1").arg(featureName(feature))};
    }
    instrument.awaitRun(feature, start, true);
}

static void checkListedWhileOpen(Subject &subject)
{
    const DeviceInfo record = subject.opened()->deviceInfo();
    const auto records = subject.records();
    const bool isListed =
        std::any_of(records.cbegin(), records.cend(),
                    [&](const DeviceInfo &info) { return info.location() == record.location(); });
    if (!isListed)
        throw Broken{QStringLiteral("while it is open, the list lacks %1").arg(describe(record))};
}

QVector<Rule> enumerationRules()
{
    return {
        {201, group, Severity::Failure, false, Needs::Driver,
         "name() is not empty and never changes.",
         "Records name their driver by it, and the broker finds the driver by it.",
         "Return a constant.", checkName},
        {202, group, Severity::Failure, false, Needs::Driver,
         "The driver field of every record equals name().",
         "The broker hands a record to the driver that it names; letter case counts.",
         "Build the records with name() as their driver.", checkDriverField},
        {203, group, Severity::Failure, false, Needs::Driver, "No two records are equal.",
         "Two equal records are one instrument to the user, who sees it twice.",
         "Leave out duplicates, for instance of an instrument that is found on two ways.",
         checkDistinct},
        {204, group, Severity::Failure, false, Needs::Driver,
         "Two enumerations yield the same records when nothing was plugged in or out.",
         "Front ends keep their selection by the record.",
         "Put nothing into a record that changes by itself, and give an instrument the same name "
         "whether or not it is in use.",
         checkStable},
        {205, group, Severity::Failure, false, Needs::Open,
         "Enumeration leaves an open device alone.",
         "Applications enumerate at any time, also while an instrument is at work.",
         "Do not open or probe a connection that one of the driver's devices holds; list it from "
         "memory.",
         checkUndisturbed},
        {206, group, Severity::Failure, false, Needs::Open,
         "An instrument that is open stays in the list.",
         "A front end takes an instrument that is not listed for unplugged, and closes its window.",
         "List the instruments that the driver's own devices hold from memory.",
         checkListedWhileOpen},
        {207, group, Severity::Failure, false, Needs::Open,
         "Enumeration leaves a run in progress alone.",
         "Another part of the application looks for instruments every few seconds.",
         "Do not talk to an instrument that one of the driver's devices holds.",
         checkRunUndisturbed},
    };
}

} // namespace qel::conformance
