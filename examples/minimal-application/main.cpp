// Lists the instruments, measures a plate on the first one that can measure absorbance, prints it.
#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>

using namespace qel::devices;

static void print(const QVariantHash &plate)
{
    QTextStream out(stdout);
    out << Qt::fixed << qSetRealNumberPrecision(3);
    const int columns = plate.value(QStringLiteral("columns")).toInt();
    const auto reads = plate.value(QStringLiteral("values")).toList();
    const auto values = reads.value(0).value<QVector<double>>();
    for (int well = 0; well < values.size(); ++well)
        out << values.at(well) << ((well + 1) % columns == 0 ? '\n' : '\t');
}

static void fail(const QString &sentence)
{
    QTextStream(stderr) << sentence << '\n';
    QCoreApplication::exit(1);
}

static void measureOnFirstOf(QList<DeviceInfo> instruments)
{
    if (instruments.isEmpty())
        return fail(QStringLiteral("No instrument here can measure absorbance."));
    Device *reader = DeviceBroker::createDevice(instruments.takeFirst());
    if (!reader) // unplugged meanwhile
        return measureOnFirstOf(instruments);
    reader->setParent(qApp);

    QObject::connect(reader, &Device::openChanged, reader, [reader, instruments](bool open) {
        if (!open)
            return;
        if (!reader->hasFeature(Device::DF_AbsorbanceMeasurement)) {
            reader->deleteLater();
            return measureOnFirstOf(instruments);
        }
        AbsorbanceMeasurement_config configuration;
        configuration.setWavelengths({450});
        reader->setConfiguration(Device::DF_AbsorbanceMeasurement, configuration);
        reader->execute(Device::DF_AbsorbanceMeasurement);
    });
    QObject::connect(reader, &Device::executed, reader,
                     [](Device::DeviceFeature, bool ok, const QVariant &result) {
                         print(result.toHash());
                         QCoreApplication::exit(ok ? 0 : 1);
                     });
    QObject::connect(reader, &Device::actionRequired, reader, [](int, const QString &action) {
        fail(qtTrId(action.toUtf8())); // not confirmed: it is up to the user, then to another run
    });
    QObject::connect(reader, &Device::errorChanged, reader, [reader] {
        fail(reader->name() + QStringLiteral(": ") + qtTrId(reader->errorTrId().toUtf8()));
    });
    reader->open();
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    qel::devices::init();

    const QList<DeviceInfo> instruments = DeviceBroker::availableDevices();
    for (const DeviceInfo &instrument : instruments)
        QTextStream(stdout) << instrument.serial() << '\t' << instrument.name() << '\n';
    QTimer::singleShot(0, [instruments] { measureOnFirstOf(instruments); });
    return QCoreApplication::exec();
}
