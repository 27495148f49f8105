#ifndef MAKER_H
#define MAKER_H

#include <qeldevices/devicebroker.h>

// What a maker's library may offer to several plugins of his: a driver, made from its name.
Q_DECL_EXPORT std::shared_ptr<qel::devices::DeviceDriver> makersDriver(const QString &name);

#endif
