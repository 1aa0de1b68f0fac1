#include "KernelDevice.h"
#include "MockDevice.h"

#include <dlfcn.h>
#include <linux/hidraw.h>

#include <cstdarg>

/// Replaces the function of the C library. The library hidapi asks a node for the size of its
/// report descriptor before it uses the node. A mocked node is a terminal, which does not know that
/// request.
extern "C" int ioctl(int file, unsigned long request, ...) noexcept
{
    if (request == HIDIOCGRDESCSIZE && !kavelo::test::areDevicesReal()) {
        return 0;
    }
    std::va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    static const auto next = reinterpret_cast<decltype(&ioctl)>(::dlsym(RTLD_NEXT, "ioctl"));
    return next(file, request, argument);
}

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
