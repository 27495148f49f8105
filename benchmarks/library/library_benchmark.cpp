// Times operations of the library beside their floors, by turns, in one thread. Prints a line for
// each pair, tab separated: the operation, then the processor time of one call in ns, median and
// least, of the library and of its floor.
#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>
#include <qeldevices/logging.h>

#include <QtCore/QMap>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <vector>

using namespace qel::devices;

static volatile quintptr sink;

static double processorTime()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e9 + double(now.tv_nsec);
}

using Operation = std::function<void(int count)>;

// The time of one of the calls that `operation` makes when it is told how many.
static double timeOf(const Operation &operation, int count)
{
    const double before = processorTime();
    operation(count);
    return (processorTime() - before) / count;
}

static void compare(const char *name, const Operation &ours, const Operation &floor)
{
    constexpr int rounds = 41;
    int count = 1;
    while (timeOf(floor, count) * count < 2e6 && count < 1 << 20)
        count *= 2;
    timeOf(ours, count);
    std::vector<double> times[2];
    for (int i = 0; i < rounds; ++i) {
        times[0].push_back(timeOf(ours, count));
        times[1].push_back(timeOf(floor, count));
    }
    std::printf("%s", name);
    for (std::vector<double> &each : times) {
        std::sort(each.begin(), each.end());
        std::printf("\t%.1f\t%.1f", each[rounds / 2], each[0]);
    }
    std::printf("\n");
}

// The floors' device: a table, a virtual call and a signal, and nothing that the library does
// beyond. Its look-up is a call, as that of any library is.
class Bare : public QObject
{
public:
    virtual void run(Device::DeviceFeature feature)
    {
        // A signal without receivers, as the library's device has here, with its three arguments.
        bool ok = true;
        QVariant result;
        void *arguments[] = {nullptr, &feature, &ok, &result};
        QMetaObject::activate(this, &QObject::staticMetaObject, 0, arguments);
    }
    Q_NEVER_INLINE bool has(int feature) const
    {
        return features.constFind(feature)->available;
    }
    Q_NEVER_INLINE QVariant descriptor(int feature) const
    {
        return features.constFind(feature)->descriptor;
    }
    DeviceInfo info{DeviceInfo::Simulator, {}, {}, {}, {}};
    QMap<int, Device::DeviceFeatureData> features;
    QString details;
};

class Instrument : public Device
{
public:
    explicit Instrument(const DeviceInfo &info)
        : Device(info, nullptr)
    { }
    bool open() override
    {
        return true;
    }
    void close() override { }
    void update() override { }
    void reset() override { }

protected:
    void executeImpl(DeviceFeature feature) override
    {
        emit executed(feature, true, {});
    }
};

class Driver : public DeviceDriver
{
public:
    QString name() override
    {
        return QStringLiteral("benchmark");
    }
    Device *createDevice(const DeviceInfo &info) override
    {
        return new Instrument(info);
    }
    QList<DeviceInfo> availableDevices() override
    {
        return instruments;
    }
    QList<DeviceInfo> instruments;
};

static QList<DeviceInfo> makeInstruments(int count, bool shuffled)
{
    QList<DeviceInfo> list;
    for (int i = 0; i < count; ++i) {
        list.append({DeviceInfo::Simulator, QStringLiteral("benchmark"),
                     QStringLiteral("bench-%1").arg(i, 5, 10, QLatin1Char('0')),
                     QStringLiteral("reader"), QString::number(i)});
    }
    if (shuffled)
        std::shuffle(list.begin(), list.end(), std::minstd_rand(1));
    return list;
}

static void compareListings(Driver *driver)
{
    for (const bool shuffled : {false, true}) {
        for (const int instruments : {1, 100, 10000}) {
            driver->instruments = makeInstruments(instruments, shuffled);
            const QString name = QStringLiteral("list %1 instruments%2")
                                     .arg(instruments)
                                     .arg(shuffled ? QStringLiteral(", unsorted") : QString());
            compare(
                qPrintable(name),
                [](int count) {
                    for (int i = 0; i < count; ++i)
                        sink = sink + quintptr(DeviceBroker::availableDevices().size());
                },
                [](int count) {
                    for (int i = 0; i < count; ++i) {
                        QList<DeviceInfo> list;
                        for (const auto &each : std::as_const(DeviceBroker::DRIVERS))
                            list += each->availableDevices();
                        if (!std::is_sorted(list.cbegin(), list.cend()))
                            std::sort(list.begin(), list.end());
                        sink = sink + quintptr(list.size());
                    }
                });
        }
    }
}

static void compareDevices(const DeviceInfo &info)
{
    compare(
        "create and destroy a device",
        [&info](int count) {
            for (int i = 0; i < count; ++i)
                delete DeviceBroker::createDevice(info);
        },
        [&info](int count) {
            for (int i = 0; i < count; ++i) {
                auto *bare = new Bare;
                bare->info = info;
                sink = sink + quintptr(bare->info.interface());
                delete bare;
            }
        });
}

static void compareTable(Device *device, const Bare &bare)
{
    const auto feature = Device::DF_AbsorbanceMeasurement;
    compare(
        "hasFeature()",
        [=](int count) {
            for (int i = 0; i < count; ++i)
                sink = sink + device->hasFeature(feature);
        },
        [&](int count) {
            for (int i = 0; i < count; ++i)
                sink = sink + bare.has(feature);
        });
    compare(
        "descriptor()",
        [=](int count) {
            for (int i = 0; i < count; ++i)
                sink = sink + quintptr(device->descriptor(feature).isValid());
        },
        [&](int count) {
            for (int i = 0; i < count; ++i)
                sink = sink + quintptr(bare.descriptor(feature).isValid());
        });
}

static void compareExecution(Device *device, Bare *bare)
{
    const auto feature = Device::DF_AbsorbanceMeasurement;
    for (const bool logging : {false, true}) {
        QLoggingCategory::setFilterRules(logging ? QStringLiteral("*=true")
                                                 : QStringLiteral("*=false"));
        compare(
            logging ? "execute(), logged" : "execute(), not logged",
            [=](int count) {
                for (int i = 0; i < count; ++i)
                    device->execute(feature);
            },
            [=](int count) {
                for (int i = 0; i < count; ++i) {
                    qCInfo(LogCDevices)
                        << "Feature execution requested:"
                        << QVariant::fromValue(feature).toString().toLocal8Bit().constData();
                    if (bare->has(feature))
                        bare->run(feature);
                }
            });
    }
}

int main()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    const auto driver = std::make_shared<Driver>();
    DeviceBroker::addDriver(driver);
    compareListings(driver.get());

    const DeviceInfo info = makeInstruments(1, false).constFirst();
    compareDevices(info);
    const std::unique_ptr<Device> device(DeviceBroker::createDevice(info));
    Bare bare;
    for (int feature = 1; feature < 12; ++feature) {
        const QVariant descriptor = QVariantHash{{QStringLiteral("rows"), 8}};
        device->setDescriptor(Device::DeviceFeature(feature), descriptor);
        bare.features[feature] = {true, descriptor, {}};
    }
    device->setOpen(true);
    compareTable(device.get(), bare);
    compareExecution(device.get(), &bare);
    return 0;
}
