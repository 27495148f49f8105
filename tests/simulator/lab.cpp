#include "lab.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>

Lab::Lab()
    : m_fileName(m_directory.filePath(QStringLiteral("scenario.json")))
{
    qputenv("QELDEVICES_SIMULATOR", QFile::encodeName(m_fileName));
    write("{\"instruments\": []}");
    // What the library logs is tested elsewhere; the driver's own warnings are looked for here.
    QLoggingCategory::setFilterRules(QStringLiteral("qel.devices=false"));
    if (DeviceBroker::availableDrivers().isEmpty() && !DeviceBroker::loadPlugin(SIMULATOR_PLUGIN))
        qFatal("the simulator does not load");
}

void Lab::write(const QByteArray &scenario)
{
    QFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(scenario) != scenario.size())
        qFatal("cannot write the scenario");
}

void Lab::setUp(const QJsonArray &instruments)
{
    write(QJsonDocument(QJsonObject{{"timeScale", 0}, {"instruments", instruments}}).toJson());
}

void Lab::setUpOne(const QString &model, QJsonObject rest)
{
    rest.insert("model", model);
    rest.insert("serial", "under test");
    // An instrument of the same description would keep its state from the row before.
    static int number = 0;
    rest.insert("name", QStringLiteral("Reader %1").arg(++number));
    setUp({rest});
}

std::unique_ptr<Device> Lab::device() const
{
    const auto known = instruments();
    return std::unique_ptr<Device>(
        known.isEmpty() ? nullptr : DeviceBroker::createDevice(known.constFirst()));
}

std::unique_ptr<Device> Lab::openDevice() const
{
    auto created = device();
    if (!created || !created->open() || !waitFor([&] { return created->isOpen(); }))
        qFatal("the device does not open");
    return created;
}

Recorder::Recorder(Device *device)
{
    connect(device, &Device::openChanged, this,
            [this](bool open) { signalsSeen << QStringLiteral("open %1").arg(open); });
    connect(device, &Device::busyChanged, this,
            [this](bool busy) { signalsSeen << QStringLiteral("busy %1").arg(busy); });
    connect(device, &Device::errorChanged, this, [this, device] {
        signalsSeen << QStringLiteral("error %1").arg(device->errorCode(), 0, 16);
    });
    connect(device, &Device::executed, this,
            [this](Device::DeviceFeature feature, bool ok, const QVariant &result) {
                signalsSeen << QStringLiteral("executed %1 %2").arg(feature).arg(ok);
                endings.append(ok);
                results.append(result);
            });
    connect(device, &Device::transientValue, this,
            [this](Device::DeviceFeature feature, const QVariant &value) {
                if (value.toHash().contains("progress"))
                    progress.append(value.toHash().value("progress").toDouble());
                else
                    signalsSeen << QStringLiteral("transient %1").arg(feature);
            });
    connect(device, &Device::actionRequired, this, [this](int id, const QString &text) {
        signalsSeen << QStringLiteral("asked");
        actionId = id;
        action = text;
    });
}

static void turn()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > 5000)
            return false;
        turn();
        QThread::usleep(100);
    }
    return true;
}

void settle()
{
    for (int i = 0; i < 100; ++i)
        turn();
}
