#ifndef QELCTL_TARGET_H
#define QELCTL_TARGET_H

#include <qelfrontend/run.h>

#include <qeldevices/device.h>

#include <QtCore/QString>

#include <functional>
#include <memory>

namespace qelctl {

class Interrupt;

/// Creates the device that `argument` means. At a terminal its beginning will do, and a line says
/// which device was taken, unless it has to be `exact`. Null, with a complaint printed, when there
/// is none or several.
std::unique_ptr<qel::devices::Device> createTarget(const QString &argument, bool exact = false);

/// Starts `run` and waits until it has ended. Ctrl-C cancels it.
qel::frontend::Outcome await(qel::frontend::Run *run, Interrupt *interrupt);

/// Closes `device` and gives it a moment to get there, at the end of a command that ends with
/// `code`. From here on the process has a limit: a driver may hang while it closes, and while it is
/// destroyed.
void closeTarget(qel::devices::Device *device, const Interrupt &interrupt, int code = 0);

/// Opens `device`. Done, or the exit code after a complaint; Interrupted for Ctrl-C. A command that
/// may end the event loop meanwhile, after a complaint of its own, says so in `hasEnded`.
int openTarget(qel::devices::Device *device, Interrupt *interrupt,
               const std::function<bool()> &hasEnded = {});

/// Prints what `outcome`, which is no result, says about `device`.
/// @return the exit code that stands for it
int report(const qel::frontend::Outcome &outcome, const QString &device);

/// How a device is called in messages: its name and serial.
QString titleOf(const qel::devices::DeviceInfo &info);

} // namespace qelctl

#endif
