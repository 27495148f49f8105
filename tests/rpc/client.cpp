// An application that does what each line of its input says, and tells, a line of JSON each, what
// its calls return, what its device says and when it was held up.
#include <qelvalues/observer.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <cstdio>
#include <memory>
#include <unistd.h>

using namespace qel::devices;

namespace {

std::unique_ptr<Device> device;

void tell(const QJsonObject &what)
{
    std::puts(QJsonDocument(what).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

int list()
{
    return DeviceBroker::availableDevices().size();
}

bool create()
{
    const auto all = DeviceBroker::availableDevices();
    device.reset(all.isEmpty() ? nullptr : DeviceBroker::createDevice(all.constFirst()));
    if (!device)
        return false;
    qel::values::observe(device.get(), device.get(), [](const qel::values::Event &event) {
        tell({{"said", QString::fromLatin1(qel::values::signalName(event.kind))},
              {"flag", event.flag},
              {"feature", event.feature},
              {"action", event.actionId},
              {"open", event.isOpen},
              {"busy", event.isBusy},
              {"error", event.errorCode}});
    });
    return true;
}

QJsonValue obey(const QByteArray &word, int number)
{
    if (word == "list")
        return list();
    if (word == "create")
        return create();
    if (word == "open")
        return device->open();
    if (word == "execute")
        device->execute(Device::DeviceFeature(number));
    else if (word == "confirm")
        device->confirmAction(number);
    else if (word == "close")
        device->close();
    else if (word == "delete")
        device.reset();
    return {};
}

void readLines()
{
    static QByteArray input;
    char buffer[1000];
    const auto size = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (size <= 0) {
        QCoreApplication::quit();
        return;
    }
    input.append(buffer, int(size));
    for (int end = 0; (end = input.indexOf('\n')) >= 0; input.remove(0, end + 1)) {
        const auto words = input.left(end).split(' ');
        QElapsedTimer clock;
        clock.start();
        const QJsonValue returned = obey(words.first(), words.value(1).toInt());
        tell({{"called", QString::fromLatin1(words.first())},
              {"returned", returned},
              {"took", double(clock.elapsed())}});
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    qRegisterMetaType<Device::DeviceFeature>("DeviceFeature");
    if (!DeviceBroker::loadPlugin(QString::fromLocal8Bit(argv[1])))
        return EXIT_FAILURE;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &readLines);
    QTimer beat;
    QElapsedTimer since;
    since.start();
    QObject::connect(&beat, &QTimer::timeout, &application, [&] {
        const auto gap = since.restart();
        if (gap > 1000)
            tell({{"called", "nothing"}, {"took", double(gap)}});
    });
    beat.start(50);
    QCoreApplication::exec();
    device.reset();
    return EXIT_SUCCESS;
}
