#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"

#include <qelfrontend/enumeration.h>
#include <qelfrontend/runjson.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QTimer>

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

    QList<DeviceInfo> apply(const QList<DeviceInfo> &devices) const
    {
        QList<DeviceInfo> kept;
        for (const DeviceInfo &info : devices) {
            if (!interface || info.interface() == *interface)
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
    return printable(json);
}

// One line for each instrument that has come, gone or changed.
QByteArray asEvents(const EnumerationChange &change, bool json)
{
    QByteArray lines;
    const auto add = [&](const char *event, const char *id, const DeviceInfo &info) {
        if (json) {
            QJsonObject line = deviceToJson(info);
            line.insert(QStringLiteral("event"), QString::fromLatin1(event));
            lines += jsonText(line) + '\n';
        } else {
            lines += text(id, info.name(), info.serial(), devicePath(info)).toUtf8() + '\n';
        }
    };
    for (const DeviceInfo &info : change.left)
        add("left", "qelctl-list-left", info);
    for (const auto &[before, now] : change.changed)
        add("changed", "qelctl-list-changed", now);
    for (const DeviceInfo &info : change.arrived)
        add("arrived", "qelctl-list-arrived", info);
    return lines;
}

int watchInstruments(const Filter &filter, bool json)
{
    Interrupt interrupt;
    ReaderWatch reader;
    QList<DeviceInfo> known;
    const auto look = [&] {
        const auto now = filter.apply(enumerate(filter.drivers).devices());
        const QByteArray lines = asEvents(difference(known, now), json);
        known = now;
        const int printed = lines.isEmpty() ? int(Done) : printData(lines);
        if (printed != Done)
            QCoreApplication::exit(printed);
    };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, look);
    QObject::connect(&interrupt, &Interrupt::requested, &timer,
                     [] { QCoreApplication::exit(Interrupted); });
    QObject::connect(&reader, &ReaderWatch::gone, &timer,
                     [] { QCoreApplication::exit(fail(CannotWrite, text("qelctl-reader-gone"))); });
    QTimer::singleShot(0, &timer, look);
    timer.start(1000);
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
