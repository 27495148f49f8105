// Measures a plate on the instrument that the command line names, or on the first one, and prints
// it.
#include <qelfrontend/enumeration.h>
#include <qelfrontend/plate.h>
#include <qelfrontend/platetext.h>
#include <qelfrontend/run.h>
#include <qelfrontend/selection.h>
#include <qelfrontend/startup.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

#include <memory>

using namespace qel::devices;
using namespace qel::frontend;

static int print(const Outcome &outcome)
{
    QString sentence = outcome.sentence;
    if (outcome.isResult()) {
        const auto plate =
            plateFromResult(Device::DF_AbsorbanceMeasurement, outcome.result, &sentence);
        if (plate) {
            QTextStream(stdout) << plateText(*plate);
            return 0;
        }
    }
    QTextStream(stderr) << sentence << ' ' << outcome.additionalInfo << '\n';
    return 1;
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    startLibrary();

    const QList<DeviceInfo> instruments = enumerate().devices();
    QString problem;
    const auto chosen = argc > 1 || instruments.isEmpty()
        ? selectDevice(QString::fromLocal8Bit(argv[argc - 1]), instruments, &problem)
        : instruments.first();
    const std::unique_ptr<Device> reader(chosen ? DeviceBroker::createDevice(*chosen) : nullptr);
    if (!reader) {
        QTextStream(stderr) << (chosen ? QStringLiteral("The instrument has gone.") : problem)
                            << '\n';
        return 1;
    }

    RunRequest request;
    request.feature = Device::DF_AbsorbanceMeasurement;
    request.deadline = std::chrono::minutes(10);
    request.configure = [](const QVariant &, QString *) {
        AbsorbanceMeasurement_config configuration;
        configuration.setWavelengths({450});
        return QVariant(configuration);
    };
    Run run(reader.get(), request);
    QObject::connect(&run, &Run::actionRequired, &run, [&run](int id, const QString &text) {
        QTextStream(stderr) << text << '\n';
        run.abortAction(id); // there is nobody to do it
    });
    QObject::connect(&run, &Run::finished,
                     [](const Outcome &outcome) { QCoreApplication::exit(print(outcome)); });
    run.start();
    return QCoreApplication::exec();
}
