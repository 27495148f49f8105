#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "target.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

namespace {

// Prints one line for each signal of a device, until that fails.
class Watcher : public QObject
{
public:
    explicit Watcher(Device *device);

    // Done, or CannotWrite after a complaint; watching ends with it.
    int state() const
    {
        return m_state;
    }

private:
    void print(const char *signal, QJsonObject values);

    Device *m_device;
    int m_state = Done;
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
    if (m_state != Done)
        return;
    values.insert(QStringLiteral("signal"), QString::fromLatin1(signal));
    values.insert(QStringLiteral("time"),
                  QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    m_state = printData(inOneLine(values));
    if (m_state != Done)
        QCoreApplication::exit(m_state);
}

// Until the user, the reader of the output or the device has enough of it.
int watchDevice(Device *device, Interrupt *interrupt)
{
    QObject scope;
    ReaderWatch reader;
    QObject::connect(interrupt, &Interrupt::requested, &scope,
                     [] { QCoreApplication::exit(Interrupted); });
    QObject::connect(&reader, &ReaderWatch::gone, &scope,
                     [] { QCoreApplication::exit(fail(CannotWrite, text("qelctl-reader-gone"))); });
    QObject::connect(device, &Device::openChanged, &scope, [device](bool open) {
        if (!open) {
            QCoreApplication::exit(
                fail(DeviceFailed, text("qelctl-watch-closed", titleOf(device->deviceInfo()))));
        }
    });
    return QCoreApplication::exec();
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
    int code = openTarget(device.get(), &interrupt);
    if (watcher.state() != Done)
        code = watcher.state();
    else if (code == Done)
        code = watchDevice(device.get(), &interrupt);
    if (device->isOpen())
        closeTarget(device.get());
    return code;
}

} // namespace

const Command watchCommand{"watch", "qelctl-watch-summary", "qelctl-watch-details", &run};

} // namespace qelctl
