#include "maker.h"

#include "../../plugins/testdriver.h"

std::shared_ptr<qel::devices::DeviceDriver> makersDriver(const QString &name)
{
    return std::make_shared<TestDriver>(name, "from the maker's library");
}
