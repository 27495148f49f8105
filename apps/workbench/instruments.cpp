#include "instruments.h"

#include "text.h"

#include <qelfrontend/selection.h>

#include <algorithm>

namespace qelworkbench {

using namespace qel::frontend;
using qel::devices::DeviceInfo;

using namespace std::chrono_literals;

namespace {

constexpr auto usualPause = 1500ms;
constexpr auto pauseWhileBusy = 5000ms;
constexpr auto noticeable = 200ms;
constexpr int share = 20; // of the time, at most one part in so many is spent asking

} // namespace

Instruments::Instruments(Store *store, QObject *parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_pause(usualPause)
{
    using qel::frontend::InstrumentWatch;
    connect(&m_watch, &InstrumentWatch::arrived, this, [this](const DeviceInfo &info) {
        if (Instrument *known = instrumentOf(info))
            known->setAttached(true);
        else
            add(info);
    });
    connect(&m_watch, &InstrumentWatch::left, this, [this](const DeviceInfo &info) {
        if (Instrument *known = instrumentOf(info))
            known->setAttached(false);
    });
    connect(&m_watch, &InstrumentWatch::changed, this,
            [this](const DeviceInfo &before, const DeviceInfo &now) {
                if (Instrument *known = instrumentOf(before))
                    known->setInfo(now);
            });
    connect(&m_watch, &InstrumentWatch::searched, this, &Instruments::onSearched);
}

void Instruments::watch()
{
    m_watch.start(m_pause);
}

bool Instruments::isFirstSearch() const
{
    return m_isFirstSearch;
}

void Instruments::onSearched()
{
    if (m_isFirstSearch) {
        m_isFirstSearch = false;
        Q_EMIT firstSearchOver();
    }
    std::chrono::microseconds all{0};
    DriverAnswer slowest;
    for (const DriverAnswer &answer : m_watch.enumeration().answers) {
        all += answer.elapsed;
        if (answer.elapsed > slowest.elapsed)
            slowest = answer;
    }
    using std::chrono::milliseconds;
    const bool isSlow = slowest.elapsed > noticeable;
    if (isSlow || !m_slowDriver.isEmpty()) {
        m_slowDriver = isSlow ? slowest.driver : QString();
        Q_EMIT heldUp(m_slowDriver,
                      std::chrono::duration_cast<milliseconds>(slowest.elapsed).count());
    }
    const milliseconds wanted = isSlow ? std::chrono::duration_cast<milliseconds>(share * all)
        : isAnyBusy()                  ? milliseconds(pauseWhileBusy)
                                       : milliseconds(usualPause);
    // Times of answers vary; only a real change is worth another rhythm.
    if (wanted > 2 * m_pause || m_pause > 2 * wanted) {
        m_pause = wanted;
        m_watch.stop();
        QTimer::singleShot(m_pause, this, &Instruments::watch);
    }
}

Instrument *Instruments::instrumentOf(const DeviceInfo &info) const
{
    const auto found = std::find_if(m_instruments.begin(), m_instruments.end(),
                                    [&info](Instrument *one) { return one->info() == info; });
    return found == m_instruments.end() ? nullptr : *found;
}

Instrument *Instruments::at(int row) const
{
    return row >= 0 && row < m_instruments.size() ? m_instruments[row] : nullptr;
}

int Instruments::rowOf(const Instrument *instrument) const
{
    return m_instruments.indexOf(const_cast<Instrument *>(instrument));
}

bool Instruments::isAnyBusy() const
{
    return std::any_of(m_instruments.begin(), m_instruments.end(),
                       [](const Instrument *instrument) { return instrument->isBusy(); });
}

bool Instruments::isAnyStopping() const
{
    return std::any_of(m_instruments.begin(), m_instruments.end(),
                       [](const Instrument *one) { return one->state() == Instrument::Stopping; });
}

int Instruments::unkeptCount() const
{
    int count = 0;
    for (const Instrument *instrument : m_instruments)
        count += instrument->unkeptCount();
    return count;
}

void Instruments::add(const DeviceInfo &info)
{
    const int row = m_instruments.size();
    beginInsertRows(QModelIndex(), row, row);
    auto *instrument = new Instrument(info, m_store, this);
    m_instruments.append(instrument);
    endInsertRows();
    connect(instrument, &Instrument::changed, this, [this, instrument] {
        const QModelIndex changed = index(rowOf(instrument));
        Q_EMIT dataChanged(changed, changed);
    });
    connect(instrument, &Instrument::calling, this, &Instruments::calling);
    connect(instrument, &Instrument::kept, this,
            [this, instrument](const QString &file) { Q_EMIT kept(file, instrument); });
}

int Instruments::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_instruments.size();
}

QVariant Instruments::data(const QModelIndex &index, int role) const
{
    const Instrument *instrument = at(index.row());
    if (!instrument)
        return {};
    const DeviceInfo &info = instrument->info();
    switch (role) {
    case Qt::DisplayRole:
        return info.name();
    case Qt::ToolTipRole:
        return text("qelworkbench-instrument-tip", info.name(), info.serial(), devicePath(info));
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2, %3").arg(info.name(), info.serial(), stateText(*instrument));
    case StateRole:
        return instrument->state();
    case SentenceRole:
        return stateText(*instrument);
    default:
        return {};
    }
}

QString Instruments::stateText(const Instrument &instrument)
{
    const auto time = [](qint64 milliseconds) {
        const qint64 seconds = milliseconds / 1000;
        return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    };
    const auto doing = [&instrument] {
        const Order &order = instrument.order();
        const QString feature = featureTitle(order.feature);
        return order.count > 1
            ? text("qelworkbench-state-series", feature, QString::number(instrument.number()),
                   QString::number(order.count))
            : feature;
    };
    switch (instrument.state()) {
    case Instrument::Closed:
        return instrument.problem().isEmpty() ? text("qelworkbench-state-closed")
                                              : instrument.problem();
    case Instrument::Opening:
        return text("qelworkbench-state-opening");
    case Instrument::Ready:
        return instrument.problem().isEmpty() ? text("qelworkbench-state-ready")
                                              : instrument.problem();
    case Instrument::Measuring:
        return text("qelworkbench-state-measuring", doing(), time(instrument.elapsed()));
    case Instrument::Pausing:
        return text("qelworkbench-state-pausing", doing(),
                    QLocale().toString(instrument.nextStart().toLocalTime().time(),
                                       QStringLiteral("HH:mm:ss")));
    case Instrument::NeedsUser:
        return text("qelworkbench-state-needs-user");
    case Instrument::Stopping:
        return text("qelworkbench-state-stopping");
    case Instrument::Gone:
        return text("qelworkbench-state-gone");
    }
    return {};
}

} // namespace qelworkbench
