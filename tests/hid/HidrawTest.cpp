#include "HidTest.h"

#include <dlfcn.h>
#include <sys/resource.h>

#include <cerrno>
#include <string_view>

namespace {

/// Whether the program sees udev's socket, which exists while udev runs. umockdev makes none.
bool udevRuns = true;

} // namespace

/// Replaces the function of the C library.
extern "C" int access(const char *path, int mode) noexcept
{
    if (path == std::string_view("/run/udev/control")) {
        errno = ENOENT;
        return udevRuns ? 0 : -1;
    }
    static const auto next = reinterpret_cast<decltype(&access)>(::dlsym(RTLD_NEXT, "access"));
    return next(path, mode);
}

namespace kavelo::test {
namespace {

using HidrawTest = HidTest;

TEST_F(HidrawTest, KeepsTryingWhenUdevFailsAndSaysSoOnce)
{
    plugInAnew();
    create();
    testing::internal::CaptureStderr();
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const int monitor = nextDescriptor();
    // Lets the program open no more descriptors. A limit of 0 would also stop the mock's polls.
    const rlimit none = {static_cast<rlim_t>(monitor), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(manager->open());
    ::setrlimit(RLIMIT_NOFILE, &before);
    ASSERT_TRUE(waitUntil([&] { return !manager->copyDevices().empty(); }));
    device = manager->copyDevices().at(0);

    plugInAnew();
    breakDescriptor(monitor); // and its two unread events are lost
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot listen to udev: Too many open files\n");
    EXPECT_EQ(removals, Devices{device});
    EXPECT_FALSE(timer().isActive());
    device = manager->copyDevices().at(0);
    unit.reset();
    settle();
    EXPECT_EQ(removals.back(), device);
}

TEST_F(HidrawTest, ComparesTheSetByItselfWhereUdevDoesNotRunAndSaysSoOnce)
{
    udevRuns = false;
    create();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(manager->open());
    followArrivals();
    plugInAnew();
    EXPECT_TRUE(waitUntil([&] { return !arrivals.empty(); }));
    unit.reset();
    EXPECT_TRUE(waitUntil([&] { return !removals.empty(); }));
    udevRuns = true;
    EXPECT_TRUE(waitUntil([&] { return !timer().isActive(); }));
    plugInAnew();
    settle();
    EXPECT_EQ(arrivals.size(), 2U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot listen to udev: it does not run\n");
}

} // namespace
} // namespace kavelo::test
