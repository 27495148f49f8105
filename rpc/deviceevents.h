#ifndef RPC_DEVICEEVENTS_H
#define RPC_DEVICEEVENTS_H

#include "instruments.pb.h"

#include <qelvalues/observer.h>

#include <qeldevices/device.h>

#include <QtCore/QSet>

#include <vector>

namespace qel::rpc {

/// What a device is and says, as messages.
class DeviceEvents
{
public:
    /// The device must outlive this.
    explicit DeviceEvents(const devices::Device &device);

    /// Everything there is to know of the device now.
    wire::Event state() const;
    /// What the device has just said. Of no kind when nobody needs to hear it.
    wire::Event event(const values::Event &said);
    /// Of the messages of one kind, the last replaces those before; 0 is the kind of the others.
    static int kindOf(const values::Event &said);

private:
    std::vector<devices::Device::DeviceFeature> available() const;

    const devices::Device &m_device;
    // Features that are no enumerators are known once they have been heard of.
    QSet<int> m_heardOf;
};

} // namespace qel::rpc

#endif
