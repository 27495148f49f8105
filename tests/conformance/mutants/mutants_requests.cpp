#include "mutants_p.h"

#include <QtCore/QThread>

using namespace qel::devices;

namespace {

constexpr int tooLong = 400;

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

} // namespace

QVector<Mutant> requestsMutants()
{
    return {
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
    };
}
