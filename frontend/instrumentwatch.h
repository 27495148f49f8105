#ifndef QELFRONTEND_INSTRUMENTWATCH_H
#define QELFRONTEND_INSTRUMENTWATCH_H

#include "enumeration.h"
#include "export.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <chrono>

namespace qel::frontend {

/// Tells which instruments come and go: asks the drivers for them, again and again.
///
/// Drivers answer in the thread that asks. Between two drivers the watch returns to the event loop,
/// so that a window stands still no longer than one of them takes, and the pause between two
/// searches is never shorter than the search before it.
///
/// Lives in the thread of init() and needs its event loop.
class QELFRONTEND_EXPORT InstrumentWatch : public QObject
{
    Q_OBJECT

public:
    /// @param drivers the names of those to ask; empty means all, those included that are
    /// registered later
    explicit InstrumentWatch(QStringList drivers = QStringList(), QObject *parent = nullptr);
    ~InstrumentWatch() override;

    /// The instruments as the drivers have last told, in the order of DeviceInfo::operator<().
    QList<devices::DeviceInfo> instruments() const;
    /// What the drivers have last answered, sorted by driver.
    const Enumeration &enumeration() const;

public Q_SLOTS:
    /// Begins to search. The first answers come from the event loop. Searches begin `pause` after
    /// the end of the one before.
    void start(std::chrono::milliseconds pause = std::chrono::seconds(1));
    /// Searches no more, for instance while an instrument measures that must not be disturbed.
    /// What is known stays.
    void stop();
    /// Searches now instead of waiting for the end of the pause; once, also when it was stopped.
    /// A search that is on its way is followed by another.
    void refresh();

Q_SIGNALS:
    /// There is an instrument that was not there before.
    void arrived(const qel::devices::DeviceInfo &instrument);
    /// An instrument is there no more.
    void left(const qel::devices::DeviceInfo &instrument);
    /// An instrument has another name, location, interface or serial than `before`; see
    /// difference().
    void changed(const qel::devices::DeviceInfo &before, const qel::devices::DeviceInfo &now);
    /// All drivers have answered, and the signals above have told what is new.
    void searched();

private:
    void search();
    void ask();
    bool take(const DriverAnswer &answer);
    void finish();

    const QStringList m_drivers;
    Enumeration m_enumeration;
    QStringList m_pending; // drivers to ask in this search
    std::chrono::milliseconds m_pause{0};
    std::chrono::microseconds m_elapsed{0}; // what this search has taken by now
    bool m_isRepeating = false;
    bool m_isSearching = false;
    bool m_isAsked = false; // refresh() in the middle of a search
    QTimer m_timer;
};

} // namespace qel::frontend

#endif
