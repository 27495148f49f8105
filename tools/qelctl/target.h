#ifndef QELCTL_TARGET_H
#define QELCTL_TARGET_H

#include <qelfrontend/run.h>

#include <qeldevices/device.h>

#include <QtCore/QString>

#include <memory>

namespace qelctl {

class Interrupt;

/// Creates the device that `argument` means. Null, with a complaint printed, when there is none or
/// several.
std::unique_ptr<qel::devices::Device> createTarget(const QString &argument);

/// Starts `run` and waits until it has ended. Ctrl-C cancels it.
qel::frontend::Outcome await(qel::frontend::Run *run, Interrupt *interrupt);

/// Closes `device` and gives it a moment to get there.
void closeTarget(qel::devices::Device *device);

/// Opens `device`. Done, or the exit code after a complaint; Interrupted for Ctrl-C.
int openTarget(qel::devices::Device *device, Interrupt *interrupt);

/// Prints what `outcome`, which is no result, says about `device`.
/// @return the exit code that stands for it
int report(const qel::frontend::Outcome &outcome, const QString &device);

/// How a device is called in messages: its name and serial.
QString titleOf(const qel::devices::DeviceInfo &info);

} // namespace qelctl

#endif
