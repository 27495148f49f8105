/// @file
/// The states of a device, so that an author writes only what the instrument does.
#ifndef QELDRIVER_INSTRUMENT_H
#define QELDRIVER_INSTRUMENT_H

#include <qeldevices/device.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QTimer>

#include <chrono>
#include <functional>

namespace qel::driver {

/// A device that keeps the contract of drivers: opening, closing, one run at a time with one
/// ending, requests to the user, loss of the instrument.
///
/// It does one thing at a time: opening, or one run. A subclass is told when one begins, in
/// startOpening() and startRun(), and says how it goes on with the functions below "Reports". Each
/// of the two ends exactly once, by the first report of an end or by what the application does
/// meanwhile; reports that come later are ignored, so a late answer of the instrument does no harm.
/// Before an end is reported, stopWork() tells the subclass that the instrument is to stop.
///
/// Every report may emit a signal, and its receiver may do anything, also start the next run. So
/// report last, and after a report touch only what stopWork() and startRun() leave valid.
class Instrument : public devices::Device
{
    Q_OBJECT

public:
    /// A closed device, without a parent, as drivers create them.
    /// @param busyDetails a translation id, or empty: the details with which a run is refused while
    /// another one goes on
    explicit Instrument(const devices::DeviceInfo &info, const QString &busyDetails = {});

    bool open() final;  ///< calls startOpening()
    void close() final; ///< ends the run or the opening, then calls disconnectInstrument()
    void reset() final; ///< ends the run and clears the error; the device stays open
    /// Does nothing; to be overridden where the instrument does not report by itself.
    void update() override;

protected:
    /// @name What the instrument does
    /// None of these may wait: begin the work, return, go on when the instrument answers.
    /// @{

    /// Connects to the instrument and finds out what it can do. Describe the features with
    /// setDescriptor() and addFeature(), then call opened(); or call openingFailed().
    virtual void startOpening() = 0;

    /// Begins a run of `feature`, which ends in finish() or fail(), now or later.
    /// @param configuration what the descriptor's settings allow, with their defaults in place of
    /// what the application left out; empty for a feature without settings
    virtual void startRun(DeviceFeature feature, const QVariantHash &configuration) = 0;

    /// The run or the opening is over, for whatever reason: forget what is awaited, and have the
    /// instrument stop what it still does. Emits nothing.
    virtual void stopWork();

    /// The device is closed or its opening has failed: leave the instrument safe and let go of the
    /// connection, so that it can be opened again, by anybody. Emits nothing.
    virtual void disconnectInstrument();
    /// @}

    /// @name Reports
    /// @{

    /// The device is open. The features stand already.
    void opened();
    /// The device cannot be opened.
    /// @param details a translation id, or empty
    void openingFailed(int code, const QString &details = {});

    /// How much of the run is done, from 0 to 1. Less than before is ignored: progress never falls.
    void reportProgress(double progress);
    /// The run has succeeded.
    void finish(const QVariant &result = {});
    /// The run has failed.
    /// @param code an error; NO_DEVICE_ERROR only where the user wanted the end
    /// @param details a translation id, or empty
    void fail(int code, const QString &details = {});

    /// Asks the user for something the run or the opening needs; only one request at a time. Goes
    /// on with `confirmed` once the user has done it. A refusal ends the run.
    /// @param action a translation id of what the user is to do
    void askUser(const QString &action, std::function<void()> confirmed);

    /// The instrument is gone, whatever it was doing: the device closes with
    /// ERROR_DEVICE_DISCONNECTED.
    /// @param details a translation id, or empty
    void lost(const QString &details = {});
    /// @}

    /// The feature that is running; DF_None when none is.
    DeviceFeature running() const;
    /// Whether the device is opening.
    bool isOpening() const;

    /// How long opening may take before it fails with ERROR_DEVICE_TIMEOUT; 10 s, as the contract
    /// wants, unless set otherwise. Requests to the user do not count.
    void setOpeningLimit(std::chrono::milliseconds limit);

    void executeImpl(DeviceFeature feature) final; ///< calls startRun(), or refuses
    void confirmActionImpl(int actionId) final;    ///< answers askUser()
    void abortActionImpl(int actionId) final;      ///< ends what asked for the action

private:
    struct Work
    {
        int number = 0;                  // tells it from the one before; 0 for none
        DeviceFeature feature = DF_None; // DF_None while opening
        double progress = -1;
        int actionId = -1; // of the open request
        std::function<void()> confirmed;
    };

    bool isAtWork(int number) const;
    QVariantHash wholeConfiguration(DeviceFeature feature) const;
    void begin(DeviceFeature feature);
    Work endWork();
    void endRun(bool ok, const QVariant &result, int code, const QString &details);
    void shut(const std::function<void()> &setReason);

    const QString m_busyDetails;
    Work m_work;
    int m_lastNumber = 0;
    QTimer m_openingLimit;
};

} // namespace qel::driver

#endif
