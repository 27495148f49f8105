#ifndef QELWORKBENCH_INSTRUMENT_H
#define QELWORKBENCH_INSTRUMENT_H

#include "store.h"

#include <qelfrontend/run.h>

#include <QtCore/QJsonObject>
#include <QtCore/QTimer>

#include <memory>

namespace qelworkbench {

/// What the operator wants measured.
struct Order
{
    qel::devices::Device::DeviceFeature feature = qel::devices::Device::DF_None;
    QJsonObject configuration; ///< as readConfiguration() takes it
    int count = 1;             ///< how many runs
    int interval = 0;          ///< ms from the start of a run to the start of the next
    QString name;              ///< for the history
};

/// One instrument: its device, what it is doing, and what it has measured and could not keep.
///
/// A finished run is on disk before kept() is emitted. When it cannot be written it stays in
/// memory, state() says so, and keepAgain() tries once more.
class Instrument : public QObject
{
    Q_OBJECT

public:
    enum State {
        Closed,    ///< not opened yet, or closed again
        Opening,   ///< asked to open
        Ready,     ///< open and idle
        Measuring, ///< within a run
        Pausing,   ///< between two runs of a series
        NeedsUser, ///< waits for an action of the operator
        Stopping,  ///< on the way to the end of a run
        Gone,      ///< no longer attached
    };

    Instrument(const qel::devices::DeviceInfo &info, Store *store, QObject *parent = nullptr);
    ~Instrument() override;

    const qel::devices::DeviceInfo &info() const;
    /// Takes over another name or serial, or tells that the instrument is gone or back.
    void setInfo(const qel::devices::DeviceInfo &info);
    void setAttached(bool attached);

    State state() const;
    /// Whether a run or a series is under way.
    bool isBusy() const;
    /// Whether the device is open, so that its features can be looked at.
    bool isOpen() const;
    /// What went wrong last; empty when nothing did.
    QString problem() const;
    /// Of the present run, from 0 to 1; negative when not known.
    double progress() const;
    /// How long the present run has taken so far, in ms.
    qint64 elapsed() const;
    /// The run of the series that is under way or comes next, from 1.
    int number() const;
    const Order &order() const;
    /// When the next run of the series starts; only while Pausing.
    QDateTime nextStart() const;
    /// What the operator is asked to do; empty when nothing.
    QString action() const;
    /// How many finished runs are in memory only.
    int unkeptCount() const;

    /// The features that the open device offers.
    QList<qel::devices::Device::DeviceFeature> features() const;
    QVariant descriptor(qel::devices::Device::DeviceFeature feature) const;

    /// What it has said of its firmware, for people; empty before it was asked.
    QString firmware() const;

    /// Opens the device, unless it is open or about to be.
    void open();
    /// Asks it for its firmware, unless it is at work. Nothing of it is kept.
    void readFirmware();
    /// Starts a run or a series, unless one is under way.
    void start(const Order &order);
    /// Ends it; finished runs are kept.
    void cancel();
    /// Answers the request for action.
    void confirmAction();
    void abortAction();
    /// Writes what could not be kept. False when something still cannot.
    bool keepAgain();

Q_SIGNALS:
    /// Anything that the getters tell.
    void changed();
    /// What comes next is a call into the driver, in the time of the event loop: while it lasts,
    /// nothing is drawn and nobody is answered.
    void calling(const QString &driver);
    /// The features or their descriptors.
    void featuresChanged();
    /// A finished run stands on disk.
    void kept(const QString &file);
    /// The run or series is over.
    void finished();

private:
    struct Unkept
    {
        qel::frontend::RunRecord record;
        SeriesMark mark;
        QString name;
    };

    bool makeDevice();
    void startRun();
    void begin(qel::frontend::RunRequest request);
    void onRunFinished(const qel::frontend::Outcome &outcome);
    void onMeasured(const qel::frontend::Outcome &outcome);
    bool keep(const Unkept &run);
    void goOn();
    void setState(State state);
    State restingState() const;

    qel::devices::DeviceInfo m_info;
    Store *m_store;
    std::unique_ptr<qel::devices::Device> m_device;
    std::unique_ptr<qel::frontend::Run> m_run;
    QVector<Unkept> m_unkept;
    State m_state = Closed;
    bool m_isAttached = true;
    bool m_isSeries = false; // a run or series of an order, not just opening
    bool m_isCancelled = false;
    QString m_problem;
    QVariant m_firmware;
    double m_progress = -1;
    QElapsedTimer m_clock;
    Order m_order;
    QString m_seriesId;
    int m_number = 0;
    QTimer m_pause;
    QDateTime m_nextStart;
    int m_actionId = -1;
    QString m_action;
};

} // namespace qelworkbench

#endif
