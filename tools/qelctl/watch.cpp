#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "target.h"

#include <frontend.h>
#include <selection.h>
#include <valuecodec.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>

namespace qelctl {

using namespace qel::frontend;
using qel::devices::Device;

namespace {

// Prints one line for each signal of a device.
class Watcher : public QObject
{
public:
    explicit Watcher(Device *device);

private:
    void print(const char *signal, QJsonObject values);

    Device *m_device;
};

QJsonObject about(Device::DeviceFeature feature)
{
    return {{QStringLiteral("feature"), featureName(feature)}};
}

Watcher::Watcher(Device *device)
    : m_device(device)
{
    connect(device, &Device::openChanged, this, [this](bool open) {
        print("openChanged", {{QStringLiteral("open"), open}});
    });
    connect(device, &Device::busyChanged, this, [this](bool isBusy) {
        print("busyChanged", {{QStringLiteral("isBusy"), isBusy}});
    });
    connect(device, &Device::transientValue, this,
            [this](Device::DeviceFeature feature, const QVariant &value) {
                QJsonObject values = about(feature);
                values.insert(QStringLiteral("value"), valueOrProblem(value));
                print("transientValue", values);
            });
    connect(device, &Device::executed, this,
            [this](Device::DeviceFeature feature, bool ok, const QVariant &result) {
                QJsonObject values = about(feature);
                values.insert(QStringLiteral("ok"), ok);
                values.insert(QStringLiteral("result"), valueOrProblem(result));
                print("executed", values);
            });
    connect(device, &Device::nameChanged, this, [this] {
        print("nameChanged", {{QStringLiteral("name"), m_device->name()}});
    });
    connect(device, &Device::serialChanged, this, [this] {
        print("serialChanged", {{QStringLiteral("serial"), m_device->serial()}});
    });
    connect(device, &Device::descriptorChanged, this, [this](Device::DeviceFeature feature) {
        QJsonObject values = about(feature);
        values.insert(QStringLiteral("descriptor"), valueOrProblem(m_device->descriptor(feature)));
        print("descriptorChanged", values);
    });
    connect(device, &Device::configurationChanged, this, [this](Device::DeviceFeature feature) {
        QJsonObject values = about(feature);
        values.insert(QStringLiteral("configuration"),
                      valueOrProblem(m_device->configuration(feature)));
        print("configurationChanged", values);
    });
    connect(device, &Device::featuresChanged, this, [this] { print("featuresChanged", {}); });
    connect(device, &Device::errorChanged, this, [this] {
        print("errorChanged",
              {{QStringLiteral("code"), m_device->errorCode()},
               {QStringLiteral("id"), m_device->errorTrId()},
               {QStringLiteral("additionalId"), m_device->errorAdditionalInfoTrId()}});
    });
    connect(device, &Device::actionRequired, this, [this](int actionId, const QString &action) {
        print("actionRequired",
              {{QStringLiteral("actionId"), actionId},
               {QStringLiteral("action"), action},
               {QStringLiteral("sentence"), translated(action)}});
    });
    connect(device, &Device::actionConfirmed, this, [this](int actionId) {
        print("actionConfirmed", {{QStringLiteral("actionId"), actionId}});
    });
}

void Watcher::print(const char *signal, QJsonObject values)
{
    values.insert(QStringLiteral("signal"), QString::fromLatin1(signal));
    values.insert(QStringLiteral("time"),
                  QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    const int printed = printData(jsonText(values) + '\n');
    if (printed != Done)
        QCoreApplication::exit(printed);
}

int run(const QStringList &arguments)
{
    CommandLine line(watchCommand);
    line.addArgument(QStringLiteral("DEVICE"), "qelctl-argument-device");
    if (const auto ended = line.parse(arguments, 1, 1))
        return *ended;
    startLibrary();
    const auto device = createTarget(line.positional().at(0));
    if (!device)
        return NoSuchDevice;

    Interrupt interrupt;
    Watcher watcher(device.get());
    const int opened = openTarget(device.get(), &interrupt);
    if (interrupt.wasRequested())
        return Interrupted;
    if (opened != Done)
        return opened;
    const QString title = titleOf(device->deviceInfo());
    QObject::connect(&interrupt, &Interrupt::requested, &watcher,
                     [] { QCoreApplication::exit(Interrupted); });
    QObject::connect(device.get(), &Device::openChanged, &watcher, [&](bool open) {
        if (!open && !interrupt.wasRequested())
            QCoreApplication::exit(fail(DeviceFailed, text("qelctl-watch-closed", title)));
    });
    const int ended = QCoreApplication::exec();
    if (device->isOpen())
        closeTarget(device.get());
    return ended;
}

} // namespace

const Command watchCommand{"watch", "qelctl-watch-summary", "qelctl-watch-details", &run};

} // namespace qelctl
