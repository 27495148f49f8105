#include "mutants_p.h"

#include <unistd.h>
#include <utility>

using namespace qel::devices;

namespace {

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

} // namespace

QVector<Mutant> runsMutants()
{
    return {
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
    };
}
