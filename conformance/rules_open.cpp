#include "configurations.h"
#include "tour.h"

#include <QtCore/QElapsedTimer>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Open and close";

static void checkFailedOpen(Subject &subject, const ProbedDevice &instrument, bool accepted)
{
    if (instrument->errorCode() == 0) {
        throw Broken{accepted
                         ? QStringLiteral("open() returned true, then neither openChanged(true) "
                                          "nor an error came within %1 ms")
                               .arg(subject.limits().open)
                         : QStringLiteral("open() returned false and set no error")};
    }
    subject.settle();
    if (instrument->isOpen() || instrument.seen().count(Event::OpenChanged, 0) > 0)
        throw Broken{QStringLiteral("the open flag changed in spite of the error")};
}

static void checkOpens(Subject &subject)
{
    ProbedDevice instrument(subject);
    const bool accepted = instrument.callOpen();
    if (accepted) {
        subject.waitFor(subject.limits().open,
                        [&] { return instrument->isOpen() || instrument->errorCode() != 0; });
    }
    if (!instrument->isOpen())
        return checkFailedOpen(subject, instrument, accepted);
    subject.settle();
    if (!accepted)
        throw Broken{QStringLiteral("open() returned false, and the device is open")};
    const int changes = instrument.seen().count(Event::OpenChanged, 0);
    if (!instrument->isOpen() || changes != 1)
        throw Broken{QStringLiteral("openChanged() came %1 times").arg(changes)};
    if (instrument->errorCode() != 0)
        throw Broken{QStringLiteral("the device is open with error %1")
                         .arg(errorName(instrument->errorCode()))};
}

static void checkStandsWhenOpen(Subject &subject)
{
    ProbedDevice instrument(subject);
    const auto table = [&] {
        QVector<QPair<Device::DeviceFeature, QVariant>> rows;
        const auto features = instrument.offered();
        for (const auto feature : features)
            rows += {feature, instrument->descriptor(feature)};
        return rows;
    };
    auto early = table();
    instrument.recorder().setReaction([&](const Event &event) {
        if (event.kind == Event::OpenChanged && event.flag)
            early = table();
    });
    instrument.open();
    if (early != table()) {
        throw Broken{QStringLiteral("%1 features stood when openChanged(true) came, %2 a moment "
                                    "later, or their descriptors changed")
                         .arg(early.size())
                         .arg(instrument.offered().size())};
    }
}

static void checkOpenTwice(Subject &subject)
{
    ProbedDevice &instrument = subject.opened();
    const int start = instrument.seen().count();
    if (!instrument.callOpen())
        throw Broken{QStringLiteral("open() of an open device returned false")};
    subject.settle();
    if (instrument.seen().count() != start)
        throw Broken{QStringLiteral("open() of an open device emitted a signal")};
}

static void checkClose(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const int error = instrument->errorCode();
    const int start = instrument.seen().count();
    instrument.callClose();
    if (!instrument.awaitClosed())
        throw Broken{QStringLiteral("the device is still open or busy")};
    const int changes = instrument.seen().count(Event::OpenChanged, start);
    if (changes != 1)
        throw Broken{QStringLiteral("openChanged() came %1 times").arg(changes)};
    if (instrument->errorCode() != error)
        throw Broken{
            QStringLiteral("close() set error %1").arg(errorName(instrument->errorCode()))};
}

static void checkSilentAfterClose(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    instrument.callClose();
    instrument.awaitClosed();
    const int start = instrument.seen().count();
    subject.settle();
    if (instrument.seen().count() != start)
        throw Broken{QStringLiteral("the closed device emitted a signal")};
}

static void checkCloseClosed(Subject &subject)
{
    ProbedDevice instrument(subject);
    subject.settle();
    const int start = instrument.seen().count();
    instrument.callClose();
    subject.settle();
    if (instrument->isOpen() || instrument->errorCode() != 0 || instrument.seen().count() > start)
        throw Broken{QStringLiteral("close() of a closed device changed something")};
}

static void checkCloseWhileOpening(Subject &subject)
{
    QElapsedTimer clock;
    {
        ProbedDevice first(subject);
        clock.start();
        first.open();
    }
    const int openTime = int(clock.elapsed());
    ProbedDevice instrument(subject);
    instrument.callOpen();
    if (instrument->isOpen())
        throw NotApplicable{QStringLiteral("the device is open when open() returns")};
    instrument.callClose();
    subject.waitFor(2 * openTime, [&] { return instrument->isOpen(); });
    if (instrument->isOpen() || instrument->isBusy()
        || instrument.seen().count(Event::OpenChanged, 0) > 0)
        throw Broken{QStringLiteral("the device opened after close()")};
}

static void checkReopen(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const auto features = instrument.offered();
    QVector<QVariant> descriptors;
    for (const auto feature : features)
        descriptors += instrument->descriptor(feature);
    instrument.close();
    try {
        instrument.open();
    } catch (const Unmet &unmet) {
        throw Broken{QStringLiteral("the second time, %1").arg(unmet.why)};
    }
    if (instrument.offered() != features)
        throw Broken{QStringLiteral("the second time, the features differ")};
    for (int i = 0; i < features.size(); ++i) {
        if (!isSame(instrument->descriptor(features.at(i)), descriptors.at(i)))
            throw Broken{QStringLiteral("the second time, the descriptor of %1 differs")
                             .arg(featureName(features.at(i)))};
    }
}

static void checkErrorAroundClose(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const int error = instrument.provokeError();
    instrument.close();
    if (instrument->errorCode() != error)
        throw Broken{QStringLiteral("close() changed the error from %1 to %2")
                         .arg(errorName(error), errorName(instrument->errorCode()))};
    instrument.callOpen();
    subject.waitFor(subject.limits().open, [&] { return instrument->isOpen(); });
    if (instrument->errorCode() != 0)
        throw Broken{QStringLiteral("open() left error %1").arg(errorName(error))};
}

static void checkOpensOften(Subject &subject)
{
    Offences offences;
    offences.addStuck(subject, 410);
    offences.conclude();
    const int often = 6;
    for (int i = 0; i < often; ++i) {
        ProbedDevice instrument(subject);
        try {
            instrument.open();
        } catch (const Unmet &unmet) {
            offences.addStuck(subject, 410);
            offences.conclude();
            throw;
        }
        // Closed by its deletion, every second time in order.
        if (i % 2 == 0)
            instrument.close();
        else
            instrument.destroy();
    }
}

static void checkSettingsSurvive(Subject &subject)
{
    ProbedDevice instrument(subject);
    instrument.open();
    const auto features = instrument.configurable();
    bool found = false;
    for (const auto feature : features) {
        const QVariant configuration = someConfiguration(feature, instrument->descriptor(feature));
        if (!configuration.isValid())
            continue;
        found = true;
        instrument->setConfiguration(feature, configuration);
    }
    if (!found)
        throw NotApplicable{QStringLiteral("no feature that may be tried takes a configuration")};
    instrument.close();
    instrument.open();
    for (const auto feature : features) {
        const QVariant configuration = someConfiguration(feature, instrument->descriptor(feature));
        if (configuration.isValid() && !isSame(instrument->configuration(feature), configuration))
            throw Broken{
                QStringLiteral("the configuration of %1 changed").arg(featureName(feature))};
    }
}

QVector<Rule> openRules()
{
    return {
        {401, group, Severity::Failure, false, Needs::Instrument,
         "open() ends within 10 s: true and one openChanged(true) without an error, or an error "
         "with the device closed, which has been set already when open() returns false.",
         "An application waits for one of the two; with neither it waits for ever.",
         "Guard every step of opening with a timer that ends in setError() (ERROR_DEVICE_TIMEOUT, "
         "ERROR_DEVICE_CANT_OPEN), and call setOpen(true) once, as the last step.",
         checkOpens},
        {402, group, Severity::Recommendation, false, Needs::Open,
         "Features and descriptors stand when openChanged(true) is emitted, and in any case 2 s "
         "later.",
         "Front ends build their forms then; what comes later makes them flicker.",
         "Fill the feature table before setOpen(true).", checkStandsWhenOpen},
        {403, group, Severity::Failure, false, Needs::Open,
         "open() of an open device returns true and emits nothing.",
         "Two parts of an application may open the same device.",
         "Return early in open() when isOpen().", checkOpenTwice},
        {404, group, Severity::Failure, false, Needs::Open,
         "close() ends within 10 s in a closed, idle device: one openChanged(false), and no new "
         "error.",
         "Closing is what the user wants, not a fault.",
         "Drop the connection and call setStatus({}); do not report the end of the connection as "
         "an error.",
         checkClose},
        {405, group, Severity::Failure, false, Needs::Open, "A closed device emits nothing more.",
         "A late signal reaches an application that has moved on, and is taken for the answer to "
         "something else.",
         "Stop timers and drop pending answers in close() before anything is emitted.",
         checkSilentAfterClose},
        {406, group, Severity::Failure, false, Needs::Instrument,
         "close() of a closed device does nothing.", "Applications close on every way out.",
         "Let close() work from the state there is; never assume a connection.", checkCloseClosed},
        {407, group, Severity::Failure, false, Needs::Open,
         "close() while the device is opening withdraws the open().",
         "A device that opens afterwards holds the instrument, and nobody knows.",
         "Cancel the opening in close(), its timers included.", checkCloseWhileOpening},
        {408, group, Severity::Failure, false, Needs::Open,
         "A device that is opened again after close() has the same features and descriptors.",
         "The second try must not behave differently from the first.",
         "Set everything up in open() and tear everything down in close(); no one-time flags.",
         checkReopen},
        {409, group, Severity::Failure, false, Needs::Open,
         "An error outlives close() and is cleared by the next open().",
         "The user reads after closing what went wrong, and must not read it again after a "
         "successful open.",
         "Call setError(NO_DEVICE_ERROR, {}) at the start of open(), not in close().",
         checkErrorAroundClose},
        {410, group, Severity::Failure, false, Needs::Instrument,
         "An instrument that has opened opens again, as often as one likes, also when the device "
         "before was deleted while it was open.",
         "A port that is never released is found busy by the next one who opens it.",
         "Release the connection in close() and in the destructor.", checkOpensOften},
        {411, group, Severity::Failure, false, Needs::Open,
         "close() and open() leave the stored configurations as they are.",
         "What the user has set is lost, and the next run is made with something else.",
         "Never call setConfiguration() in a driver.", checkSettingsSurvive},
    };
}

} // namespace qel::conformance
