#ifndef PYTHON_INSTRUMENT_H
#define PYTHON_INSTRUMENT_H

#include "mailbox.h"

#include <qelfrontend/run.h>
#include <qelfrontend/runjson.h>

#include <qeldevices/device.h>

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace qelpython {

/// How a run ended, with everything that was known of it.
struct Ending
{
    qel::frontend::RunRecord record;
    bool isNotOffered = false;                      ///< the device does not have the feature
    QStringList configurationProblems;              ///< what is wrong with the settings
    std::optional<QJsonObject> document = {};       ///< where the run was read from
    std::optional<qel::frontend::Plate> plate = {}; ///< of a measurement that was read
};

/// One run as Python holds it. Its members but `mailbox` belong to the event loop.
struct RunTicket
{
    std::shared_ptr<Mailbox> mailbox = std::make_shared<Mailbox>();
    std::optional<qel::devices::Device::DeviceFeature> feature; ///< none: only opens the device
    QJsonObject configuration;
    std::chrono::milliseconds deadline{0}; ///< 0: for ever
    QPointer<qel::frontend::Run> run;
    QStringList configurationProblems;
    bool isCancelled = false;
};

/// A device with the runs that are waiting for it: one runs after another, whichever thread has
/// asked for them. Lives in the event loop.
class Instrument : public QObject
{
    Q_OBJECT

public:
    explicit Instrument(std::unique_ptr<qel::devices::Device> device);
    ~Instrument() override;

    qel::devices::Device *device() const;

    /// Runs `ticket` as soon as the runs before it have ended. Its mailbox gets tuples:
    /// ("progress", fraction), ("value", feature, value), ("action", id, text), at last ("ended",
    /// Ending).
    void run(const std::shared_ptr<RunTicket> &ticket);
    /// Ends the run of `ticket` by the ladder.
    static void cancel(const std::shared_ptr<RunTicket> &ticket);

    /// Puts what the device reports into `mailbox` until `listener`, which belongs to this object
    /// and goes with it, is deleted: ("open", bool), ("busy", bool), ("features",), ("value",
    /// feature, value), ("ended", feature, ok, value), ("action", text), ("error", code, sentence).
    void observe(QObject *listener, const std::shared_ptr<Mailbox> &mailbox);

    /// Cancels what runs, closes the device, deletes this object, calls `done`.
    void end(const std::function<void()> &done);

private:
    void startNext();
    void begin(const std::shared_ptr<RunTicket> &ticket);
    void deliver(const std::shared_ptr<RunTicket> &ticket, const qel::frontend::Outcome &outcome);
    void closeDevice();
    void finish();

    std::unique_ptr<qel::devices::Device> m_device;
    std::deque<std::shared_ptr<RunTicket>> m_tickets; // the first one is running
    std::vector<std::function<void()>> m_atEnd;
    bool m_isEnding = false;
};

} // namespace qelpython

#endif
