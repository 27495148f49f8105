#include "closing.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <memory>
#include <utility>

namespace qel::frontend {

using qel::devices::Device;

void closeDevice(Device *device, std::chrono::milliseconds limit, QObject *context,
                 std::function<void(bool isClosed)> done)
{
    // Everything is tied to this timer, which lives until `done` was called.
    auto *timer = new QTimer(context);
    timer->setSingleShot(true);
    const QPointer<Device> watched(device);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, watched, done = std::move(done)] {
        const bool isClosed = !watched || !watched->isOpen();
        timer->deleteLater();
        done(isClosed);
    });
    QObject::connect(device, &QObject::destroyed, timer, [timer] { timer->start(0); });
    QObject::connect(device, &Device::openChanged, timer, [timer](bool isOpen) {
        if (!isOpen)
            timer->start(0);
    });
    const QPointer<QTimer> self(timer);
    timer->start(limit);
    device->close();
    if (self && (!watched || !watched->isOpen()))
        timer->start(0);
}

} // namespace qel::frontend
