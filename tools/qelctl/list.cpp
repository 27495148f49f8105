#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"

#include <qelfrontend/enumeration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/instrumentwatch.h>
#include <qelfrontend/runjson.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

namespace {

// Which instruments the user wants to see.
struct Filter
{
    QStringList drivers; // empty: all
    std::optional<DeviceInfo::Interface> interface;

    bool accepts(const DeviceInfo &info) const
    {
        return !interface || info.interface() == *interface;
    }

    bool includesServers() const
    {
        return (drivers.isEmpty() || drivers.contains(QStringLiteral("Network")))
            && interface.value_or(DeviceInfo::Network) == DeviceInfo::Network;
    }

    QList<DeviceInfo> apply(const QList<DeviceInfo> &devices) const
    {
        QList<DeviceInfo> kept;
        for (const DeviceInfo &info : devices) {
            if (accepts(info))
                kept.append(info);
        }
        return kept;
    }
};

QString interfaceArgument(DeviceInfo::Interface interface)
{
    return interfaceName(interface).toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
}

std::optional<DeviceInfo::Interface> readInterface(const QString &argument)
{
    QStringList known;
    for (int i = DeviceInfo::UnknownInterface; i <= DeviceInfo::Network; ++i) {
        const auto interface = DeviceInfo::Interface(i);
        known.append(interfaceArgument(interface));
        if (known.constLast() == argument.toLower())
            return interface;
    }
    complain(text("qelctl-no-such-interface", argument, known.join(QStringLiteral(", "))));
    return std::nullopt;
}

QByteArray asTable(const QList<DeviceInfo> &devices)
{
    QList<QStringList> rows{{text("qelctl-column-name"), text("qelctl-column-serial"),
                             text("qelctl-column-device"), text("qelctl-column-interface")}};
    for (const DeviceInfo &info : devices)
        rows.append(
            {info.name(), info.serial(), devicePath(info), interfaceName(info.interface())});
    return table(rows);
}

QByteArray asJson(const QList<DeviceInfo> &devices, const Enumeration &enumeration)
{
    QJsonArray instruments;
    for (const DeviceInfo &info : devices)
        instruments.append(deviceToJson(info));
    QJsonArray drivers;
    for (const DriverAnswer &answer : enumeration.answers) {
        drivers.append(QJsonObject{
            {QStringLiteral("driver"), answer.driver},
            {QStringLiteral("instruments"), answer.devices.size()},
            {QStringLiteral("milliseconds"), double(answer.elapsed.count()) / 1000},
        });
    }
    QJsonObject json = document(QStringLiteral("qelctl-list"));
    json.insert(QStringLiteral("instruments"), instruments);
    json.insert(QStringLiteral("drivers"), drivers);
    return indented(json);
}

enum class Event { Arrived, Left, Changed };

QByteArray asLine(Event event, const DeviceInfo &info, bool json)
{
    struct Words
    {
        const char *name;
        const char *id;
    };
    const Words words = event == Event::Arrived ? Words{"arrived", "qelctl-list-arrived"}
        : event == Event::Left                  ? Words{"left", "qelctl-list-left"}
                                                : Words{"changed", "qelctl-list-changed"};
    if (!json)
        return printable(text(words.id, info.name(), info.serial(), devicePath(info))).toUtf8()
            + '\n';
    QJsonObject line = deviceToJson(info);
    line.insert(QStringLiteral("event"), QString::fromLatin1(words.name));
    return inOneLine(line);
}

int watchInstruments(const Filter &filter, bool json)
{
    Interrupt interrupt;
    ReaderWatch reader;
    InstrumentWatch watch(filter.drivers);
    const auto print = [&](Event event, const DeviceInfo &info) {
        const int printed = printData(asLine(event, info, json));
        if (printed != Done)
            QCoreApplication::exit(printed);
    };
    QObject::connect(&watch, &InstrumentWatch::arrived, [&](const DeviceInfo &info) {
        if (filter.accepts(info))
            print(Event::Arrived, info);
    });
    QObject::connect(&watch, &InstrumentWatch::left, [&](const DeviceInfo &info) {
        if (filter.accepts(info))
            print(Event::Left, info);
    });
    QObject::connect(&watch, &InstrumentWatch::changed,
                     [&](const DeviceInfo &before, const DeviceInfo &now) {
                         if (filter.accepts(before) && filter.accepts(now))
                             print(Event::Changed, now);
                         else if (filter.accepts(before))
                             print(Event::Left, before);
                         else if (filter.accepts(now))
                             print(Event::Arrived, now);
                     });
    QObject::connect(&interrupt, &Interrupt::requested, &watch,
                     [] { QCoreApplication::exit(Interrupted); });
    QObject::connect(&reader, &ReaderWatch::gone, &watch,
                     [] { QCoreApplication::exit(fail(CannotWrite, text("qelctl-reader-gone"))); });
    watch.start();
    return QCoreApplication::exec();
}

int run(const QStringList &arguments)
{
    CommandLine line(listCommand);
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    line.addOption({QStringLiteral("driver")}, "qelctl-list-option-driver", QStringLiteral("D"));
    line.addOption({QStringLiteral("interface")}, "qelctl-list-option-interface",
                   QStringLiteral("I"));
    line.addOption({QStringLiteral("watch")}, "qelctl-list-option-watch");
    if (const auto ended = line.parse(arguments, 0, 0))
        return *ended;

    Filter filter;
    if (line.has(QStringLiteral("interface"))) {
        filter.interface = readInterface(line.value(QStringLiteral("interface")));
        if (!filter.interface)
            return BadUsage;
    }
    startLibrary();
    filter.drivers = line.values(QStringLiteral("driver"));
    const QStringList drivers = DeviceBroker::availableDrivers();
    for (const QString &driver : qAsConst(filter.drivers)) {
        if (!drivers.contains(driver)) {
            return fail(NoSuchDevice,
                        text("qelctl-no-such-driver", driver, drivers.join(QStringLiteral(", "))));
        }
    }

    const bool json = line.has(QStringLiteral("json"));
    if (line.has(QStringLiteral("watch")))
        return watchInstruments(filter, json);
    const Enumeration enumeration = enumerate(filter.drivers);
    const auto devices = filter.apply(enumeration.devices());
    if (filter.includesServers())
        tellAbsences();
    if (json)
        return printData(asJson(devices, enumeration));
    if (devices.isEmpty()) {
        complain(drivers.isEmpty() ? text("qelctl-list-no-drivers") : text("qelctl-list-empty"));
        return Done;
    }
    return printData(asTable(devices));
}

} // namespace

const Command listCommand{"list", "qelctl-list-summary", "qelctl-list-details", &run};

} // namespace qelctl
