#include "logging.h"

Q_LOGGING_CATEGORY(LogCDevices, "qel.devices")
Q_LOGGING_CATEGORY(LogCDriver, "qel.devices.driver")
