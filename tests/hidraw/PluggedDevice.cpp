#include "KernelDevice.h"
#include "MockDevice.h"

namespace kavelo::test {

bool areDevicesReal()
{
    return !MockDevice::isPrepared();
}

std::unique_ptr<PluggedDevice> plugIn(const DeviceKind &kind)
{
    if (areDevicesReal()) {
        return std::make_unique<KernelDevice>(kind);
    }
    return std::make_unique<MockDevice>(kind);
}

} // namespace kavelo::test
