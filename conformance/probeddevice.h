#ifndef QEL_CONFORMANCE_PROBEDDEVICE_H
#define QEL_CONFORMANCE_PROBEDDEVICE_H

#include "subject.h"

#include <QtCore/QPointer>

namespace qel::conformance {

/// A device of the instrument under test, watched. Closed and deleted at the end of its life.
class ProbedDevice
{
public:
    using Feature = devices::Device::DeviceFeature;

    /// Creates the device, closed. Throws Unmet when there is none.
    explicit ProbedDevice(Subject &subject);
    /// The same for an instrument of one's choice.
    ProbedDevice(Subject &subject, const devices::DeviceInfo &record);
    ~ProbedDevice();
    Q_DISABLE_COPY(ProbedDevice)

    /// The device; null once it is deleted.
    devices::Device *device() const
    {
        return m_device;
    }
    devices::Device *operator->() const
    {
        return m_device;
    }
    const Recorder &seen() const
    {
        return *m_recorder;
    }
    Recorder &recorder()
    {
        return *m_recorder;
    }

    // The calls of the device, with their time noted. Nothing waits.
    bool callOpen();
    void callClose();
    void callReset();
    void callUpdate();
    void callExecute(Feature feature);
    /// As callExecute(), for a run that is repeated without end: unannounced.
    void executeAgain(Feature feature);
    /// The index of the first event after the last callExecute().
    int runStart() const
    {
        return m_runStart;
    }
    void confirm(int actionId);
    void abort(int actionId);
    void destroy();

    /// Opens the device and lets it settle. Throws Unmet when it does not open.
    void open();
    /// Waits until the device is closed and idle; whether it is.
    bool awaitClosed();
    /// Closes the device and lets it settle. Throws Hindered when it stays open.
    void close();

    /// The features offered.
    QVector<Feature> offered() const;
    /// The features that may be run: those offered, without the moving ones unless allowed, those
    /// whose runs have no end, and never the firmware update, for which nobody has an image.
    QVector<Feature> runnable() const;
    /// The features whose configuration may be tried: as runnable(), with the firmware update when
    /// moving parts is allowed.
    QVector<Feature> configurable() const;

    /// Waits until `endings` runs have ended since event `start`, answering the driver's requests
    /// since then; whether they have. A driver that asks for ever has its requests aborted.
    /// A run lives as long as its progress rises.
    bool awaitEndings(int start, int endings, bool confirms);
    /// Waits for the ending of a run of `feature` that was started at event `start`; otherwise as
    /// awaitEndings(). Throws Hindered when there is no ending.
    void awaitRun(Feature feature, int start, bool confirms);
    /// Executes `feature` and waits for its ending, confirming the driver's requests on the way, or
    /// aborting them. Throws Hindered when there is no ending.
    Event run(Feature feature, bool confirms = true);
    /// As run(), with the shortest valid configuration.
    Event runShort(Feature feature, bool confirms = true);
    /// Starts a run that is still at work when the call returns, if possible after its first
    /// progress. Throws NotApplicable when there is none.
    Feature startLongRun();
    /// Starts a run that waits for the user; the id of the request. Throws NotApplicable when no
    /// feature asks.
    int startRequest(Feature *feature);
    /// Brings the device into an error; the code. Throws NotApplicable when there is no way.
    int provokeError();
    /// Sets the shortest valid configuration of `feature`.
    void setShortConfiguration(Feature feature);

private:
    friend class Subject;
    void reportStuck(Feature feature, int start, bool confirms);

    Subject &m_subject;
    QPointer<devices::Device> m_device;
    std::shared_ptr<Recorder> m_recorder;
    int m_runStart = 0;
};

} // namespace qel::conformance

#endif
