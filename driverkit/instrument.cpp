#include "instrument.h"

#include <qeldevices/logging.h>
#include <qelvalues/settings.h>

#include <utility>

namespace qel::driver {

using namespace devices;

Instrument::Instrument(const DeviceInfo &info, const QString &busyDetails)
    : Device(info, nullptr)
    , m_busyDetails(busyDetails)
{
    m_openingLimit.setSingleShot(true);
    setOpeningLimit(std::chrono::seconds(10));
    connect(&m_openingLimit, &QTimer::timeout, this,
            [this] { openingFailed(ERROR_DEVICE_TIMEOUT); });
    // First in line, so that the id is known when an application answers from its own slot.
    connect(this, &Device::actionRequired, this,
            [this](int actionId) { m_work.actionId = actionId; });
}

void Instrument::setOpeningLimit(std::chrono::milliseconds limit)
{
    m_openingLimit.setInterval(limit);
}

Device::DeviceFeature Instrument::running() const
{
    return m_work.feature;
}

bool Instrument::isOpening() const
{
    return m_work.number && m_work.feature == DF_None;
}

// Whether that work is still there: every signal may have ended it, and begun another.
bool Instrument::isAtWork(int number) const
{
    return m_work.number == number;
}

void Instrument::begin(DeviceFeature feature)
{
    m_work = Work();
    m_work.number = ++m_lastNumber;
    m_work.feature = feature;
}

// What was going on is over, without a word.
Instrument::Work Instrument::endWork()
{
    Work work = std::exchange(m_work, Work());
    m_openingLimit.stop();
    if (work.number)
        stopWork();
    return work;
}

bool Instrument::open()
{
    if (isOpen() || isOpening())
        return true;
    begin(DF_None);
    const int number = m_work.number;
    setError(NO_DEVICE_ERROR, {});
    if (!isAtWork(number))
        return isOpen() || isOpening();
    m_openingLimit.start();
    startOpening();
    return isOpen() || isOpening();
}

void Instrument::opened()
{
    if (!isOpening())
        return;
    m_work = Work();
    m_openingLimit.stop();
    setOpen(true);
}

void Instrument::openingFailed(int code, const QString &details)
{
    if (!isOpening())
        return;
    endWork();
    disconnectInstrument();
    setError(code, details);
}

// Flags first: who executes again from the ending is refused.
void Instrument::shut(const std::function<void()> &setReason)
{
    if (!isOpen() && !m_work.number)
        return;
    const DeviceFeature feature = endWork().feature;
    disconnectInstrument();
    setReason();
    setStatus({});
    if (feature != DF_None)
        emit executed(feature, false);
}

void Instrument::close()
{
    shut([] {});
}

void Instrument::lost(const QString &details)
{
    shut([&] { setError(ERROR_DEVICE_DISCONNECTED, details); });
}

void Instrument::reset()
{
    if (isOpening() || running() == DF_None)
        setError(NO_DEVICE_ERROR, {});
    else
        endRun(false, {}, NO_DEVICE_ERROR, {});
}

void Instrument::update() { }

void Instrument::stopWork() { }

void Instrument::disconnectInstrument() { }

// With the defaults of the descriptor in place of what is missing.
QVariantHash Instrument::wholeConfiguration(DeviceFeature feature) const
{
    QVariantHash values = configuration(feature).toHash();
    const auto settings = values::settingsOf(descriptor(feature));
    for (const values::Setting &setting : settings) {
        if (setting.fallback.isValid() && !values.value(setting.key).isValid())
            values.insert(setting.key, setting.fallback);
    }
    return values;
}

void Instrument::executeImpl(DeviceFeature feature)
{
    if (running() != DF_None) { // that one goes on
        setError(ERROR_DEVICE_NOT_READY, m_busyDetails);
        emit executed(feature, false);
        return;
    }
    const auto problems = values::checkConfiguration(configuration(feature), descriptor(feature));
    if (!problems.isEmpty()) {
        qCWarning(LogCDriver).noquote() << serial() << values::toString(problems.constFirst());
        setError(ERROR_DEVICE_INVALID_CONFIGURATION, {});
        emit executed(feature, false);
        return;
    }
    const QVariantHash configuration = wholeConfiguration(feature);
    begin(feature);
    const int number = m_work.number;
    setError(NO_DEVICE_ERROR, {});
    if (isAtWork(number))
        setBusy(true);
    if (isAtWork(number))
        startRun(feature, configuration);
}

void Instrument::reportProgress(double progress)
{
    if (running() == DF_None || progress <= m_work.progress)
        return;
    m_work.progress = progress;
    emit transientValue(running(), QVariantHash{{QStringLiteral("progress"), progress}});
}

void Instrument::finish(const QVariant &result)
{
    if (running() == DF_None)
        return;
    const int number = m_work.number;
    if (m_work.progress >= 0)
        reportProgress(1);
    if (isAtWork(number))
        endRun(true, result, NO_DEVICE_ERROR, {});
}

void Instrument::fail(int code, const QString &details)
{
    if (running() != DF_None)
        endRun(false, {}, code, details);
}

// The only way out of a run of an open device. The ending comes last: its receiver may start the
// next run.
void Instrument::endRun(bool ok, const QVariant &result, int code, const QString &details)
{
    const DeviceFeature feature = endWork().feature;
    setError(code, details);
    // A receiver of the error may have begun the next run.
    setBusy(running() != DF_None);
    emit executed(feature, ok, result);
}

void Instrument::askUser(const QString &action, std::function<void()> confirmed)
{
    if (!m_work.number)
        return;
    m_openingLimit.stop();
    m_work.confirmed = std::move(confirmed);
    emitActionRequired(QString(action));
}

void Instrument::confirmActionImpl(int actionId)
{
    if (m_work.actionId < 0 || actionId != m_work.actionId)
        return;
    m_work.actionId = -1;
    if (isOpening())
        m_openingLimit.start();
    if (const auto confirmed = std::exchange(m_work.confirmed, nullptr))
        confirmed();
}

void Instrument::abortActionImpl(int actionId)
{
    if (m_work.actionId < 0 || actionId != m_work.actionId)
        return;
    if (isOpening())
        openingFailed(ERROR_DEVICE_NOT_READY);
    else
        endRun(false, {}, NO_DEVICE_ERROR, {});
}

} // namespace qel::driver
