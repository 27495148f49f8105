// The least application that measures a plate: the floor of "qelctl run". Measures absorbance at
// 450 nm on the first instrument, as often as its argument says, and writes the bare numbers.
#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>

#include <cstdio>
#include <cstdlib>

using namespace qel::devices;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    int left = argc > 1 ? std::atoi(argv[1]) : 1;
    init();
    Device *device = DeviceBroker::createDevice(DeviceBroker::availableDevices().first());
    device->setParent(&application);
    QObject::connect(device, &Device::openChanged, device, [device](bool open) {
        if (!open)
            return;
        AbsorbanceMeasurement_config configuration;
        configuration.setWavelengths({450});
        device->setConfiguration(Device::DF_AbsorbanceMeasurement, configuration);
        device->execute(Device::DF_AbsorbanceMeasurement);
    });
    const auto write = [device, &left](Device::DeviceFeature feature, bool ok,
                                       const QVariant &result) {
        const QVariantHash plate = result.toHash();
        const int columns = plate.value(QStringLiteral("columns")).toInt();
        const auto values =
            plate.value(QStringLiteral("values")).toList().value(0).value<QVector<double>>();
        for (int well = 0; well < values.size(); ++well)
            std::printf("%.6g%c", values.at(well), (well + 1) % columns ? ',' : '\n');
        if (!ok || --left <= 0)
            return QCoreApplication::exit(ok ? 0 : 1);
        // Not from within the ending: the next run begins when the driver has come to rest.
        QMetaObject::invokeMethod(
            device, [device, feature] { device->execute(feature); }, Qt::QueuedConnection);
    };
    QObject::connect(device, &Device::executed, device, write);
    device->open();
    return QCoreApplication::exec();
}
