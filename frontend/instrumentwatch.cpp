#include "instrumentwatch.h"

#include <qeldevices/devicebroker.h>

#include <QtCore/QPointer>

#include <algorithm>
#include <utility>

namespace qel::frontend {

using namespace qel::devices;

InstrumentWatch::InstrumentWatch(QStringList drivers, QObject *parent)
    : QObject(parent)
    , m_drivers(std::move(drivers))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { m_isSearching ? ask() : search(); });
}

InstrumentWatch::~InstrumentWatch() = default;

QList<DeviceInfo> InstrumentWatch::instruments() const
{
    return m_enumeration.devices();
}

const Enumeration &InstrumentWatch::enumeration() const
{
    return m_enumeration;
}

void InstrumentWatch::start(std::chrono::milliseconds pause)
{
    m_pause = pause;
    m_isRepeating = true;
    if (!m_isSearching)
        m_timer.start(0);
}

void InstrumentWatch::stop()
{
    m_isRepeating = false;
    m_isSearching = false;
    m_isAsked = false;
    m_timer.stop();
}

void InstrumentWatch::refresh()
{
    if (m_isSearching)
        m_isAsked = true;
    else
        m_timer.start(0);
}

void InstrumentWatch::search()
{
    m_isSearching = true;
    m_elapsed = std::chrono::microseconds(0);
    m_pending = DeviceBroker::availableDrivers();
    // A driver that is no longer there has no instruments.
    for (const DriverAnswer &answer : std::as_const(m_enumeration.answers)) {
        if (!m_pending.contains(answer.driver))
            m_pending.append(answer.driver);
    }
    if (!m_drivers.isEmpty()) {
        const auto isOther = [this](const QString &name) { return !m_drivers.contains(name); };
        m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(), isOther),
                        m_pending.end());
    }
    m_pending.sort();
    ask();
}

// Asks the next driver. The receivers of the signals, and the driver too, may do anything, so what
// follows must not rely on the watch being there or searching still.
void InstrumentWatch::ask()
{
    if (m_pending.isEmpty()) {
        finish();
        return;
    }
    const QPointer<InstrumentWatch> self(this);
    const QString driver = m_pending.takeFirst();
    const Enumeration found = enumerate({driver});
    if (!self)
        return;
    const DriverAnswer answer = found.answers.value(0, {driver, {}, {}});
    m_elapsed += answer.elapsed;
    if (take(answer) && self && m_isSearching)
        m_timer.start(0);
}

// False when the watch is gone.
bool InstrumentWatch::take(const DriverAnswer &answer)
{
    const auto place = std::lower_bound(
        m_enumeration.answers.begin(), m_enumeration.answers.end(), answer.driver,
        [](const DriverAnswer &one, const QString &driver) { return one.driver < driver; });
    QList<DeviceInfo> before;
    if (place != m_enumeration.answers.end() && place->driver == answer.driver)
        before = std::exchange(*place, answer).devices;
    else
        m_enumeration.answers.insert(place, answer);

    const QPointer<InstrumentWatch> self(this);
    const EnumerationChange change = difference(before, answer.devices);
    for (auto it = change.left.cbegin(); self && it != change.left.cend(); ++it)
        emit left(*it);
    for (auto it = change.changed.cbegin(); self && it != change.changed.cend(); ++it)
        emit changed(it->first, it->second);
    for (auto it = change.arrived.cbegin(); self && it != change.arrived.cend(); ++it)
        emit arrived(*it);
    return self;
}

void InstrumentWatch::finish()
{
    m_isSearching = false;
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(m_elapsed);
    if (std::exchange(m_isAsked, false))
        m_timer.start(0);
    else if (m_isRepeating)
        m_timer.start(std::max(m_pause, elapsed));
    emit searched();
}

} // namespace qel::frontend
