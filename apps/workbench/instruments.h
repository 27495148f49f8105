#ifndef QELWORKBENCH_INSTRUMENTS_H
#define QELWORKBENCH_INSTRUMENTS_H

#include "instrument.h"

#include <qelfrontend/instrumentwatch.h>

#include <QtCore/QAbstractListModel>

namespace qelworkbench {

/// The instruments, live. Drivers are asked less often when one of them is slow, and while an
/// instrument is at work. An instrument that is gone stays in the list, for what it has measured.
class Instruments : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit Instruments(Store *store, QObject *parent = nullptr);

    /// Begins to look for instruments.
    void watch();
    /// Whether the drivers have still to answer for the first time.
    bool isFirstSearch() const;

    Instrument *at(int row) const;
    int rowOf(const Instrument *instrument) const;
    /// Whether any is within a run.
    bool isAnyBusy() const;
    /// Whether any is being stopped, in steps that each call its driver.
    bool isAnyStopping() const;
    /// How many finished runs are in memory only.
    int unkeptCount() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Name, and under Qt::ToolTipRole everything that identifies it; StateRole and SentenceRole.
    QVariant data(const QModelIndex &index, int role) const override;
    enum Role { StateRole = Qt::UserRole, SentenceRole };

    /// What an instrument is doing, in words.
    static QString stateText(const Instrument &instrument);

Q_SIGNALS:
    /// Whenever `driver` is asked for its instruments, the window stands still for `milliseconds`,
    /// which a person notices. Empty: no driver holds it up any more.
    void heldUp(const QString &driver, qint64 milliseconds);
    /// What comes next is a call into `driver` for an instrument, during which the window stands
    /// still.
    void calling(const QString &driver);
    void firstSearchOver();
    /// An instrument has kept a run.
    void kept(const QString &file, qelworkbench::Instrument *instrument);

private:
    void add(const qel::devices::DeviceInfo &info);
    Instrument *instrumentOf(const qel::devices::DeviceInfo &info) const;
    void onSearched();

    Store *m_store;
    QList<Instrument *> m_instruments;
    qel::frontend::InstrumentWatch m_watch;
    std::chrono::milliseconds m_pause;
    bool m_isFirstSearch = true;
    QString m_slowDriver;
};

} // namespace qelworkbench

#endif
