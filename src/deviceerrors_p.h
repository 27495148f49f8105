#ifndef QELDEVICES_DEVICEERRORS_P_H
#define QELDEVICES_DEVICEERRORS_P_H

#include <QtCore/QString>

namespace qel::devices {

/// The translation id of `code`, or that of ERROR_DEVICE_UNKNOWN for a code without one.
/// Any thread may call.
QString mapErrorToTrId(int code);

} // namespace qel::devices

#endif
