#include "plugin.h"

#include "driver.h"

#include <memory>

namespace qel::simulator {

void Plugin::registerDrivers()
{
    qel::devices::DeviceBroker::addDriver(std::make_shared<Driver>());
}

} // namespace qel::simulator
