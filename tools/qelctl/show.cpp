#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "target.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/runjson.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>

#include <QtCore/QJsonArray>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

namespace {

QString stateOf(const Device &device)
{
    if (!device.isOpen())
        return text("qelctl-state-closed");
    return device.isBusy() ? text("qelctl-state-busy") : text("qelctl-state-idle");
}

QString errorOf(const Device &device)
{
    const QString details = device.errorAdditionalInfoTrId();
    const QString sentence = translated(device.errorTrId());
    return details.isEmpty() ? sentence : sentence + QLatin1Char(' ') + translated(details);
}

QStringList settingsOf(const QVariant &descriptor)
{
    QStringList keys = descriptor.toHash().value(QStringLiteral("settings")).toHash().keys();
    keys.sort();
    return keys;
}

QByteArray asText(const Device &device)
{
    QString lines = device.name() + QLatin1Char('\n');
    const auto add = [&](int indent, int width, const QString &name, const QString &value) {
        lines += QString(indent, QLatin1Char(' ')) + name.leftJustified(width) + QLatin1Char(' ')
            + value;
        while (lines.endsWith(QLatin1Char(' ')))
            lines.chop(1);
        lines += QLatin1Char('\n');
    };
    add(2, 12, text("qelctl-column-serial"), device.serial());
    add(2, 12, text("qelctl-column-device"), devicePath(device.deviceInfo()));
    add(2, 12, text("qelctl-column-interface"), interfaceName(device.deviceInfo().interface()));
    add(2, 12, text("qelctl-column-state"), stateOf(device));
    add(2, 12, text("qelctl-column-error"), errorOf(device));
    add(2, 0, text("qelctl-column-features"), QString());
    const auto features = offeredFeatures(device);
    for (const auto feature : features) {
        const QVariant descriptor = device.descriptor(feature);
        const QString unit = descriptor.toHash().value(QStringLiteral("unit")).toString();
        add(4, 26, featureArgument(feature), unit);
        const QStringList settings = settingsOf(descriptor);
        for (const QString &key : settings)
            add(8, 22, key, describeSetting(key, descriptor));
    }
    return lines.toUtf8();
}

QByteArray asJson(const Device &device)
{
    QJsonArray features;
    const auto offered = offeredFeatures(device);
    for (const auto feature : offered) {
        features.append(QJsonObject{
            {QStringLiteral("feature"), featureName(feature)},
            {QStringLiteral("argument"), featureArgument(feature)},
            {QStringLiteral("descriptor"), valueOrProblem(device.descriptor(feature))},
            {QStringLiteral("configuration"), valueOrProblem(device.configuration(feature))},
        });
    }
    QJsonObject json = document(QStringLiteral("qelctl-device"));
    json.insert(QStringLiteral("device"), deviceToJson(device.deviceInfo()));
    json.insert(QStringLiteral("open"), device.isOpen());
    json.insert(QStringLiteral("busy"), device.isBusy());
    json.insert(QStringLiteral("error"),
                QJsonObject{{QStringLiteral("code"), device.errorCode()},
                            {QStringLiteral("id"), device.errorTrId()},
                            {QStringLiteral("sentence"), errorOf(device)}});
    json.insert(QStringLiteral("features"), features);
    return printable(json);
}

int run(const QStringList &arguments)
{
    CommandLine line(showCommand);
    line.addOption({QStringLiteral("json")}, "qelctl-option-json");
    line.addArgument(QStringLiteral("DEVICE"), "qelctl-argument-device");
    if (const auto ended = line.parse(arguments, 1, 1))
        return *ended;
    startLibrary();
    const auto device = createTarget(line.positional().at(0));
    if (!device)
        return NoSuchDevice;
    Interrupt interrupt;
    const int opened = openTarget(device.get(), &interrupt);
    if (opened == Interrupted)
        return opened;
    // What is known of a device that does not open is shown all the same.
    const int printed =
        printData(line.has(QStringLiteral("json")) ? asJson(*device) : asText(*device));
    closeTarget(device.get());
    return opened != Done ? opened : printed;
}

} // namespace

const Command showCommand{"show", "qelctl-show-summary", "qelctl-show-details", &run};

} // namespace qelctl
