#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "target.h"

#include <qelfrontend/frontend.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/observer.h>

#include <qeldevices/deviceerrors.h>

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
    void print(const Event &event);

    int m_state = Done;
};

// What the event brings, beside its name and time.
QJsonObject contentOf(const Event &event)
{
    const QJsonObject about{{QStringLiteral("feature"), featureName(event.feature)}};
    const auto aboutValue = [&](const QString &key) {
        QJsonObject content = about;
        content.insert(key, valueOrProblem(event.value));
        return content;
    };
    switch (event.kind) {
    case Event::OpenChanged:
        return {{QStringLiteral("open"), event.flag}};
    case Event::BusyChanged:
        return {{QStringLiteral("isBusy"), event.flag}};
    case Event::TransientValue:
        return aboutValue(QStringLiteral("value"));
    case Event::Executed: {
        QJsonObject content = aboutValue(QStringLiteral("result"));
        content.insert(QStringLiteral("ok"), event.flag);
        return content;
    }
    case Event::NameChanged:
        return {{QStringLiteral("name"), event.value.toString()}};
    case Event::SerialChanged:
        return {{QStringLiteral("serial"), event.value.toString()}};
    case Event::DescriptorChanged:
        return aboutValue(QStringLiteral("descriptor"));
    case Event::ConfigurationChanged:
        return aboutValue(QStringLiteral("configuration"));
    case Event::FeaturesChanged:
        break;
    case Event::ErrorChanged:
        return {{QStringLiteral("code"), event.errorCode},
                {QStringLiteral("id"), event.errorTrId},
                {QStringLiteral("additionalId"), event.additionalInfoTrId}};
    case Event::ActionRequired:
        return {{QStringLiteral("actionId"), event.actionId},
                {QStringLiteral("action"), event.action},
                {QStringLiteral("sentence"), translated(event.action)}};
    case Event::ActionConfirmed:
        return {{QStringLiteral("actionId"), event.actionId}};
    }
    return {};
}

Watcher::Watcher(Device *device)
{
    observe(device, this, [this](const Event &event) { print(event); });
}

void Watcher::print(const Event &event)
{
    if (m_state != Done)
        return;
    QJsonObject line = contentOf(event);
    line.insert(QStringLiteral("signal"), QLatin1String(signalName(event.kind)));
    line.insert(QStringLiteral("time"),
                QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    m_state = printData(inOneLine(line));
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
    const auto end = [device] {
        QCoreApplication::exit(
            fail(DeviceFailed, text("qelctl-watch-closed", titleOf(device->deviceInfo()))));
    };
    const bool isObserved = device->property("observable").toBool();
    QObject::connect(device, &Device::openChanged, &scope, [end, isObserved](bool open) {
        if (!open && !isObserved)
            end();
    });
    QObject::connect(device, &Device::errorChanged, &scope, [device, end, isObserved] {
        if (isObserved && device->errorCode() == qel::devices::ERROR_DEVICE_DISCONNECTED)
            end();
    });
    if (isObserved && !QMetaObject::invokeMethod(device, "observe"))
        return DriverFailed;
    if (isObserved && device->errorCode() != 0)
        return DeviceFailed;
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
    // What stands elsewhere is watched without keeping anybody from it.
    if (device->property("observable").toBool()) {
        return watchDevice(device.get(), &interrupt);
    }
    int code = openTarget(device.get(), &interrupt, [&] { return watcher.state() != Done; });
    if (watcher.state() != Done)
        code = watcher.state();
    else if (code == Done)
        code = watchDevice(device.get(), &interrupt);
    if (device->isOpen())
        closeTarget(device.get(), interrupt, code);
    return code;
}

} // namespace

const Command watchCommand{"watch", "qelctl-watch-summary", "qelctl-watch-details", &run};

} // namespace qelctl
