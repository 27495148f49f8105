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
#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonArray>
#include <QtCore/QLocale>

#include <algorithm>

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

// Such as "8 x 12 wells, -0.2 to 4 OD": how large plates are and what the detector can tell.
QString rangeOf(const QVariant &descriptor)
{
    const QVariantHash entries = descriptor.toHash();
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const auto number = [&](const char *key) {
        return locale.toString(entries.value(QLatin1String(key)).toDouble(), 'f',
                               QLocale::FloatingPointShortest);
    };
    const QString unit = entries.value(QStringLiteral("unit")).toString();
    QStringList parts;
    if (entries.contains(QStringLiteral("rows")) && entries.contains(QStringLiteral("columns")))
        parts.append(text("qelctl-show-plate", number("rows"), number("columns")));
    if (entries.contains(QStringLiteral("minimum")) && entries.contains(QStringLiteral("maximum")))
        parts.append(text("qelctl-show-range", number("minimum"), number("maximum"), unit));
    else if (!unit.isEmpty())
        parts.append(unit);
    return parts.join(QStringLiteral(", "));
}

bool isFlags(const QVariantHash &setting)
{
    return setting.value(QStringLiteral("type"))
        == QLatin1String("qel::devices::LedBarEffect_config::Modes");
}

// What holds when nothing is set; empty where that is not told.
QString defaultOf(const QString &key, const QVariantHash &setting, const QVariant &descriptor)
{
    const QVariantHash byDefault{{key, setting.value(QStringLiteral("default"))}};
    const QJsonValue value = writeConfiguration(byDefault, descriptor).value(key);
    switch (value.type()) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return {};
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array:
        // An empty choice means every one, no flag means none.
        if (value.toArray().isEmpty())
            return text(isFlags(setting) ? "qelctl-show-empty-list" : "qelctl-show-all");
        break;
    default:
        break;
    }
    return QString::fromUtf8(qel::values::jsonText(value));
}

QString describe(const QString &key, const QVariant &descriptor)
{
    const QVariantHash settings = descriptor.toHash().value(QStringLiteral("settings")).toHash();
    const QString byDefault = defaultOf(key, settings.value(key).toHash(), descriptor);
    const QString allowed = describeSetting(key, descriptor);
    return byDefault.isEmpty() ? allowed : text("qelctl-show-default", allowed, byDefault);
}

QByteArray asText(const Device &device)
{
    Sheet sheet;
    sheet.add(0, 0, device.name(), QString());
    sheet.add(2, 12, text("qelctl-column-serial"), device.serial());
    sheet.add(2, 12, text("qelctl-column-device"), devicePath(device.deviceInfo()));
    sheet.add(2, 12, text("qelctl-column-interface"),
              interfaceName(device.deviceInfo().interface()));
    sheet.add(2, 12, text("qelctl-column-state"), stateOf(device));
    sheet.add(2, 12, text("qelctl-column-error"), errorOf(device));
    sheet.add(2, 0, text("qelctl-column-features"), QString());
    const auto features = offeredFeatures(device);
    for (const auto feature : features) {
        const QVariant descriptor = device.descriptor(feature);
        sheet.add(4, 26, featureArgument(feature), rangeOf(descriptor));
        QStringList settings =
            descriptor.toHash().value(QStringLiteral("settings")).toHash().keys();
        settings.sort();
        for (const QString &key : qAsConst(settings))
            sheet.add(8, 22, key, describe(key, descriptor));
    }
    return sheet.data();
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
    return indented(json);
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
    closeTarget(device.get(), interrupt);
    return opened != Done ? opened : printed;
}

} // namespace

const Command showCommand{"show", "qelctl-show-summary", "qelctl-show-details", &run};

} // namespace qelctl
