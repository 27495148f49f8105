#include "target.h"

#include "commands.h"
#include "interrupt.h"
#include "prompt.h"
#include "statusline.h"
#include "tool.h"
#include "watchdog.h"

#include <qelfrontend/enumeration.h>
#include <qelfrontend/frontend.h>
#include <qelfrontend/selection.h>
#include <qelfrontend/trail.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <unistd.h>

namespace qelctl {

using namespace qel::frontend;
using qel::devices::Device;
using qel::devices::DeviceBroker;

std::unique_ptr<Device> createTarget(const QString &argument, bool exact)
{
    QString problem;
    const auto devices = enumerate().devices();
    auto info = selectDevice(argument, devices, &problem, Abbreviation::Refused);
    const bool isPerson = isatty(STDIN_FILENO) || isatty(STDERR_FILENO);
    if (!info && isPerson && !exact) {
        info = selectDevice(argument, devices, &problem);
        if (info)
            complain(text("qelctl-taken", titleOf(*info)));
    }
    if (!info) {
        tellAbsences(); // one of them may have what is wanted
        complain(problem);
        return nullptr;
    }
    const TrailMark mark(info->driver(), "createDevice()");
    std::unique_ptr<Device> device(DeviceBroker::createDevice(*info));
    if (!device)
        complain(text("qelctl-not-created", titleOf(*info), info->driver()));
    return device;
}

Outcome await(Run *run, Interrupt *interrupt)
{
    QEventLoop loop;
    QObject::connect(run, &Run::finished, &loop, &QEventLoop::quit);
    QObject::connect(interrupt, &Interrupt::requested, run, &Run::cancel);
    run->start();
    // A driver may tell the application to quit, which ends the loop before the run.
    loop.exec();
    return run->outcome();
}

void closeTarget(Device *device, const Interrupt &interrupt, int code)
{
    if (!interrupt.wasRequested())
        limitProcess(ladderTime, code == Done ? int(TimedOut) : code);
    QEventLoop loop;
    QObject::connect(device, &Device::openChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(2000, &loop, &QEventLoop::quit);
    {
        const TrailMark mark(device->driver(), "close()");
        device->close();
    }
    if (device->isOpen())
        loop.exec();
}

int openTarget(Device *device, Interrupt *interrupt, const std::function<bool()> &hasEnded)
{
    RunRequest request;
    request.deadline = std::chrono::seconds(30);
    Run opening(device, request);
    Prompt prompt(Prompt::Policy::Ask);
    QObject::connect(&opening, &Run::actionRequired, &prompt,
                     [&](int id, const QString &action) { prompt.ask(&opening, id, action); });
    const Outcome outcome = await(&opening, interrupt);
    clearStatus();
    if (hasEnded && hasEnded())
        return RunFailed;
    if (interrupt->wasRequested())
        return fail(Interrupted, text("qelctl-interrupted"));
    return outcome.isResult() ? int(Done) : report(outcome, titleOf(device->deviceInfo()));
}

static ExitCode codeFor(const Outcome &outcome)
{
    switch (outcome.kind) {
    case Outcome::Unfinished:
        return DriverFailed;
    case Outcome::Result:
        return Done;
    case Outcome::Refused:
        return outcome.code != 0 ? DeviceFailed : RunFailed;
    case Outcome::CannotOpen:
        return CannotOpen;
    case Outcome::Failed:
        return outcome.code != 0 ? DeviceFailed : RunFailed;
    case Outcome::AbortedByUser:
        return AbortedByUser;
    case Outcome::TimedOut:
        return TimedOut;
    case Outcome::DeviceGone:
        return DeviceFailed;
    }
    return RunFailed;
}

int report(const Outcome &outcome, const QString &device)
{
    QString line = device + QStringLiteral(": ")
        + (outcome.kind == Outcome::Unfinished ? text("qelctl-run-unfinished") : outcome.sentence);
    if (!outcome.additionalInfo.isEmpty())
        line += QLatin1Char(' ') + outcome.additionalInfo;
    return fail(codeFor(outcome), line);
}

QString titleOf(const qel::devices::DeviceInfo &info)
{
    const QString name = info.name().isEmpty() ? devicePath(info) : info.name();
    return info.serial().isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, info.serial());
}

} // namespace qelctl
