#include "KernelDevice.h"
#include "MockDevice.h"

#include <dlfcn.h>
#include <linux/hidraw.h>

#include <cstdarg>

/// Takes the C library's place. A mocked node is a terminal; a hidraw node has a report descriptor,
/// by whose size the library hidapi recognises it.
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
