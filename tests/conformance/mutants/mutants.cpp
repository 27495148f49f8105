#include "mutants.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <QtCore/QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <thread>
#include <unistd.h>
#include <utility>

using namespace qel::devices;

namespace {

constexpr int tooLong = 400;

// Each class is wrong in the one way that its name says.

// Drivers.

struct NoName : GoodDriver
{
    QString name() override
    {
        return {};
    }
};

struct ForeignRecord : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return {DeviceInfo(DeviceInfo::Simulator, QStringLiteral("Good"), QStringLiteral("left"),
                           QStringLiteral("Reader"), QStringLiteral("G-1"))};
    }
};

struct ListedTwice : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return GoodDriver::availableDevices() + GoodDriver::availableDevices().mid(0, 1);
    }
};

struct CountingName : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        return {DeviceInfo(DeviceInfo::Simulator, name(), QStringLiteral("left"),
                           QStringLiteral("Reader %1").arg(++m_count), QStringLiteral("G-1"))};
    }
    int m_count = 0;
};

struct EnumerationHangs : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        for (;;)
            QThread::msleep(tooLong);
    }
};

struct EnumerationCloses : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        if (m_last && !m_last->isBusy())
            m_last->close();
        return GoodDriver::availableDevices();
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct HidesOpen : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        QList<DeviceInfo> records = GoodDriver::availableDevices();
        if (m_last && m_last->isOpen())
            records.removeOne(m_last->deviceInfo());
        return records;
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct EnumerationResets : GoodDriver
{
    QList<DeviceInfo> availableDevices() override
    {
        if (m_last && m_last->isBusy())
            m_last->reset();
        return GoodDriver::availableDevices();
    }
    Device *makeDevice(const DeviceInfo &info) override
    {
        m_last = GoodDriver::makeDevice(info);
        return m_last;
    }
    QPointer<Device> m_last;
};

struct AlwaysTheFirst : GoodDriver
{
    Device *createDevice(const DeviceInfo &info) override
    {
        const bool isKnown = availableDevices().contains(info);
        return isKnown ? makeDevice(availableDevices().constFirst()) : nullptr;
    }
};

struct HasParent : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        Device *device = GoodDriver::makeDevice(info);
        device->setParent(QCoreApplication::instance());
        return device;
    }
};

struct OtherSerial : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        Device *device = GoodDriver::makeDevice(info);
        device->setSerial(QStringLiteral("unknown"));
        return device;
    }
};

struct SharedObject : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        if (info.location() != QLatin1String("left"))
            return GoodDriver::makeDevice(info);
        if (!m_device)
            m_device = GoodDriver::makeDevice(info);
        return m_device;
    }
    QPointer<Device> m_device;
};

struct AnyLocation : GoodDriver
{
    Device *createDevice(const DeviceInfo &info) override
    {
        return makeDevice(info);
    }
};

struct AsksTheApplication : GoodDriver
{
    ~AsksTheApplication() override
    {
        if (!QCoreApplication::instance())
            qFatal("there is no application");
    }
};

// Identity, opening and closing.

struct EarlyFeatures : GoodDevice
{
    explicit EarlyFeatures(const DeviceInfo &info)
        : GoodDevice(info)
    {
        fillFeatures();
    }
};

struct Chatty : GoodDevice
{
    explicit Chatty(const DeviceInfo &info)
        : GoodDevice(info)
    {
        QTimer::singleShot(0, this, [this] { setName(QStringLiteral("Hello")); });
    }
};

struct NeverOpens : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool open() override
    {
        return true;
    }
};

struct WordlessRefusal : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool open() override
    {
        return false;
    }
};

struct LateFeatures : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        m_isOpening = false;
        setOpen(true);
        after(30, [this] { fillFeatures(); });
    }
};

struct OpensAgain : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool open() override
    {
        if (isOpen())
            fillFeatures();
        return GoodDevice::open();
    }
};

struct ClosingIsAnError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const bool wasIdle = isOpen() && !isBusy() && errorCode() == NO_DEVICE_ERROR;
        GoodDevice::close();
        if (wasIdle)
            setError(ERROR_DEVICE_DISCONNECTED, {});
    }
};

struct LateGoodbye : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        if (isOpen() && !isBusy())
            QTimer::singleShot(5, this, [this] { setName(name() + QLatin1Char('.')); });
        GoodDevice::close();
    }
};

struct CloseAlwaysEmits : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        if (!isOpen() && !m_isOpening)
            emit openChanged(false);
        GoodDevice::close();
    }
};

struct OpensAfterClose : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        if (!m_isOpening)
            GoodDevice::close();
    }
};

struct FeaturesOnce : GoodDevice
{
    using GoodDevice::GoodDevice;
    void fillFeatures() override
    {
        if (!std::exchange(m_isFilled, true))
            GoodDevice::fillFeatures();
    }
    void close() override
    {
        if (isOpen())
            removeFeature(DF_LedBarEffect);
        GoodDevice::close();
    }
    bool m_isFilled = false;
};

struct ErrorStaysAtOpen : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool open() override
    {
        const int code = errorCode();
        const bool accepted = GoodDevice::open();
        setError(code, {});
        return accepted;
    }
};

struct CloseClearsError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        setError(NO_DEVICE_ERROR, {});
        GoodDevice::close();
    }
};

struct OpensFourTimes : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool open() override
    {
        static int times = 0;
        if (isOpen() || times++ < 4)
            return GoodDevice::open();
        setError(ERROR_DEVICE_CANT_OPEN, {});
        return false;
    }
};

// Good, in an unusual way.

struct SlowClose : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        if (!isOpen() || m_isParking)
            return GoodDevice::close();
        m_isParking = true;
        const DeviceFeature feature = stopWork();
        setBusy(true);
        after(60, [this, feature] {
            m_isParking = false;
            setStatus({});
            if (feature != DF_None)
                emitEnding(feature, false, {});
        });
    }
    void executeImpl(DeviceFeature feature) override
    {
        if (m_isParking)
            refuse(feature, ERROR_DEVICE_NOT_READY, {});
        else
            GoodDevice::executeImpl(feature);
    }
    void reset() override
    {
        if (!m_isParking)
            GoodDevice::reset();
    }
    bool m_isParking = false;
};

// Features.

struct OffersNone : GoodDevice
{
    using GoodDevice::GoodDevice;
    void fillFeatures() override
    {
        GoodDevice::fillFeatures();
        addFeature(DF_None);
    }
};

struct RowsAsText : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant descriptorOf(DeviceFeature feature) const override
    {
        QVariantHash descriptor = GoodDevice::descriptorOf(feature).toHash();
        if (feature == DF_LuminescenceMeasurement)
            descriptor.insert(QStringLiteral("rows"), QStringLiteral("2"));
        return descriptor;
    }
};

struct OtherDefault : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant descriptorOf(DeviceFeature feature) const override
    {
        QVariantHash descriptor = GoodDevice::descriptorOf(feature).toHash();
        if (feature != DF_LedBarEffect)
            return descriptor;
        QVariantHash settings = descriptor.value(QStringLiteral("settings")).toHash();
        QVariantHash state = settings.value(QStringLiteral("state")).toHash();
        state.insert(QStringLiteral("default"), 0);
        settings.insert(QStringLiteral("state"), state);
        descriptor.insert(QStringLiteral("settings"), settings);
        return descriptor;
    }
};

// Runs.

struct TwoEndings : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        GoodDevice::emitEnding(feature, ok, result);
        if (feature == DF_ReferenceNumber)
            GoodDevice::emitEnding(feature, ok, result);
    }
};

struct NoEnding : GoodDevice
{
    using GoodDevice::GoodDevice;
    void start(DeviceFeature feature) override
    {
        if (feature == DF_ReferenceNumber)
            setBusy(true);
        else
            GoodDevice::start(feature);
    }
    void close() override
    {
        if (isOpen())
            qInfo("closed in good order");
        GoodDevice::close();
    }
};

struct OtherFeature : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        GoodDevice::emitEnding(feature == DF_ReferenceNumber ? DF_FirmwareInfo : feature, ok,
                               result);
    }
};

struct BusyAtEnding : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        if (m_running != DF_AmbientTemperature)
            return GoodDevice::finish(ok);
        const DeviceFeature feature = stopWork();
        emitEnding(feature, ok, resultOf(feature));
        setBusy(false);
    }
};

struct LateProgress : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        GoodDevice::emitEnding(feature, ok, result);
        if (feature == DF_ReferenceNumber)
            emit transientValue(feature, 1.0);
    }
};

struct NeverBusy : GoodDevice
{
    using GoodDevice::GoodDevice;
    void start(DeviceFeature feature) override
    {
        if (feature != DF_AmbientTemperature)
            return GoodDevice::start(feature);
        m_running = feature;
        after(2, [this] { finish(true); });
    }
};

struct TemperatureAsText : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        const QVariant result = GoodDevice::resultOf(feature);
        return feature == DF_AmbientTemperature ? result.toString() : result;
    }
};

struct ShortRead : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        QVariant result = GoodDevice::resultOf(feature);
        if (feature != DF_LuminescenceMeasurement)
            return result;
        QVariantHash hash = result.toHash();
        hash.insert(QStringLiteral("values"),
                    QVariantList{QVariant::fromValue(QVector<double>(5))});
        return hash;
    }
};

struct ErrorAtSuccess : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        if (ok && feature == DF_Calibration)
            setError(ERROR_DEVICE_VENDOR_SPECIFIC, {});
        GoodDevice::emitEnding(feature, ok, result);
    }
};

struct ResultOfFailure : GoodDevice
{
    using GoodDevice::GoodDevice;
    void refuse(DeviceFeature feature, int code, const QString &details) override
    {
        setError(code, details);
        emitEnding(feature, false, 0.0);
    }
};

// Allows what is wrong in one way.
template<typename Lenience>
struct Lenient : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool allows(const QVariantHash &rules, const QVariant &value) const override
    {
        return Lenience()(rules, value) || GoodDevice::allows(rules, value);
    }
};

struct AnyTime
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<std::chrono::milliseconds>();
    }
};

struct TimeWithinLimits
{
    bool operator()(const QVariantHash &rules, const QVariant &value) const
    {
        const auto time = value.value<std::chrono::milliseconds>().count();
        return value.userType() == qMetaTypeId<std::chrono::milliseconds>()
            && time >= rules.value(QStringLiteral("minimum")).toInt()
            && time <= rules.value(QStringLiteral("maximum")).toInt();
    }
};

struct NumberAsText
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == QMetaType::QString;
    }
};

struct AnyList
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == QMetaType::QVariantList;
    }
};

struct FirstWavelengthOnly
{
    bool operator()(const QVariantHash &rules, const QVariant &value) const
    {
        const auto list = value.value<QList<int>>();
        return value.userType() == qMetaTypeId<QList<int>>() && !list.isEmpty()
            && rules.value(QStringLiteral("choices")).toList().contains(list.constFirst());
    }
};

struct AnyBits
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<LedBarEffect_config::Modes>();
    }
};

struct AnyEffect
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<LedBarEffect_Effect>();
    }
};

struct AnyWellCount
{
    bool operator()(const QVariantHash &, const QVariant &value) const
    {
        return value.userType() == qMetaTypeId<QVector<bool>>();
    }
};

struct OtherRefusal : GoodDevice
{
    using GoodDevice::GoodDevice;
    void refuse(DeviceFeature feature, int, const QString &details) override
    {
        GoodDevice::refuse(feature, ERROR_DEVICE_NOT_READY, details);
    }
};

struct ErrorStaysAtRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void executeImpl(DeviceFeature feature) override
    {
        m_old = errorCode();
        GoodDevice::executeImpl(feature);
    }
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        if (ok)
            setError(m_old, {});
        GoodDevice::emitEnding(feature, ok, result);
    }
    int m_old = 0;
};

struct WritesSettings : GoodDevice
{
    using GoodDevice::GoodDevice;
    void start(DeviceFeature feature) override
    {
        if (feature == DF_LedBarEffect)
            setConfiguration(feature, LedBarEffect_config());
        GoodDevice::start(feature);
    }
};

struct FallingProgress : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reportProgress(double progress) override
    {
        GoodDevice::reportProgress(1 - progress);
    }
};

struct Percents : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reportProgress(double progress) override
    {
        GoodDevice::reportProgress(100 * progress);
    }
};

struct SecondRunTakesOver : GoodDevice
{
    using GoodDevice::GoodDevice;
    void executeImpl(DeviceFeature feature) override
    {
        if (m_running == DF_None)
            GoodDevice::executeImpl(feature);
        else
            start(feature);
    }
};

// Requests for action.

struct PlainRequest : GoodDevice
{
    using GoodDevice::GoodDevice;
    void askForEmptySlot() override
    {
        emitActionRequired(QStringLiteral("Empty the slot!"));
    }
};

struct IgnoresConfirmation : GoodDevice
{
    using GoodDevice::GoodDevice;
    void confirmActionImpl(int) override { }
};

struct AbortIsAnError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void abortActionImpl(int actionId) override
    {
        if (m_request < 0 || actionId != m_request)
            return;
        const DeviceFeature feature = stopWork();
        setBusy(false);
        setError(ERROR_DEVICE_NOT_READY, {});
        emitEnding(feature, false, {});
    }
};

struct AnyAnswer : GoodDevice
{
    using GoodDevice::GoodDevice;
    void confirmActionImpl(int) override
    {
        GoodDevice::confirmActionImpl(m_request);
    }
};

struct HangsOnStrayAnswer : GoodDevice
{
    using GoodDevice::GoodDevice;
    void confirmActionImpl(int actionId) override
    {
        while (m_request >= 0 && actionId != m_request)
            QThread::msleep(tooLong);
        GoodDevice::confirmActionImpl(actionId);
    }
};

struct LearnsIdLate : GoodDevice
{
    explicit LearnsIdLate(const DeviceInfo &info)
        : GoodDevice(info)
    {
        connect(this, &Device::actionRequired, this, [this] { m_request = -1; });
    }
    void askForEmptySlot() override
    {
        m_request = emitActionRequired(QStringLiteral("good-empty-slot"));
    }
};

// Errors.

struct OddCode : GoodDevice
{
    using GoodDevice::GoodDevice;
    void refuse(DeviceFeature feature, int code, const QString &details) override
    {
        GoodDevice::refuse(feature, code == ERROR_DEVICE_NOT_READY ? 0x9000 : code, details);
    }
};

struct PlainDetails : GoodDevice
{
    using GoodDevice::GoodDevice;
    void refuse(DeviceFeature feature, int code, const QString &) override
    {
        GoodDevice::refuse(feature, code, QStringLiteral("This did not work."));
    }
};

// Life cycle.

struct CloseForgetsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        stopWork();
        GoodDevice::close();
    }
};

struct EndingBeforeFlags : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = stopWork();
        if (feature != DF_None)
            emitEnding(feature, false, {});
        GoodDevice::close();
    }
};

struct SecondEndingAfterClose : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = m_running;
        GoodDevice::close();
        if (feature != DF_None)
            after(2, [this, feature] { emitEnding(feature, false, {}); });
    }
};

struct ResetCloses : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        if (m_running != DF_None)
            close();
        GoodDevice::reset();
    }
};

struct ResetForgetsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        stopWork();
        GoodDevice::reset();
    }
};

struct ResetEndsNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        const bool wasIdle = isOpen() && m_running == DF_None;
        GoodDevice::reset();
        if (wasIdle)
            emitEnding(DF_AmbientTemperature, false, {});
    }
};

struct ResetOpens : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        GoodDevice::reset();
        open();
    }
};

struct UpdateEnds : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        if (isOpen() && !isBusy())
            emitEnding(DF_AmbientTemperature, true, 20.0);
    }
};

struct ClosesInDestructor : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~ClosesInDestructor() override
    {
        close();
    }
};

struct DiesWhileOpening : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~DiesWhileOpening() override
    {
        if (m_isOpening)
            qFatal("deleted too early");
    }
};

struct DiesOfDeferredDeletion : GoodDevice
{
    using GoodDevice::GoodDevice;
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::DeferredDelete)
            qFatal("deleted by a receiver");
        return GoodDevice::event(event);
    }
};

struct LeavesFile : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        if (::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0)
            qFatal("there is no /dev/null");
        GoodDevice::connected();
    }
};

struct LeavesThread : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        std::thread([] {
            for (;;)
                QThread::sleep(1);
        }).detach();
        GoodDevice::connected();
    }
};

// Time and threads.

struct BlockingUpdate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        QThread::msleep(tooLong);
    }
};

struct BlockingSlot : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        if (m_running == DF_AmbientTemperature)
            QThread::msleep(tooLong);
        GoodDevice::finish(ok);
    }
};

struct OtherThread : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reportProgress(double progress) override
    {
        std::thread([this, progress] { GoodDevice::reportProgress(progress); }).join();
    }
};

// Results.

// Reads other values from the plate.
template<typename Change>
struct Misread : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVector<double> readPlate(const QVector<bool> &selected) const override
    {
        QVector<double> values = GoodDevice::readPlate(selected);
        Change()(&values);
        return values;
    }
};

struct ToInfinity
{
    void operator()(QVector<double> *values) const
    {
        std::replace(values->begin(), values->end(), 50.0, qInf());
    }
};

struct AboveMaximum
{
    void operator()(QVector<double> *values) const
    {
        std::replace(values->begin(), values->end(), 50.0, 100.5);
    }
};

struct ToNothing
{
    void operator()(QVector<double> *values) const
    {
        values->fill(qQNaN());
    }
};

struct ToEverything
{
    void operator()(QVector<double> *values) const
    {
        values->fill(50.0);
    }
};

// A plate of two rows and three columns, counted by columns.
struct Transposed
{
    void operator()(QVector<double> *values) const
    {
        const QVector<double> v = *values;
        *values = {v[0], v[2], v[4], v[1], v[3], v[5]};
    }
};

struct ColdBlooded : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        return feature == DF_AmbientTemperature ? QVariant(-273.2) : GoodDevice::resultOf(feature);
    }
};

// Says something else of a measurement.
template<typename Change>
struct Misreport : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariantHash measured(DeviceFeature feature) const override
    {
        QVariantHash result = GoodDevice::measured(feature);
        Change()(&result, feature);
        return result;
    }
};

struct OldTemperature
{
    void operator()(QVariantHash *result, Device::DeviceFeature) const
    {
        result->insert(QStringLiteral("temperature"), qQNaN());
    }
};

struct SortedWavelengths
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("wavelengths");
        auto list = result->value(key).value<QList<int>>();
        std::sort(list.begin(), list.end());
        if (feature == Device::DF_AbsorbanceMeasurement)
            result->insert(key, QVariant::fromValue(list));
    }
};

struct EachWavelengthOnce
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("wavelengths");
        auto list = result->value(key).value<QList<int>>();
        auto reads = result->value(QStringLiteral("values")).toList();
        if (feature != Device::DF_AbsorbanceMeasurement || list.size() < 2
            || list.constFirst() != list.constLast())
            return;
        list.removeLast();
        reads.removeLast();
        result->insert(key, QVariant::fromValue(list));
        result->insert(QStringLiteral("values"), reads);
    }
};

struct FixedTime
{
    void operator()(QVariantHash *result, Device::DeviceFeature feature) const
    {
        const QString key = QStringLiteral("integrationTime");
        if (feature == Device::DF_LuminescenceMeasurement
            && result->value(key).value<std::chrono::milliseconds>().count() == 20)
            result->insert(key, QVariant::fromValue(std::chrono::milliseconds(10)));
    }
};

struct StoredResult
{
    void operator()(QVariantHash *result, Device::DeviceFeature) const
    {
        const QString key = QStringLiteral("startedAt");
        result->insert(key, result->value(key).toDateTime().addDays(-1));
    }
};

struct AxesMixedUp : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        return feature == DF_Orientation
            ? QVariantHash(Orientation_result(9.81F, 0, 0, Orientation_result::Side::Top))
            : GoodDevice::resultOf(feature);
    }
};

struct AccelerationInG : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant resultOf(DeviceFeature feature) const override
    {
        if (feature != DF_Orientation)
            return GoodDevice::resultOf(feature);
        return QVariantHash(Orientation_result(0.0F, 0.0F, 1.0F, Orientation_result::Side::Top));
    }
};

struct SecondDefault : GoodDevice
{
    using GoodDevice::GoodDevice;
    QVariant setTo(DeviceFeature feature, const char *key) const override
    {
        if (!m_configuration.contains(QLatin1String(key)) && qstrcmp(key, "integrationTime") == 0)
            return QVariant::fromValue(std::chrono::milliseconds(200));
        return GoodDevice::setTo(feature, key);
    }
};

struct ReadsSettingsLate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        m_configuration = configuration(m_running).toHash();
        GoodDevice::finish(ok);
    }
};

// Several devices.

struct SharedBusy : GoodDevice
{
    explicit SharedBusy(const DeviceInfo &info)
        : GoodDevice(info)
    {
        all += this;
    }
    void start(DeviceFeature feature) override
    {
        for (const auto &device : qAsConst(all)) {
            if (device && device != this && device->isOpen())
                device->setBusy(true);
        }
        GoodDevice::start(feature);
    }
    static QVector<QPointer<SharedBusy>> all;
};
QVector<QPointer<SharedBusy>> SharedBusy::all;

struct OneAtATime : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        static QPointer<OneAtATime> last;
        if (last && last != this && last->isOpen())
            last->close();
        last = this;
        GoodDevice::connected();
    }
};

struct ForgetsSettings : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        setConfiguration(DF_LedBarEffect, {});
        GoodDevice::connected();
    }
};

// Runs, once more.

struct QueuesSecondRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void executeImpl(DeviceFeature feature) override
    {
        if (m_running != DF_None)
            m_queued = feature;
        else
            GoodDevice::executeImpl(feature);
    }
    void finish(bool ok) override
    {
        GoodDevice::finish(ok);
        const DeviceFeature next = std::exchange(m_queued, DF_None);
        if (next != DF_None)
            GoodDevice::executeImpl(next);
    }
    DeviceFeature m_queued = DF_None;
};

struct OtherRefusalWhenBusy : GoodDevice
{
    using GoodDevice::GoodDevice;
    void refuse(DeviceFeature feature, int code, const QString &details) override
    {
        const int other = code == ERROR_DEVICE_NOT_READY ? int(ERROR_DEVICE_VENDOR_SPECIFIC) : code;
        GoodDevice::refuse(feature, other, details);
    }
};

struct WordlessFailure : GoodDevice
{
    using GoodDevice::GoodDevice;
    void start(DeviceFeature feature) override
    {
        if (feature == DF_ReferenceNumber)
            emitEnding(feature, false, {});
        else
            GoodDevice::start(feature);
    }
};

struct OldError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void executeImpl(DeviceFeature feature) override
    {
        if (feature == DF_ReferenceNumber && m_running == DF_None)
            emitEnding(feature, false, {});
        else
            GoodDevice::executeImpl(feature);
    }
};

struct BeginsInTheMiddle : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reportProgress(double progress) override
    {
        GoodDevice::reportProgress(0.5 + progress / 2);
    }
};

struct IdleValues : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        GoodDevice::connected();
        QTimer::singleShot(1, this, [this] { emit transientValue(DF_AmbientTemperature, 20.0); });
    }
};

struct FeatureVanishes : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        if (m_running == DF_AmbientTemperature)
            removeFeature(DF_AmbientTemperature);
        GoodDevice::finish(ok);
    }
};

struct ForgetsNextRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void finish(bool ok) override
    {
        const bool forgets = m_running == DF_AmbientTemperature;
        GoodDevice::finish(ok);
        if (forgets)
            stopWork();
    }
};

struct ResetKeepsRequest : GoodDevice
{
    using GoodDevice::GoodDevice;
    void reset() override
    {
        const int request = m_request;
        GoodDevice::reset();
        m_request = request;
    }
};

struct CalibratesUnasked : GoodDevice
{
    using GoodDevice::GoodDevice;
    void askForEmptySlot() override
    {
        step();
    }
};

struct LeaksWhenDeletedOpen : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~LeaksWhenDeletedOpen() override
    {
        if (isOpen() && ::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0)
            qFatal("there is no /dev/null");
    }
};

struct UpdateEndsRun : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        if (m_running != DF_None)
            finish(false);
    }
};

struct UpdateClearsError : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        setError(NO_DEVICE_ERROR, {});
    }
};

struct LateAnswer : GoodDevice
{
    using GoodDevice::GoodDevice;
    void close() override
    {
        const DeviceFeature feature = m_running;
        GoodDevice::close();
        const int late = 120;
        if (feature != DF_None)
            after(late, [this, feature] { emitEnding(feature, false, {}); });
    }
};

struct NestedLoopInCall : GoodDevice
{
    using GoodDevice::GoodDevice;
    void update() override
    {
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
};

struct NestedLoopInSlot : NestedLoopInCall
{
    using NestedLoopInCall::NestedLoopInCall;
    void update() override { }
    void finish(bool ok) override
    {
        if (m_running == DF_AmbientTemperature)
            NestedLoopInCall::update();
        if (m_running != DF_None)
            GoodDevice::finish(ok);
    }
};

// Surroundings.

template<void (*Change)()>
struct Disturbing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void connected() override
    {
        Change();
        GoodDevice::connected();
    }
};

void setLocale()
{
    QLocale::setDefault(QLocale(QLocale::German));
}

void changeFolder()
{
    QDir::setCurrent(QStringLiteral("/"));
}

void setVariable()
{
    qputenv("GOOD_READER", "yes");
}

void takeSignal()
{
    std::signal(SIGUSR1, [](int) {});
}

void takeMessages()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        std::fputs(qPrintable(text), stderr);
    });
}

void print()
{
    std::puts("Here I am.");
}

struct RunLeavesFile : GoodDevice
{
    using GoodDevice::GoodDevice;
    ~RunLeavesFile() override
    {
        for (const int file : qAsConst(m_files))
            ::close(file);
    }
    void start(DeviceFeature feature) override
    {
        if (feature == DF_AmbientTemperature)
            m_files += ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        GoodDevice::start(feature);
    }
    QVector<int> m_files;
};

// By hand.

struct SeesNoPlate : GoodDevice
{
    using GoodDevice::GoodDevice;
    void slotChanged() override { }
};

struct AlwaysEmpty : GoodDevice
{
    using GoodDevice::GoodDevice;
    void emitEnding(DeviceFeature feature, bool ok, const QVariant &result) override
    {
        const bool isSlot = ok && feature == DF_PlateDetection;
        GoodDevice::emitEnding(feature, ok,
                               isSlot ? QVariant::fromValue(SlotStatus::Empty) : result);
    }
};

struct NoticesNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        if (const DeviceFeature feature = stopWork())
            refuse(feature, ERROR_DEVICE_CANT_WRITE, {});
    }
};

// Good, where nothing but silence tells that the instrument is gone.
struct HearsNothing : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        const DeviceFeature feature = stopWork();
        setBusy(false);
        if (feature != DF_None)
            refuse(feature, ERROR_DEVICE_TIMEOUT, {});
    }
};

struct GoesWithoutWord : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        close();
    }
};

struct ForgetsRunWhenUnplugged : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        stopWork();
        GoodDevice::unplugged();
    }
};

struct EndsBeforeClosed : GoodDevice
{
    using GoodDevice::GoodDevice;
    void unplugged() override
    {
        if (const DeviceFeature feature = stopWork())
            refuse(feature, ERROR_DEVICE_DISCONNECTED, {});
        GoodDevice::unplugged();
    }
};

struct ListsTheAbsent : GoodDriver
{
    bool isThere() override
    {
        return true;
    }
};

struct MissesReturn : GoodDriver
{
    bool isThere() override
    {
        m_isGone |= !GoodDriver::isThere();
        return !m_isGone;
    }
    bool m_isGone = false;
};

template<typename MutantDevice>
struct DriverOf : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        return new MutantDevice(info);
    }
};

struct Mutant
{
    const char *name;
    std::shared_ptr<DeviceDriver> (*make)();
};

template<typename MutantDriver>
std::shared_ptr<DeviceDriver> makeDriver()
{
    return std::make_shared<MutantDriver>();
}

template<typename MutantDevice>
std::shared_ptr<DeviceDriver> makeDriverOf()
{
    return std::make_shared<DriverOf<MutantDevice>>();
}

} // namespace

// The build makes a plugin of each.
static const Mutant mutants[] = {
    {"0-hears-nothing", makeDriverOf<HearsNothing>},
    {"0-slow-close", makeDriverOf<SlowClose>},
    {"104-no-driver", makeDriver<GoodDriver>},
    {"105-registers-once", makeDriver<GoodDriver>},
    {"201-no-name", makeDriver<NoName>},
    {"202-foreign-record", makeDriver<ForeignRecord>},
    {"202-enumeration-hangs", makeDriver<EnumerationHangs>},
    {"203-listed-twice", makeDriver<ListedTwice>},
    {"204-counting-name", makeDriver<CountingName>},
    {"205-enumeration-closes", makeDriver<EnumerationCloses>},
    {"206-hides-open", makeDriver<HidesOpen>},
    {"207-enumeration-resets", makeDriver<EnumerationResets>},
    {"301-early-features", makeDriverOf<EarlyFeatures>},
    {"301-has-parent", makeDriver<HasParent>},
    {"302-other-serial", makeDriver<OtherSerial>},
    {"302-always-the-first", makeDriver<AlwaysTheFirst>},
    {"303-shared-object", makeDriver<SharedObject>},
    {"304-any-location", makeDriver<AnyLocation>},
    {"305-chatty", makeDriverOf<Chatty>},
    {"306-one-at-a-time", makeDriverOf<OneAtATime>},
    {"306-shared-busy", makeDriverOf<SharedBusy>},
    {"401-never-opens", makeDriverOf<NeverOpens>},
    {"401-wordless-refusal", makeDriverOf<WordlessRefusal>},
    {"402-late-features", makeDriverOf<LateFeatures>},
    {"403-opens-again", makeDriverOf<OpensAgain>},
    {"404-closing-is-an-error", makeDriverOf<ClosingIsAnError>},
    {"405-late-goodbye", makeDriverOf<LateGoodbye>},
    {"406-close-always-emits", makeDriverOf<CloseAlwaysEmits>},
    {"407-opens-after-close", makeDriverOf<OpensAfterClose>},
    {"408-features-once", makeDriverOf<FeaturesOnce>},
    {"409-close-clears-error", makeDriverOf<CloseClearsError>},
    {"409-error-stays-at-open", makeDriverOf<ErrorStaysAtOpen>},
    {"410-opens-four-times", makeDriverOf<OpensFourTimes>},
    {"411-forgets-settings", makeDriverOf<ForgetsSettings>},
    {"501-offers-none", makeDriverOf<OffersNone>},
    {"502-rows-as-text", makeDriverOf<RowsAsText>},
    {"503-other-default", makeDriverOf<OtherDefault>},
    {"601-no-ending", makeDriverOf<NoEnding>},
    {"601-other-feature", makeDriverOf<OtherFeature>},
    {"601-two-endings", makeDriverOf<TwoEndings>},
    {"602-busy-at-ending", makeDriverOf<BusyAtEnding>},
    {"602-late-progress", makeDriverOf<LateProgress>},
    {"603-never-busy", makeDriverOf<NeverBusy>},
    {"604-error-at-success", makeDriverOf<ErrorAtSuccess>},
    {"604-short-read", makeDriverOf<ShortRead>},
    {"604-temperature-as-text", makeDriverOf<TemperatureAsText>},
    {"605-result-of-failure", makeDriverOf<ResultOfFailure>},
    {"606-other-refusal", makeDriverOf<OtherRefusal>},
    {"606-any-bits", makeDriverOf<Lenient<AnyBits>>},
    {"606-any-effect", makeDriverOf<Lenient<AnyEffect>>},
    {"606-any-list", makeDriverOf<Lenient<AnyList>>},
    {"606-any-time", makeDriverOf<Lenient<AnyTime>>},
    {"606-any-well-count", makeDriverOf<Lenient<AnyWellCount>>},
    {"606-first-wavelength-only", makeDriverOf<Lenient<FirstWavelengthOnly>>},
    {"606-ignores-step", makeDriverOf<Lenient<TimeWithinLimits>>},
    {"606-number-as-text", makeDriverOf<Lenient<NumberAsText>>},
    {"607-error-stays-at-run", makeDriverOf<ErrorStaysAtRun>},
    {"608-writes-settings", makeDriverOf<WritesSettings>},
    {"609-falling-progress", makeDriverOf<FallingProgress>},
    {"609-percents", makeDriverOf<Percents>},
    {"610-second-run-takes-over", makeDriverOf<SecondRunTakesOver>},
    {"610-other-refusal", makeDriverOf<OtherRefusalWhenBusy>},
    {"610-queues-second-run", makeDriverOf<QueuesSecondRun>},
    {"611-old-error", makeDriverOf<OldError>},
    {"611-wordless-failure", makeDriverOf<WordlessFailure>},
    {"612-begins-in-the-middle", makeDriverOf<BeginsInTheMiddle>},
    {"613-idle-values", makeDriverOf<IdleValues>},
    {"614-feature-vanishes", makeDriverOf<FeatureVanishes>},
    {"615-forgets-next-run", makeDriverOf<ForgetsNextRun>},
    {"701-plain-request", makeDriverOf<PlainRequest>},
    {"702-ignores-confirmation", makeDriverOf<IgnoresConfirmation>},
    {"703-abort-is-an-error", makeDriverOf<AbortIsAnError>},
    {"704-any-answer", makeDriverOf<AnyAnswer>},
    {"704-hangs-on-stray-answer", makeDriverOf<HangsOnStrayAnswer>},
    {"705-learns-id-late", makeDriverOf<LearnsIdLate>},
    {"706-reset-keeps-request", makeDriverOf<ResetKeepsRequest>},
    {"707-calibrates-unasked", makeDriverOf<CalibratesUnasked>},
    {"801-odd-code", makeDriverOf<OddCode>},
    {"802-plain-details", makeDriverOf<PlainDetails>},
    {"901-close-forgets-run", makeDriverOf<CloseForgetsRun>},
    {"901-ending-before-flags", makeDriverOf<EndingBeforeFlags>},
    {"901-second-ending-after-close", makeDriverOf<SecondEndingAfterClose>},
    {"902-reset-closes", makeDriverOf<ResetCloses>},
    {"902-reset-forgets-run", makeDriverOf<ResetForgetsRun>},
    {"903-reset-ends-nothing", makeDriverOf<ResetEndsNothing>},
    {"904-reset-opens", makeDriverOf<ResetOpens>},
    {"905-update-ends", makeDriverOf<UpdateEnds>},
    {"906-closes-in-destructor", makeDriverOf<ClosesInDestructor>},
    {"906-dies-while-opening", makeDriverOf<DiesWhileOpening>},
    {"907-dies-of-deferred-deletion", makeDriverOf<DiesOfDeferredDeletion>},
    {"908-leaves-file", makeDriverOf<LeavesFile>},
    {"908-leaks-when-deleted-open", makeDriverOf<LeaksWhenDeletedOpen>},
    {"908-leaves-thread", makeDriverOf<LeavesThread>},
    {"909-asks-the-application", makeDriver<AsksTheApplication>},
    {"910-update-clears-error", makeDriverOf<UpdateClearsError>},
    {"910-update-ends-run", makeDriverOf<UpdateEndsRun>},
    {"911-late-answer", makeDriverOf<LateAnswer>},
    {"1001-blocking-update", makeDriverOf<BlockingUpdate>},
    {"1002-blocking-slot", makeDriverOf<BlockingSlot>},
    {"1003-other-thread", makeDriverOf<OtherThread>},
    {"1004-nested-loop-in-call", makeDriverOf<NestedLoopInCall>},
    {"1004-nested-loop-in-slot", makeDriverOf<NestedLoopInSlot>},
    {"1101-above-maximum", makeDriverOf<Misread<AboveMaximum>>},
    {"1101-cold-blooded", makeDriverOf<ColdBlooded>},
    {"1101-infinite", makeDriverOf<Misread<ToInfinity>>},
    {"1101-no-temperature", makeDriverOf<Misreport<OldTemperature>>},
    {"1102-nothing-measured", makeDriverOf<Misread<ToNothing>>},
    {"1102-selection-ignored", makeDriverOf<Misread<ToEverything>>},
    {"1102-wells-by-columns", makeDriverOf<Misread<Transposed>>},
    {"1103-each-wavelength-once", makeDriverOf<Misreport<EachWavelengthOnce>>},
    {"1103-fixed-time", makeDriverOf<Misreport<FixedTime>>},
    {"1103-sorted-wavelengths", makeDriverOf<Misreport<SortedWavelengths>>},
    {"1104-stored-result", makeDriverOf<Misreport<StoredResult>>},
    {"1105-acceleration-in-g", makeDriverOf<AccelerationInG>},
    {"1106-axes-mixed-up", makeDriverOf<AxesMixedUp>},
    {"1201-second-default", makeDriverOf<SecondDefault>},
    {"1202-reads-settings-late", makeDriverOf<ReadsSettingsLate>},
    {"1301-sets-locale", makeDriverOf<Disturbing<setLocale>>},
    {"1302-changes-folder", makeDriverOf<Disturbing<changeFolder>>},
    {"1303-sets-variable", makeDriverOf<Disturbing<setVariable>>},
    {"1304-takes-signal", makeDriverOf<Disturbing<takeSignal>>},
    {"1305-takes-messages", makeDriverOf<Disturbing<takeMessages>>},
    {"1306-prints", makeDriverOf<Disturbing<print>>},
    {"1307-quits", makeDriverOf<Disturbing<QCoreApplication::quit>>},
    {"1308-run-leaves-file", makeDriverOf<RunLeavesFile>},
    {"1401-always-empty", makeDriverOf<AlwaysEmpty>},
    {"1401-sees-no-plate", makeDriverOf<SeesNoPlate>},
    {"1402-goes-without-word", makeDriverOf<GoesWithoutWord>},
    {"1402-notices-nothing", makeDriverOf<NoticesNothing>},
    {"1403-ends-before-closed", makeDriverOf<EndsBeforeClosed>},
    {"1403-forgets-run", makeDriverOf<ForgetsRunWhenUnplugged>},
    {"1404-lists-the-absent", makeDriver<ListsTheAbsent>},
    {"1405-misses-return", makeDriver<MissesReturn>},
};

QStringList mutantNames()
{
    QStringList names;
    for (const Mutant &mutant : mutants)
        names += QLatin1String(mutant.name);
    return names;
}

std::shared_ptr<DeviceDriver> makeDriver(const QString &name)
{
    for (const Mutant &mutant : mutants) {
        if (QLatin1String(mutant.name) == name)
            return mutant.make();
    }
    return std::make_shared<GoodDriver>();
}
