#include "mutants_p.h"

#include <unistd.h>
#include <utility>

using namespace qel::devices;

namespace {

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

} // namespace

QVector<Mutant> openingMutants()
{
    return {
        {"301-early-features", makeDriverOf<EarlyFeatures>},
        {"305-chatty", makeDriverOf<Chatty>},
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
        {"501-offers-none", makeDriverOf<OffersNone>},
        {"502-rows-as-text", makeDriverOf<RowsAsText>},
        {"503-other-default", makeDriverOf<OtherDefault>},
    };
}
