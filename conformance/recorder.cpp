#include "recorder.h"

#include <qeldevices/deviceerrors.h>

#include <QtCore/QDebug>
#include <QtCore/QMetaEnum>
#include <QtCore/QThread>

#include <algorithm>
#include <iterator>

namespace qel::conformance {

using devices::Device;

QString featureName(Device::DeviceFeature feature)
{
    const char *name = QMetaEnum::fromType<Device::DeviceFeature>().valueToKey(feature);
    return name ? QString::fromLatin1(name) : QString::number(feature);
}

static const char *const codeNames[] = {
    "ERROR_DEVICE_UNKNOWN",           "ERROR_DEVICE_VENDOR_SPECIFIC",
    "ERROR_DEVICE_CANT_OPEN",         "ERROR_DEVICE_NOT_READY",
    "ERROR_DEVICE_TIMEOUT",           "ERROR_DEVICE_CANT_WRITE",
    "ERROR_DEVICE_CHECKSUM_MISMATCH", "ERROR_DEVICE_INVALID_CONFIGURATION",
    "ERROR_DEVICE_NOT_CALIBRATED",    "ERROR_DEVICE_DISCONNECTED",
    "ERROR_DEVICE_BOOT_FAIL",         "ERROR_DEVICE_API_TOO_NEW",
};

QString errorName(int code)
{
    const QString number = QStringLiteral("0x%1").arg(code, 0, 16);
    if (code == devices::NO_DEVICE_ERROR)
        return QStringLiteral("NO_DEVICE_ERROR");
    const int index = code - devices::ERROR_DEVICE_UNKNOWN;
    if (index < 0 || index >= int(std::size(codeNames)))
        return number;
    return QStringLiteral("%1 (%2)").arg(QLatin1String(codeNames[index]), number);
}

static QString text(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

// Long values, a plate's for instance, are cut: the type matters more than the last well.
static QString text(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("invalid");
    QString string;
    QDebug(&string).nospace() << value;
    return string.size() <= 80 ? string : string.left(77) + QStringLiteral("...");
}

static QString call(const Event &event)
{
    const QString feature = featureName(event.feature);
    switch (event.kind) {
    case Event::OpenChanged:
        return QStringLiteral("openChanged(%1)").arg(text(event.flag));
    case Event::BusyChanged:
        return QStringLiteral("busyChanged(%1)").arg(text(event.flag));
    case Event::TransientValue:
        return QStringLiteral("transientValue(%1, %2)").arg(feature, text(event.value));
    case Event::Executed:
        return QStringLiteral("executed(%1, %2, %3)")
            .arg(feature, text(event.flag), text(event.value));
    case Event::NameChanged:
        return QStringLiteral("nameChanged()");
    case Event::SerialChanged:
        return QStringLiteral("serialChanged()");
    case Event::DescriptorChanged:
        return QStringLiteral("descriptorChanged(%1)").arg(feature);
    case Event::ConfigurationChanged:
        return QStringLiteral("configurationChanged(%1)").arg(feature);
    case Event::FeaturesChanged:
        return QStringLiteral("featuresChanged()");
    case Event::ErrorChanged:
        return QStringLiteral("errorChanged()");
    case Event::ActionRequired:
        return QStringLiteral("actionRequired(%1, \"%2\")").arg(event.actionId).arg(event.action);
    case Event::ActionConfirmed:
        return QStringLiteral("actionConfirmed(%1)").arg(event.actionId);
    }
    return {};
}

QString Event::toString() const
{
    QStringList state = {isOpen ? QStringLiteral("open") : QStringLiteral("closed"),
                         isBusy ? QStringLiteral("busy") : QStringLiteral("idle")};
    if (errorCode != 0 || !additionalInfoTrId.isEmpty())
        state += QStringLiteral("error %1 \"%2\"").arg(errorName(errorCode), additionalInfoTrId);
    if (!isOwnThread)
        state = QStringList{QStringLiteral("from a thread that is not the device's")};
    return QStringLiteral("%1 ms  %2  [%3]")
        .arg(milliseconds, 6)
        .arg(call(*this), state.join(QStringLiteral(", ")));
}

Recorder::Recorder()
{
    m_clock.start();
}

void Recorder::attach(Device *device)
{
    // Direct, so that the order, the state and the thread of the emission are what is seen.
    const auto record = [this, device](auto signal, auto describe) {
        QObject::connect(
            device, signal, device,
            [this, device, describe](auto... arguments) { add(device, describe(arguments...)); },
            Qt::DirectConnection);
    };
    const auto plain = [](Event::Kind kind) {
        return [kind] {
            Event event;
            event.kind = kind;
            return event;
        };
    };
    const auto flag = [](Event::Kind kind) {
        return [kind](bool on) {
            Event event;
            event.kind = kind;
            event.flag = on;
            return event;
        };
    };
    const auto ofFeature = [](Event::Kind kind) {
        return [kind](Device::DeviceFeature feature) {
            Event event;
            event.kind = kind;
            event.feature = feature;
            return event;
        };
    };
    record(&Device::openChanged, flag(Event::OpenChanged));
    record(&Device::busyChanged, flag(Event::BusyChanged));
    record(&Device::nameChanged, plain(Event::NameChanged));
    record(&Device::serialChanged, plain(Event::SerialChanged));
    record(&Device::featuresChanged, plain(Event::FeaturesChanged));
    record(&Device::errorChanged, plain(Event::ErrorChanged));
    record(&Device::descriptorChanged, ofFeature(Event::DescriptorChanged));
    record(&Device::configurationChanged, ofFeature(Event::ConfigurationChanged));
    record(&Device::transientValue, [](Device::DeviceFeature feature, const QVariant &value) {
        Event event;
        event.kind = Event::TransientValue;
        event.feature = feature;
        event.value = value;
        return event;
    });
    record(&Device::executed, [](Device::DeviceFeature feature, bool ok, const QVariant &result) {
        Event event;
        event.kind = Event::Executed;
        event.feature = feature;
        event.flag = ok;
        event.value = result;
        return event;
    });
    record(&Device::actionRequired, [](int actionId, const QString &action) {
        Event event;
        event.kind = Event::ActionRequired;
        event.actionId = actionId;
        event.action = action;
        return event;
    });
    record(&Device::actionConfirmed, [](int actionId) {
        Event event;
        event.kind = Event::ActionConfirmed;
        event.actionId = actionId;
        return event;
    });
}

void Recorder::setReaction(std::function<void(const Event &)> reaction)
{
    m_reaction = std::move(reaction);
}

void Recorder::add(Device *device, Event event)
{
    event.isOwnThread = QThread::currentThread() == device->thread();
    event.isOpen = device->isOpen();
    event.isBusy = device->isBusy();
    event.errorCode = device->errorCode();
    event.additionalInfoTrId = device->errorAdditionalInfoTrId();
    {
        const QMutexLocker locker(&m_mutex);
        event.milliseconds = m_clock.elapsed();
        m_events += event;
    }
    if (m_reaction && event.isOwnThread)
        m_reaction(event);
}

QVector<Event> Recorder::events(int from) const
{
    const QMutexLocker locker(&m_mutex);
    return m_events.mid(from);
}

int Recorder::count() const
{
    const QMutexLocker locker(&m_mutex);
    return m_events.size();
}

int Recorder::count(Event::Kind kind, int from) const
{
    const QMutexLocker locker(&m_mutex);
    return int(std::count_if(m_events.cbegin() + from, m_events.cend(),
                             [kind](const Event &event) { return event.kind == kind; }));
}

bool Recorder::hasRequest(int actionId) const
{
    const QMutexLocker locker(&m_mutex);
    return std::any_of(m_events.cbegin(), m_events.cend(), [actionId](const Event &event) {
        return event.kind == Event::ActionRequired && event.actionId == actionId;
    });
}

QStringList toLines(const QVector<Event> &events)
{
    const int head = 10;
    const int tail = 30;
    QStringList lines;
    for (int i = 0; i < events.size(); ++i) {
        const int left = events.size() - head - tail;
        if (left > 0 && i == head) {
            lines += QStringLiteral("(%1 signals left out)").arg(left);
            i += left;
        }
        lines += events.at(i).toString();
    }
    return lines;
}

} // namespace qel::conformance
