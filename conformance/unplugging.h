#ifndef QEL_CONFORMANCE_UNPLUGGING_H
#define QEL_CONFORMANCE_UNPLUGGING_H

#include "probeddevice.h"

namespace qel::conformance {

/// What was seen when a person pulled the plug of the instrument, and put it in again.
struct Unplugging
{
    devices::DeviceInfo::Interface interface = devices::DeviceInfo::UnknownInterface;
    /// What was being run again and again; DF_None when no run lasts, and the device was idle.
    devices::Device::DeviceFeature feature = devices::Device::DF_None;
    /// The events since the start of the last of these runs.
    QVector<Event> events;
    bool isClosed = false;      ///< whether the device has closed, in time
    int errorCode = 0;          ///< of the device, then
    bool isListed = false;      ///< whether it was listed without its plug
    bool isListedAgain = false; ///< whether it was listed when the plug was in again
    bool isOpenedAgain = false; ///< whether a new device of it opened
    QString reopening;          ///< why not, in words

    /// The endings among the events.
    QVector<Event> endings() const;
};

/// Has a person do it. Throws Hindered when nobody does.
Unplugging makeUnplugging(Subject &subject);

} // namespace qel::conformance

#endif
