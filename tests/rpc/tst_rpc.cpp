#include <deviceserver.h>
#include <gate.h>
#include <link.h>
#include <remotedevice.h>
#include <texts.h>
#include <wire.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtTest/QtTest>

#include <grpcpp/create_channel_posix.h>

#include <fcntl.h>
#include <functional>
#include <sys/socket.h>

using namespace qel::devices;
using namespace qel::rpc;

constexpr auto feature = Device::DF_Orientation;
constexpr auto other = Device::DF_Calibration;
// For a machine that is busy with everything else; nothing waits for its end.
constexpr int patience = 60000; // ms

namespace {

// A device that does what the test tells it. The test finds it here.
class FarDevice : public Device
{
public:
    explicit FarDevice(const DeviceInfo &info)
        : Device(info, nullptr)
    {
        current = this;
    }
    ~FarDevice() override
    {
        current = nullptr;
    }

    bool open() override
    {
        if (refuses)
            setError(ERROR_DEVICE_CANT_OPEN, "stuck");
        if (refuses)
            return false;
        addFeature(feature);
        setDescriptor(other, QVariantHash{{"unit", "m"}});
        setOpen(true);
        return true;
    }
    void close() override
    {
        calls += "close";
        setStatus({});
        if (running)
            emit executed(feature, false);
    }
    void update() override
    {
        calls += "update";
    }
    void reset() override
    {
        calls += "reset";
        setBusy(false);
        setError(NO_DEVICE_ERROR, {});
    }
    void executeImpl(DeviceFeature executedFeature) override
    {
        calls += QStringLiteral("execute %1").arg(executedFeature);
        onExecute(this);
    }
    void confirmActionImpl(int id) override
    {
        calls += QStringLiteral("confirm %1").arg(id);
        onConfirm(this);
    }
    void abortActionImpl(int id) override
    {
        calls += QStringLiteral("abort %1").arg(id);
    }

    static FarDevice *current;
    static bool refuses; // to open
    std::function<void(FarDevice *)> onExecute = [](FarDevice *device) { device->setBusy(true); };
    std::function<void(FarDevice *)> onConfirm = [](FarDevice *) {};
    bool running = false;
    QStringList calls;
};

FarDevice *FarDevice::current = nullptr;
bool FarDevice::refuses = false;

class FarDriver : public DeviceDriver
{
public:
    QString name() override
    {
        return "far";
    }
    Device *createDevice(const DeviceInfo &info) override
    {
        return info.location() == "here" ? new FarDevice(info) : nullptr;
    }
    QList<DeviceInfo> availableDevices() override
    {
        return {record()};
    }
    static DeviceInfo record(const QString &location = "here")
    {
        return {DeviceInfo::Serial, "far", location, "Réader", "S-1"};
    }
};

// A server and a link to it, over a pair of sockets, in one process.
class Pair
{
public:
    explicit Pair(Gate *gate = nullptr)
        : server(std::make_unique<DeviceServer>(gate))
    {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) != 0)
            qFatal("no sockets");
        server->serveSocket(ends[0]);
        link.connectTo(grpc::CreateInsecureChannelFromFd("test", ends[1]));
    }

    std::unique_ptr<DeviceServer> server;
    Link link;
};

// Lets everybody do everything, and keeps results in memory.
class OpenGate : public Gate
{
public:
    QString refusal(const QString &) override
    {
        return {};
    }
    wire::Text executeRefusal(const QString &, Device::DeviceFeature executed) override
    {
        wire::Text text;
        if (executed == forbidden) {
            text.set_id("no-you-may-not");
            (*text.mutable_sentences())["en"] = "You may not.";
        }
        return text;
    }
    wire::Text acquire(const QString &, const void *, const DeviceInfo &) override
    {
        wire::Text text;
        text.set_id(isTaken ? "taken" : "");
        return text;
    }
    void release(const void *) override { }
    void noteStart(const QString &, const Device &, const FarRun &) override { }
    void noteRun(const QString &, const Device &, const FarRun &, bool) override { }
    QString keepResult(const QString &, const Device &, const FarRun &run,
                       const QVariant &result) override
    {
        const QString name = QStringLiteral("%1-%2").arg(++count).arg(run.configuration.toInt());
        results.insert(name, result);
        return name;
    }
    void dropResult(const QString &name) override
    {
        results.remove(name);
    }
    void noteKept(const QString &, const QString &name) override
    {
        left += name;
    }
    QStringList keptResults(const QString &) override
    {
        return results.keys();
    }
    QByteArray keptResult(const QString &, const QString &name) override
    {
        return results.contains(name) ? QByteArray(R"({"name": "x", "result": 1})") : QByteArray();
    }

    QString enter(const QString &) override
    {
        return --streams < 0 ? "too many" : QString();
    }
    QString callRefusal(const QString &, quint64) override
    {
        return --calls < 0 ? "too fast" : QString();
    }

    int forbidden = -1;
    bool isTaken = false;
    int streams = 1000000;
    int calls = 1000000;
    QMap<QString, QVariant> results;
    QStringList left;
    int count = 0;
};

// Carries bytes between two sockets until it is cut.
class Relay : public QObject
{
public:
    Relay(int nearSocket, int farSocket)
        : m_sockets{nearSocket, farSocket}
    {
        for (int from : {0, 1}) {
            auto *notifier = new QSocketNotifier(m_sockets[from], QSocketNotifier::Read, this);
            connect(notifier, &QSocketNotifier::activated, this, [this, from] { carry(from); });
        }
    }
    ~Relay() override
    {
        cut();
        for (int socket : m_sockets)
            ::close(socket);
    }

    // From the near end is 0, from the far end 1.
    void cutAfter(int from, qint64 bytes)
    {
        m_left[from] = bytes;
    }
    void cut()
    {
        for (auto *notifier : findChildren<QSocketNotifier *>())
            notifier->setEnabled(false);
        for (int socket : m_sockets)
            ::shutdown(socket, SHUT_RDWR);
    }

    qint64 carried[2] = {0, 0};

private:
    void carry(int from)
    {
        char bytes[4096];
        const auto count = ::recv(m_sockets[from], bytes, sizeof bytes, MSG_DONTWAIT);
        const auto passed = std::min<qint64>(count, m_left[from]);
        qint64 sent = 0;
        while (sent < passed) {
            const auto more =
                ::send(m_sockets[1 - from], bytes + sent, size_t(passed - sent), MSG_NOSIGNAL);
            if (more < 0 && errno != EAGAIN)
                break;
            sent += std::max<qint64>(more, 0);
        }
        carried[from] += std::max<qint64>(passed, 0);
        m_left[from] -= passed;
        if (count == 0 || passed < count)
            cut();
    }

    int m_sockets[2];
    qint64 m_left[2] = {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::max()};
};

// A server that grants a grace, and a link that is made anew whenever it is lost.
class Line
{
public:
    explicit Line(Gate *gate, std::chrono::milliseconds grace = std::chrono::minutes(1))
        : server(std::make_unique<DeviceServer>(gate, grace))
    {
        QObject::connect(&link, &Link::lost, &link, [this] {
            if (connects)
                QTimer::singleShot(0, &link, [this] { connect(); });
        });
        connect();
    }

    void connect()
    {
        int farEnds[2];
        int nearEnds[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, farEnds) != 0
            || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, nearEnds) != 0)
            qFatal("no sockets");
        relay = std::make_unique<Relay>(nearEnds[1], farEnds[1]);
        server->serveSocket(farEnds[0]);
        link.connectTo(grpc::CreateInsecureChannelFromFd("test", nearEnds[0]));
    }

    bool connects = true;
    std::unique_ptr<DeviceServer> server;
    std::unique_ptr<Relay> relay;
    Link link;
};

// Every signal of a device, in words.
class Heard : public QObject
{
public:
    explicit Heard(Device *device)
    {
        connect(device, &Device::openChanged, this, [this](bool on) { note("open", on); });
        connect(device, &Device::busyChanged, this, [this](bool on) { note("busy", on); });
        connect(device, &Device::nameChanged, this, [this] { note("name"); });
        connect(device, &Device::serialChanged, this, [this] { note("serial"); });
        connect(device, &Device::featuresChanged, this, [this] { note("features"); });
        connect(device, &Device::descriptorChanged, this, [this](int f) { note("descriptor", f); });
        connect(device, &Device::configurationChanged, this,
                [this](int f) { note("configuration", f); });
        connect(device, &Device::errorChanged, this,
                [this, device] { note("error", device->errorCode()); });
        connect(device, &Device::transientValue, this,
                [this](int, const QVariant &value) { note("transient", value.toInt()); });
        connect(device, &Device::executed, this, [this](int f, bool ok, const QVariant &result) {
            note("executed", f, ok);
            results += result;
        });
        connect(device, &Device::actionRequired, this, [this](int id, const QString &text) {
            note("action");
            actionId = id;
            action = text;
        });
    }

    template<typename... Numbers>
    void note(const char *what, Numbers... numbers)
    {
        QStringList words{what};
        (words.append(QString::number(numbers)), ...);
        all += words.join(' ');
    }

    QStringList take()
    {
        return std::exchange(all, {});
    }

    QStringList all;
    QVariantList results;
    int actionId = -1;
    QString action;
};

} // namespace

class tst_Rpc : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void tellsTheInstruments();
    void refusesAnotherVersion();
    void mirrorsEverySignalInOrder();
    void mirrorsTheFeatureTable();
    void keepsConfigurationsForTheFarDevice();
    void endsAnInstantRunOnceAndIdle();
    void endsRunsThatAreInterruptedWithoutAResult_data();
    void endsRunsThatAreInterruptedWithoutAResult();
    void withdrawsAnOpening();
    void tellsEachTimeWhyItDoesNotOpen_data();
    void tellsEachTimeWhyItDoesNotOpen();
    void mapsActions();
    void saysWhatCannotTravel();
    void isDisconnectedWhenTheFarSideGoes();
    void isDisconnectedWhenTheFarSideIsSilent();
    void learnsThatThereIsNoSuchInstrument();
    void opensAgainWithTheNextConnection();
    void mergesProgressOnly();
    void carriesEveryValueOfABurst();
    void deletesTheFarDeviceWithTheNearOne();
    void keepsAResultUntilTheApplicationHasIt_data();
    void keepsAResultUntilTheApplicationHasIt();
    void losesNothingWhereverTheConnectionIsCut();
    void endsARunWhosePeerStaysAway();
    void showsObserversWhatOthersDo();
    void refusesAFeatureAndNoMore();
    void endsSessionsBeyondTheLimits_data();
    void endsSessionsBeyondTheLimits();

private:
    bool open();
    void useLine(Line *line);
    void runThrough(Line *line);
    static FarDevice *far()
    {
        return FarDevice::current;
    }

    std::unique_ptr<Pair> m_pair;
    std::unique_ptr<RemoteDevice> m_device;
    std::unique_ptr<Heard> m_heard;
};

void tst_Rpc::initTestCase()
{
    QLoggingCategory::setFilterRules("qel.devices*=false");
    DeviceBroker::addDriver(std::make_shared<FarDriver>());
}

void tst_Rpc::init()
{
    m_pair = std::make_unique<Pair>();
    QTRY_VERIFY_WITH_TIMEOUT(m_pair->link.isReady(), patience);
    m_device =
        std::make_unique<RemoteDevice>(FarDriver::record(), FarDriver::record(), &m_pair->link);
    m_heard = std::make_unique<Heard>(m_device.get());
}

void tst_Rpc::cleanup()
{
    m_device.reset();
    m_pair.reset();
    QCOMPARE(FarDevice::current, nullptr);
}

bool tst_Rpc::open()
{
    m_device->open();
    const bool isOpen = QTest::qWaitFor([this] { return m_device->isOpen(); }, patience);
    m_heard->take();
    return isOpen;
}

void tst_Rpc::tellsTheInstruments()
{
    QCOMPARE(m_pair->link.drivers(), QStringList{"far"});
    QTRY_VERIFY_WITH_TIMEOUT(m_pair->link.instruments() == QList<DeviceInfo>{FarDriver::record()},
                             patience);
}

void tst_Rpc::refusesAnotherVersion()
{
    int ends[2];
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
    m_pair->server->serveSocket(ends[0]);
    const auto stub =
        wire::Instruments::NewStub(grpc::CreateInsecureChannelFromFd("test", ends[1]));
    const auto stream =
        WatchClient::start([&](grpc::ClientContext *context, grpc::CompletionQueue *queue) {
            return stub->PrepareAsyncWatch(context, queue);
        });
    wire::Ask ask;
    ask.mutable_hello()->set_protocol(protocolVersion + 1);
    ask.mutable_hello()->set_library("v9.9");
    stream->send(ask);
    QTRY_VERIFY_WITH_TIMEOUT(stream->hasEnded(), patience);
    QCOMPARE(stream->status().error_code(), grpc::StatusCode::FAILED_PRECONDITION);
    const QString why = fromWire(stream->status().error_message());
    QVERIFY2(why.contains(QStringLiteral("version %1").arg(protocolVersion + 1))
                 && why.contains("v9.9")
                 && why.contains(QStringLiteral("version %1").arg(protocolVersion)),
             qPrintable(why));
}

void tst_Rpc::mirrorsEverySignalInOrder()
{
    QVERIFY(open());
    far()->setName("Other");
    far()->setBusy(true);
    emit far()->transientValue(feature, 1);
    far()->setError(ERROR_DEVICE_TIMEOUT, "info");
    emit far()->transientValue(feature, 2);
    far()->setSerial("S-2");
    far()->setConfiguration(other, 7);
    far()->setBusy(false);
    far()->setError(NO_DEVICE_ERROR, "");
    emit far()->executed(feature, true, 9);
    far()->setOpen(false);
    const QStringList expected{"name",        "busy 1",       "transient 1",     "error 32772",
                               "transient 2", "serial",       "configuration 4", "busy 0",
                               "error 0",     "executed 9 1", "open 0"};
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->all.size(), expected.size(), patience);
    QCOMPARE(m_heard->all, expected);
    QCOMPARE(m_device->name(), QString("Other"));
    QCOMPARE(m_device->serial(), QString("S-2"));
    QCOMPARE(m_device->configuration(other), QVariant(7));
    QCOMPARE(m_heard->results, QVariantList{9});
}

void tst_Rpc::mirrorsTheFeatureTable()
{
    QVERIFY(m_device->open());
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), patience);
    QCOMPARE(m_heard->take(), (QStringList{"features", "descriptor 4", "open 1"}));
    QVERIFY(m_device->hasFeature(feature));
    QVERIFY(m_device->hasFeature(other));
    QCOMPARE(m_device->descriptor(other), QVariant(QVariantHash{{"unit", "m"}}));

    far()->removeFeature(other);
    far()->addFeature(feature);
    far()->addFeature(Device::DF_LedBarEffect);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->all.size(), 3, patience);
    QVERIFY(!m_device->hasFeature(other));
    QVERIFY(m_device->hasFeature(Device::DF_LedBarEffect));
    far()->addFeature(other);
    QTRY_VERIFY_WITH_TIMEOUT(m_device->hasFeature(other), patience);
    QCOMPARE(m_device->descriptor(other), QVariant(QVariantHash{{"unit", "m"}}));
}

void tst_Rpc::keepsConfigurationsForTheFarDevice()
{
    const QVariant milliseconds = QVariant::fromValue(std::chrono::milliseconds(5));
    m_device->setConfiguration(feature, milliseconds);
    QVERIFY(open());
    QCOMPARE(far()->configuration(feature), milliseconds);
    m_device->setConfiguration(feature, QVariant());
    m_device->execute(feature);
    QTRY_VERIFY_WITH_TIMEOUT(far()->isBusy(), patience);
    QVERIFY(!far()->configuration(feature).isValid());
    QCOMPARE(m_heard->take().count("configuration 9"), 1);
}

void tst_Rpc::endsAnInstantRunOnceAndIdle()
{
    QVERIFY(open());
    far()->onExecute = [](FarDevice *device) { emit device->executed(feature, true, 5); };
    m_device->execute(feature);
    QVERIFY(m_device->isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
    QCOMPARE(m_heard->take(), (QStringList{"busy 1", "busy 0", "executed 9 1"}));
}

void tst_Rpc::endsRunsThatAreInterruptedWithoutAResult_data()
{
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("isOver");
    QTest::newRow("close, over by then") << true << true;
    QTest::newRow("close") << true << false;
    QTest::newRow("reset, over by then") << false << true;
}

void tst_Rpc::endsRunsThatAreInterruptedWithoutAResult()
{
    QFETCH(bool, closes);
    QFETCH(bool, isOver);
    QVERIFY(open());
    far()->running = !isOver;
    if (isOver)
        far()->onExecute = [](FarDevice *device) { emit device->executed(feature, true, 5); };
    m_device->execute(feature);
    if (closes)
        m_device->close();
    else
        m_device->reset();
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
    QTest::qWait(20);
    const QStringList heard = m_heard->take();
    QCOMPARE(heard.constLast(), QString("executed 9 0"));
    QVERIFY(!m_heard->results.constFirst().isValid());
    QCOMPARE(m_device->isOpen(), !closes);
    QVERIFY(!m_device->isBusy());
    QCOMPARE(m_heard->results.size(), 1);
}

void tst_Rpc::withdrawsAnOpening()
{
    m_device->open();
    m_device->close();
    QTRY_VERIFY_WITH_TIMEOUT(far() && far()->calls.contains("close"), patience);
    QTest::qWait(20);
    QVERIFY(!m_heard->all.contains("open 1"));
    QVERIFY(!m_device->isOpen());
    QVERIFY(open());
}

void tst_Rpc::tellsEachTimeWhyItDoesNotOpen_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<QString>("location");
    QTest::addColumn<int>("error");
    QTest::newRow("by the driver") << false << "here" << int(ERROR_DEVICE_CANT_OPEN);
    QTest::newRow("by the server") << true << "here" << int(ERROR_DEVICE_CANT_OPEN);
    QTest::newRow("not there") << false << "nowhere" << int(ERROR_DEVICE_DISCONNECTED);
}

void tst_Rpc::tellsEachTimeWhyItDoesNotOpen()
{
    QFETCH(bool, isTaken);
    QFETCH(QString, location);
    QFETCH(int, error);
    OpenGate gate;
    gate.isTaken = isTaken;
    FarDevice::refuses = true;
    const auto relent = qScopeGuard([] { FarDevice::refuses = false; });
    Pair pair(&gate);
    QTRY_VERIFY_WITH_TIMEOUT(pair.link.isReady(), patience);
    RemoteDevice device(FarDriver::record(location), FarDriver::record(location), &pair.link);
    int told = 0;
    connect(&device, &Device::errorChanged, &device,
            [&] { told += device.errorCode() == error ? 1 : 0; });
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(device.open());
        QTRY_COMPARE_WITH_TIMEOUT(told, i, patience);
    }
    QVERIFY(!device.isOpen());
}

void tst_Rpc::mapsActions()
{
    QVERIFY(open());
    // Ids of both sides come from one counter here: leave a gap.
    const int farId = far()->emitActionRequired("far-text");
    QTRY_VERIFY_WITH_TIMEOUT(!m_heard->action.isEmpty(), patience);
    QCOMPARE(m_heard->action, QString("far-text"));
    QVERIFY(m_heard->actionId != farId);
    m_device->confirmAction(m_heard->actionId + 100);
    m_device->confirmAction(m_heard->actionId);
    m_device->abortAction(m_heard->actionId);
    QTRY_COMPARE_WITH_TIMEOUT(far()->calls.size(), 2, patience);
    QCOMPARE(far()->calls,
             (QStringList{QStringLiteral("confirm %1").arg(farId),
                          QStringLiteral("abort %1").arg(farId)}));

    // An answer from within the signal.
    connect(m_device.get(), &Device::actionRequired, m_device.get(),
            [this](int id) { m_device->abortAction(id); });
    const int second = far()->emitActionRequired("far-text");
    QTRY_COMPARE_WITH_TIMEOUT(far()->calls.constLast(), QStringLiteral("abort %1").arg(second),
                              patience);
}

void tst_Rpc::saysWhatCannotTravel()
{
    QVERIFY(open());
    const QVariant stranger = QVariant::fromValue(QPersistentModelIndex());
    m_device->setConfiguration(feature, stranger);
    m_device->execute(feature);
    QCOMPARE(m_device->errorCode(), int(ERROR_DEVICE_INVALID_CONFIGURATION));
    QCOMPARE(m_device->errorAdditionalInfoTrId(), QString("qel-remote-value"));
    QCOMPARE(m_heard->results.size(), 1);

    m_device->setConfiguration(feature, QString(16 * 1024 * 1024, 'x'));
    m_device->execute(feature);
    QCOMPARE(m_heard->take().count("executed 9 0"), 2);

    m_device->setConfiguration(feature, QVariant());
    far()->onExecute = [&](FarDevice *device) { emit device->executed(feature, true, stranger); };
    m_device->execute(feature);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 3, patience);
    QVERIFY(m_heard->all.contains("executed 9 0"));
    QCOMPARE(m_device->errorCode(), int(ERROR_DEVICE_VENDOR_SPECIFIC));
}

void tst_Rpc::isDisconnectedWhenTheFarSideGoes()
{
    QVERIFY(open());
    m_device->execute(feature);
    QTRY_VERIFY_WITH_TIMEOUT(far() && far()->isBusy(), patience);
    m_heard->take();
    m_pair->server.reset();
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
    QCOMPARE(m_heard->take(), (QStringList{"open 0", "busy 0", "error 32777", "executed 9 0"}));
    QVERIFY(!m_device->open());
    m_device->close();
    m_device->update();
    m_device->reset();
    QCOMPARE(m_device->errorCode(), 0);
}

void tst_Rpc::isDisconnectedWhenTheFarSideIsSilent()
{
    QVERIFY(open());
    m_pair->link.setDeadline(std::chrono::milliseconds(50));
    QSignalSpy silent(&m_pair->link, &Link::silent);
    // The far side answers late, while the near one keeps turning.
    far()->onExecute = [this](FarDevice *) {
        QEventLoop loop;
        connect(m_device.get(), &Device::executed, &loop, &QEventLoop::quit);
        loop.exec();
    };
    m_device->execute(feature);
    QTRY_COMPARE_WITH_TIMEOUT(silent.count(), 1, patience);
    QCOMPARE(silent.at(0).at(0).toString(), QString("execute(DF_Orientation)"));
    QCOMPARE(m_heard->results.size(), 1);
    QCOMPARE(m_device->errorCode(), int(ERROR_DEVICE_DISCONNECTED));
    QCOMPARE(m_device->errorAdditionalInfoTrId(), QString("qel-remote-silent"));
}

void tst_Rpc::learnsThatThereIsNoSuchInstrument()
{
    RemoteDevice nowhere(FarDriver::record("nowhere"), FarDriver::record("nowhere"), &m_pair->link);
    QVERIFY(nowhere.open());
    QTRY_COMPARE_WITH_TIMEOUT(nowhere.errorCode(), int(ERROR_DEVICE_DISCONNECTED), patience);
    QVERIFY(!nowhere.isOpen());
}

void tst_Rpc::opensAgainWithTheNextConnection()
{
    QVERIFY(open());
    m_device->setConfiguration(feature, 3);
    Pair next;
    m_pair->server.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_device->isOpen(), patience);
    m_pair->server = std::move(next.server);
    next.link.disconnect();
    int ends[2];
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
    m_pair->server->serveSocket(ends[0]);
    m_pair->link.connectTo(grpc::CreateInsecureChannelFromFd("again", ends[1]));
    QTRY_VERIFY_WITH_TIMEOUT(m_pair->link.isReady(), patience);
    m_heard->take();
    QVERIFY(m_device->open());
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), patience);
    QCOMPARE(m_device->errorCode(), 0);
    QCOMPARE(far()->configuration(feature), QVariant(3));
    QVERIFY(m_device->hasFeature(other));
}

void tst_Rpc::mergesProgressOnly()
{
    QVERIFY(open());
    QList<double> steps;
    connect(m_device.get(), &Device::transientValue, this,
            [&](Device::DeviceFeature, const QVariant &value) {
                steps.append(value.toHash().value("progress").toDouble());
            });
    constexpr int many = 20000;
    for (int i = 1; i <= many; ++i)
        emit far()->transientValue(feature, QVariantHash{{"progress", double(i) / many}});
    for (int i = 0; i < 100; ++i)
        emit far()->executed(feature, true, i);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 100, patience);
    QVERIFY(std::is_sorted(steps.cbegin(), steps.cend()));
    QCOMPARE(steps.constLast(), 1.0);
    QVERIFY(steps.size() < many);
}

// In one call of the driver: nobody can hear of them before it returns.
void tst_Rpc::carriesEveryValueOfABurst()
{
    OpenGate gate;
    Line line(&gate);
    useLine(&line);
    m_device->open();
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isOpen(), patience);
    constexpr int many = 10000;
    far()->onExecute = [](FarDevice *device) {
        for (int i = 0; i < many; ++i)
            emit device->transientValue(feature, i);
        emit device->executed(feature, true, many);
    };
    int next = 0;
    connect(m_device.get(), &Device::transientValue, this,
            [&](Device::DeviceFeature, const QVariant &value) { next += value == next; });
    m_device->execute(feature);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results, QVariantList{many}, patience);
    QCOMPARE(next, many);
}

void tst_Rpc::deletesTheFarDeviceWithTheNearOne()
{
    QVERIFY(open());
    m_device.reset();
    QTRY_COMPARE_WITH_TIMEOUT(FarDevice::current, nullptr, patience);
}

void tst_Rpc::keepsAResultUntilTheApplicationHasIt_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("it has it") << "none" << false;
    QTest::newRow("it deletes the device over it") << "deleted" << false;
    QTest::newRow("the connection breaks just then") << "cut" << true;
    QTest::newRow("the device is gone just then") << "gone" << true;
    QTest::newRow("it has closed the device just then") << "closed" << true;
}

void tst_Rpc::keepsAResultUntilTheApplicationHasIt()
{
    QFETCH(QString, moment);
    QFETCH(bool, isKept);
    OpenGate gate;
    m_device.reset();
    m_pair = std::make_unique<Pair>(&gate);
    QTRY_VERIFY_WITH_TIMEOUT(m_pair->link.isReady(), patience);
    m_device =
        std::make_unique<RemoteDevice>(FarDriver::record(), FarDriver::record(), &m_pair->link);
    m_heard = std::make_unique<Heard>(m_device.get());
    m_device->setConfiguration(feature, 7);
    QVERIFY(open());
    m_device->execute(feature);
    QTRY_VERIFY_WITH_TIMEOUT(far() && far()->isBusy(), patience);
    // It is kept before anybody hears of it, as what it was run with.
    far()->setConfiguration(feature, 8);
    emit far()->executed(feature, true, 5);
    QCOMPARE(gate.results, (QMap<QString, QVariant>{{"1-7", 5}}));
    QPointer<Link> link = &m_pair->link;

    if (moment == "deleted")
        connect(m_device.get(), &Device::executed, link, [this] { m_device.reset(); });
    else if (moment == "closed")
        m_device->close();
    else if (moment == "gone")
        m_device.reset();
    else if (moment == "cut")
        m_pair->server.reset();
    if (moment == "none" || moment == "closed") {
        QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
        // Whatever else was to be said of it is said before this.
        m_device->update();
        QTRY_COMPARE_WITH_TIMEOUT(far()->calls.constLast(), QString("update"), patience);
        QCOMPARE(gate.results.isEmpty(), !isKept);
        m_device.reset();
    }
    if (isKept) {
        QTRY_COMPARE_WITH_TIMEOUT(gate.left, QStringList{"1-7"}, patience);
        QCOMPARE(gate.results.size(), 1);
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(!far(), patience);
        QVERIFY(gate.left.isEmpty());
        QVERIFY(gate.results.isEmpty());
    }
    m_device.reset();
    m_pair.reset();
}

void tst_Rpc::useLine(Line *line)
{
    m_device.reset();
    QTRY_VERIFY_WITH_TIMEOUT(line->link.isReady(), patience);
    m_device =
        std::make_unique<RemoteDevice>(FarDriver::record(), FarDriver::record(), &line->link);
    m_heard = std::make_unique<Heard>(m_device.get());
}

// A whole life, in which each side waits for the other.
void tst_Rpc::runThrough(Line *line)
{
    useLine(line);
    connect(m_device.get(), &Device::actionRequired, m_device.get(),
            [this](int id) { m_device->confirmAction(id); });
    m_device->open();
    QVERIFY(QTest::qWaitFor([this] { return m_device->isOpen(); }, patience));
    far()->onExecute = [](FarDevice *device) {
        device->setBusy(true);
        for (int i = 1; i <= 3; ++i)
            emit device->transientValue(feature, i);
        device->emitActionRequired("far-text");
    };
    far()->onConfirm = [](FarDevice *device) {
        emit device->transientValue(feature, 4);
        device->setBusy(false);
        emit device->executed(feature, true, 5);
    };
    m_device->setConfiguration(feature, 6);
    m_device->execute(feature);
    QVERIFY(QTest::qWaitFor([this] { return m_heard->results == QVariantList{5}; }, patience));
    m_device->update();
    QVERIFY(QTest::qWaitFor([] { return far()->calls.constLast() == "update"; }, patience));
}

void tst_Rpc::losesNothingWhereverTheConnectionIsCut()
{
    OpenGate gate;
    Line line(&gate);
    runThrough(&line);
    const QStringList undisturbed = m_heard->take();
    QVERIFY(undisturbed.size() >= 12);
    const qint64 lengths[] = {line.relay->carried[0], line.relay->carried[1]};
    int cuts = 0;
    for (int from : {0, 1}) {
        for (qint64 bytes = 0; bytes < lengths[from]; bytes += 41) {
            m_device.reset();
            QTRY_VERIFY_WITH_TIMEOUT(!far() && line.link.isReady(), patience);
            const Relay *former = line.relay.get();
            line.relay->cutAfter(from, bytes);
            runThrough(&line);
            if (QTest::currentTestFailed())
                qFatal("cut after %lld bytes from side %d", bytes, from);
            QCOMPARE(m_heard->take(), undisturbed);
            QCOMPARE(far()->calls.size(), 3);
            // What leaves must be heard, or the far device stays for the time of the grace.
            line.relay->cutAfter(from, std::numeric_limits<qint64>::max());
            m_device->update();
            QVERIFY(QTest::qWaitFor([] { return far()->calls.size() == 4; }, patience));
            cuts += line.relay.get() != former;
            QTRY_VERIFY_WITH_TIMEOUT(gate.results.isEmpty(), patience);
        }
    }
    QVERIFY2(cuts >= 20, qPrintable(QString::number(cuts)));
    QVERIFY(gate.left.isEmpty());
    m_device.reset();
}

void tst_Rpc::endsARunWhosePeerStaysAway()
{
    OpenGate gate;
    Line line(&gate, std::chrono::milliseconds(200));
    useLine(&line);
    QVERIFY(open());
    m_device->execute(feature);
    QTRY_VERIFY_WITH_TIMEOUT(far() && far()->isBusy(), patience);
    line.connects = false;
    far()->running = true;
    line.relay->cut();
    QTRY_VERIFY_WITH_TIMEOUT(far()->calls.contains("reset"), patience);
    // It does not obey, and its result comes too late for its peer, but is there.
    emit far()->executed(feature, true, 5);
    QTRY_COMPARE_WITH_TIMEOUT(FarDevice::current, nullptr, patience);
    QCOMPARE(gate.left, QStringList{"1-0"});
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
    QCOMPARE(m_heard->take(),
             (QStringList{"busy 1", "open 0", "busy 0", "error 32777", "executed 9 0"}));
    m_device.reset();
}

void tst_Rpc::showsObserversWhatOthersDo()
{
    OpenGate gate;
    Line line(&gate);
    useLine(&line);
    RemoteDevice early(FarDriver::record(), FarDriver::record(), &line.link);
    Heard heardEarly(&early);
    early.observe();
    QVERIFY(open());
    far()->setBusy(true);
    QTRY_VERIFY_WITH_TIMEOUT(early.isOpen() && early.isBusy(), patience);
    QCOMPARE(early.descriptor(other), m_device->descriptor(other));

    RemoteDevice late(FarDriver::record(), FarDriver::record(), &line.link);
    Heard heardLate(&late);
    late.observe();
    QTRY_VERIFY_WITH_TIMEOUT(late.isOpen() && late.isBusy() && late.hasFeature(other), patience);
    // It comes back by itself, too.
    line.relay->cut();
    far()->setName("Other");
    QTRY_VERIFY_WITH_TIMEOUT(early.name() == "Other" && late.name() == "Other", patience);
    QTest::qWait(20);
    heardEarly.take();
    late.setConfiguration(feature, 3);
    late.execute(feature);
    late.reset();
    emit far()->transientValue(feature, 1);
    far()->emitActionRequired("far-text");
    far()->setBusy(false);
    emit far()->executed(feature, true, 5);
    QTRY_COMPARE_WITH_TIMEOUT(heardLate.results, (QVariantList{QVariant(), 5}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(heardEarly.results, QVariantList{5}, patience);
    QCOMPARE(heardEarly.take(), (QStringList{"transient 1", "busy 0", "executed 9 1"}));
    QVERIFY(far()->calls.isEmpty());

    // Who operates afterwards is seen, and so is who has stopped.
    late.close();
    QVERIFY(!late.isOpen());
    m_device.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!early.isOpen(), patience);
    QVERIFY(late.open());
    QTRY_VERIFY_WITH_TIMEOUT(late.isOpen() && early.isOpen(), patience);
    QVERIFY(gate.left.size() <= 1);
}

void tst_Rpc::refusesAFeatureAndNoMore()
{
    OpenGate gate;
    gate.forbidden = other;
    Line line(&gate);
    useLine(&line);
    QVERIFY(open());
    m_device->execute(other);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results.size(), 1, patience);
    QCOMPARE(qtTrId(m_device->errorAdditionalInfoTrId().toUtf8()), QString("You may not."));
    QVERIFY(m_heard->take().contains("executed 4 0"));
    QVERIFY(far()->calls.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!m_device->isBusy(), patience);
    QVERIFY(m_device->isOpen());
    far()->onExecute = [](FarDevice *device) { emit device->executed(feature, true, 5); };
    m_device->execute(feature);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->results, (QVariantList{QVariant(), 5}), patience);
    m_device.reset();
}

void tst_Rpc::endsSessionsBeyondTheLimits_data()
{
    QTest::addColumn<int>("streams");
    QTest::addColumn<int>("calls");
    QTest::newRow("streams") << 0 << 1000;
    QTest::newRow("calls") << 1000 << 2;
}

void tst_Rpc::endsSessionsBeyondTheLimits()
{
    OpenGate gate;
    Line line(&gate);
    useLine(&line);
    QFETCH(int, streams);
    QFETCH(int, calls);
    gate.streams = streams;
    gate.calls = calls;
    m_device->open();
    m_device->update();
    QTRY_COMPARE_WITH_TIMEOUT(m_device->errorCode(), int(ERROR_DEVICE_DISCONNECTED), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!far(), patience);
    m_device.reset();
}

QTEST_GUILESS_MAIN(tst_Rpc)
#include "tst_rpc.moc"
