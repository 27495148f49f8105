#include "recorder.h"

#include <qeldevices/deviceerrors.h>

#include <QtCore/QDebug>

#include <algorithm>

namespace qel::conformance {

using devices::Device;

QString errorName(int code)
{
    if (code == devices::NO_DEVICE_ERROR)
        return QStringLiteral("NO_DEVICE_ERROR");
    const QString number = QStringLiteral("0x%1").arg(code, 0, 16);
    for (const auto &[name, known] : values::errorNames()) {
        if (known == code)
            return QStringLiteral("%1 (%2)").arg(name, number);
    }
    return number;
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

static QString argumentsOf(const Event &event)
{
    const QString feature = featureName(event.feature);
    switch (event.kind) {
    case Event::OpenChanged:
    case Event::BusyChanged:
        return text(event.flag);
    case Event::TransientValue:
        return QStringLiteral("%1, %2").arg(feature, text(event.value));
    case Event::Executed:
        return QStringLiteral("%1, %2, %3").arg(feature, text(event.flag), text(event.value));
    case Event::DescriptorChanged:
    case Event::ConfigurationChanged:
        return feature;
    case Event::ActionRequired:
        return QStringLiteral("%1, \"%2\"").arg(event.actionId).arg(event.action);
    case Event::ActionConfirmed:
        return QString::number(event.actionId);
    case Event::NameChanged:
    case Event::SerialChanged:
    case Event::FeaturesChanged:
    case Event::ErrorChanged:
        break;
    }
    return {};
}

static QString call(const Event &event)
{
    return QStringLiteral("%1(%2)").arg(QLatin1String(signalName(event.kind)), argumentsOf(event));
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
    values::observe(device, device, [this](const values::Event &seen) { add(seen); });
}

void Recorder::setReaction(std::function<void(const Event &)> reaction)
{
    m_reaction = std::move(reaction);
}

void Recorder::add(const values::Event &seen)
{
    Event event{seen, 0};
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
