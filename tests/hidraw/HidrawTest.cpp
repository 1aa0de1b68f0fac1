#include "FileDescriptor.h"
#include "Hid.h"
#include "PluggedDevice.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <QTimer>

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <functional>
#include <numeric>
#include <string_view>
#include <tuple>

namespace {

/// Whether the program finds udev running; nothing that umockdev mocks says so.
bool udevRuns = true;

} // namespace

/// Takes the C library's place.
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

using hid::DeviceRef;
using hid::ReportSize;
using Devices = std::vector<DeviceRef>;
using Reports = std::vector<Bytes>;

/// A report of the bytes `first`, `first` + 1 and so on.
Bytes reportOf(std::uint8_t first, std::size_t size = ReportSize)
{
    Bytes report(size);
    std::iota(report.begin(), report.end(), first);
    return report;
}

bool send(const DeviceRef &device)
{
    const Bytes report = reportOf(1);
    return device->setReport(std::span(report).first<ReportSize>());
}

/// The number that the next descriptor to be opened gets.
int nextDescriptor()
{
    return FileDescriptor(::dup(STDERR_FILENO)).get();
}

/// Puts something in a descriptor's place that always has something to read but can't be read.
void breakDescriptor(int descriptor)
{
    ASSERT_GE(::dup2(FileDescriptor(::open("/", O_RDONLY)).get(), descriptor), 0);
}

/// Gives or takes everybody's permission to open the node, also root's, who could do without it.
/// The group's bits limit what the access list gives a user.
void setPermitted(const PluggedDevice &unit, bool allowed)
{
    ::chmod(unit.path().c_str(), allowed ? 0660 : 0);
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> capabilities = {};
    auto &[effective, permitted, inheritable] = capabilities[0];
    ::syscall(SYS_capget, &header, capabilities.data());
    effective = allowed ? permitted : effective & ~(1U << CAP_DAC_OVERRIDE);
    ::syscall(SYS_capset, &header, capabilities.data());
}

/// A manager and what its callbacks were called with.
class Hidraw : public testing::Test
{
protected:
    void create()
    {
        manager = hid::createManager();
        manager->setDeviceMatching({0x1209, 0x0001, 0xFF00});
        manager->registerDeviceRemovalCallback(&Hidraw::take<&Hidraw::removals>, this);
        arrivals.clear();
        removals.clear();
    }
    void start()
    {
        create();
        EXPECT_TRUE(manager->open());
    }
    /// Plugs a device in, in place of the one before.
    void plugInAnew(const DeviceKind &kind = {})
    {
        unit.reset();
        unit = plugIn(kind);
    }
    /// Starts with a unit plugged in, whose node is not open yet.
    void startWithUnit()
    {
        plugInAnew();
        start();
        device = manager->copyDevices().at(0);
    }
    void followArrivals()
    {
        manager->registerDeviceMatchingCallback(&Hidraw::take<&Hidraw::arrivals>, this);
    }
    void listen(const DeviceRef &source, hid::Device::InputReportCallback callback = &input)
    {
        const auto buffer = std::span(guarded).subspan<ReportSize, ReportSize>();
        source->registerInputReportCallback(buffer, callback, this);
    }
    /// Lets the unit send a report and returns what comes of it.
    const Reports &received(const Bytes &report)
    {
        reports.clear();
        unit->queueReport(report);
        EXPECT_TRUE(waitUntil([&] { return !reports.empty(); }));
        return reports;
    }
    [[nodiscard]] QTimer &retryTimer() const
    {
        return *dynamic_cast<QObject &>(*manager).findChild<QTimer *>();
    }
    /// Runs the event loop until nothing is left to do. A descriptor that keeps the loop from
    /// sleeping fails the test.
    static void settle()
    {
        int turns = 0;
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
            ASSERT_LT(++turns, 10000);
        }
    }
    template <Devices Hidraw::*List>
    static void take(void *context, const DeviceRef &told)
    {
        (static_cast<Hidraw *>(context)->*List).push_back(told);
        static_cast<Hidraw *>(context)->afterCallback();
    }
    static void input(void *context, std::span<const std::uint8_t> report)
    {
        static_cast<Hidraw *>(context)->reports.emplace_back(report.begin(), report.end());
        static_cast<Hidraw *>(context)->afterCallback();
    }

    std::unique_ptr<PluggedDevice> unit;
    std::unique_ptr<hid::Manager> manager;
    DeviceRef device;
    Devices arrivals;
    Devices removals;
    Reports reports;
    std::function<void()> afterCallback = [] {};
    /// The registered buffer, with as many bytes on either side that nothing may touch.
    std::array<std::uint8_t, 3 *ReportSize> guarded = {};
};

TEST_F(Hidraw, FindsExactlyTheMatchingDevices)
{
    // clang-format off
    const std::vector<std::tuple<const char *, DeviceKind, std::size_t>> cases{
        {"the unit", {}, 1},
        {"vendor page second", {.descriptor = "05010906a101c00600ffa101c0"}, 1},
        {"its keyboard interface", {.descriptor = "05010906a101c0"}, 0},
        {"another vendor", {.hidId = "0003:00001208:00000001"}, 0},
        {"another product", {.hidId = "0003:00001209:00000002"}, 0},
        // None but a mocked device is like these.
        {"half an ID", {.hidId = "0003:00001209"}, 0},
        {"another node of it", {.subsystem = "input"}, 0},
    };
    // clang-format on
    for (const auto &[name, kind, found] : std::span(cases).first(areDevicesReal() ? 5 : 7)) {
        SCOPED_TRACE(name);
        plugInAnew(kind);
        start();
        EXPECT_EQ(manager->copyDevices().size(), found) << "at start";
        unit.reset();
        settle();
        EXPECT_EQ(removals.size(), found);

        followArrivals();
        plugInAnew(kind);
        settle();
        EXPECT_EQ(manager->copyDevices(), arrivals);
        EXPECT_EQ(arrivals.size(), found) << "plugged in later";
    }
}

TEST_F(Hidraw, ADeadNodeIsARemovalAtOnceAndOnlyOnce)
{
    for (const bool isReadable : {true, false}) {
        SCOPED_TRACE(isReadable ? "end of file" : "read error");
        startWithUnit();
        followArrivals();
        settle();
        const int node = nextDescriptor();
        ASSERT_TRUE(send(device)); // a reply is now waited for
        EXPECT_EQ(::fcntl(node, F_GETFD), FD_CLOEXEC) << "no child inherits it";
        isReadable ? unit->cut() : breakDescriptor(node);
        ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
        EXPECT_EQ(manager->copyDevices(), Devices());
        EXPECT_FALSE(send(device));

        unit->sendEvent("change");
        settle();
        unit.reset();
        settle();
        EXPECT_EQ(removals, Devices{device});
        EXPECT_EQ(arrivals, Devices{device});
    }
}

TEST_F(Hidraw, TheSameNodePluggedAgainIsANewDevice)
{
    startWithUnit();
    followArrivals();
    settle();
    plugInAnew();
    EXPECT_FALSE(send(device)) << "the removal is not known yet";
    unit->sendEvent("remove"); // takes back an arrival that is not known yet, either
    unit->sendEvent("add");
    settle();
    const DeviceRef again = manager->copyDevices().at(0);
    EXPECT_NE(again, device);
    EXPECT_EQ(arrivals, (Devices{device, again}));
    EXPECT_EQ(removals.size(), areDevicesReal() ? 1U : 2U);
    EXPECT_FALSE(send(device));
    EXPECT_TRUE(send(again));
}

TEST_F(Hidraw, WritesOnlyTheReportsBytesAndNeverMoreThanSixteen)
{
    startWithUnit();
    listen(device);
    // What is left of a line comes as a report of its own; hidraw drops it. So 17 is the last.
    // The kernel itself drops short ones, so a real device can't send them.
    const std::vector<std::size_t> sizes{1, 15, 16, 17};
    for (const std::size_t size : std::span(sizes).subspan(areDevicesReal() ? 2 : 0)) {
        SCOPED_TRACE(size);
        guarded.fill(0xC5);
        auto expected = guarded;
        const Bytes report = reportOf(1, std::min(size, ReportSize));
        std::ranges::copy(report, expected.begin() + ReportSize);
        EXPECT_EQ(received(reportOf(1, size)), Reports{report});
        EXPECT_EQ(guarded, expected);
    }
}

TEST_F(Hidraw, SaysWhetherAReportWentOut)
{
    startWithUnit();
    ASSERT_TRUE(send(device));
    ASSERT_TRUE(waitUntil([&] { return !unit->writes.empty(); }));
    Bytes expected = reportOf(1);
    expected.insert(expected.begin(), 0);
    EXPECT_EQ(unit->writes.front(), expected);
    if (areDevicesReal()) {
        GTEST_SKIP() << "a real device of this kind takes all reports";
    }
    // While the event loop does not run, nobody takes the reports, until there is no room for more.
    std::size_t sent = 1;
    while (sent < 10000 && send(device)) {
        ++sent;
    }
    EXPECT_FALSE(send(device)) << "nor is there for a single byte";
    EXPECT_TRUE(waitUntil([&] { return unit->writes.size() == sent; }));
}

TEST_F(Hidraw, CallsNothingThatWasSwitchedOffMeanwhile)
{
    startWithUnit();
    listen(device);
    unit->queueReport(reportOf(1));
    listen(device, nullptr);
    followArrivals();
    manager->registerDeviceMatchingCallback(nullptr, nullptr);
    settle();
    EXPECT_EQ(arrivals, Devices());
    EXPECT_EQ(guarded, decltype(guarded)());

    // Nor does the dropped report come up when somebody listens again.
    listen(device);
    EXPECT_EQ(received(reportOf(2)), Reports{reportOf(2)});

    // Registered twice, the arrival is still delivered once.
    followArrivals();
    followArrivals();
    settle();
    EXPECT_EQ(arrivals, Devices{device});

    // One round of the event loop finds the removal, the next one would deliver it.
    unit->cut();
    while (!manager->copyDevices().empty()) {
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    }
    manager->registerDeviceRemovalCallback(nullptr, nullptr);
    settle();
    EXPECT_EQ(removals, Devices());
}

TEST_F(Hidraw, AManagerAndItsDeviceCanGoAtAnyTime)
{
    startWithUnit();
    listen(device);
    followArrivals();
    manager.reset();
    settle();
    EXPECT_EQ(arrivals, Devices());
    EXPECT_FALSE(send(device));

    afterCallback = [this] {
        manager.reset();
        device.reset();
        arrivals.clear();
    };
    startWithUnit();
    followArrivals();
    EXPECT_TRUE(waitUntil([&] { return !manager; }));
    startWithUnit();
    listen(device);
    unit->queueReport(reportOf(1));
    EXPECT_EQ(received(reportOf(2)), Reports{reportOf(1)});
    settle();
    EXPECT_EQ(reports.size(), 1U);
}

TEST_F(Hidraw, ARefusedNodeIsNamedOnceAndComesAsANewDeviceWhenItCanBeOpened)
{
    startWithUnit();
    followArrivals();
    settle();
    setPermitted(*unit, false);
    testing::internal::CaptureStderr();
    listen(device);
    EXPECT_TRUE(QSignalSpy(&retryTimer(), &QTimer::timeout).wait());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot open " + unit->node() +
                  ": Permission denied; install the udev rule 70-kavelo.rules and plug the unit in "
                  "again\n");
    EXPECT_EQ(manager->copyDevices(), Devices{device});

    unit->queueReport(reportOf(1)); // for whoever was there before
    setPermitted(*unit, true);
    EXPECT_FALSE(send(device));
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    settle();
    EXPECT_EQ(removals, Devices{device});
    const DeviceRef again = manager->copyDevices().at(0);
    EXPECT_EQ(arrivals, (Devices{device, again}));
    EXPECT_FALSE(retryTimer().isActive());
    listen(again);
    EXPECT_EQ(received(reportOf(2)), Reports{reportOf(2)});
}

TEST_F(Hidraw, KeepsTryingWhenUdevFailsAndSaysSoOnce)
{
    plugInAnew();
    create();
    testing::internal::CaptureStderr();
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const int monitor = nextDescriptor();
    // No number is left for another descriptor; a limit of 0 would stop the mock's own polls, too.
    const rlimit none = {static_cast<rlim_t>(monitor), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(manager->open());
    ::setrlimit(RLIMIT_NOFILE, &before);
    ASSERT_TRUE(waitUntil([&] { return !manager->copyDevices().empty(); }));
    device = manager->copyDevices().at(0);

    plugInAnew();
    breakDescriptor(monitor); // and with the socket go the two events that wait in it
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot listen to udev: Too many open files\n");
    EXPECT_EQ(removals, Devices{device});
    EXPECT_FALSE(retryTimer().isActive());
    device = manager->copyDevices().at(0);
    unit.reset();
    settle();
    EXPECT_EQ(removals.back(), device);
}

TEST_F(Hidraw, ComparesTheSetByItselfWhereUdevDoesNotRunAndSaysSoOnce)
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
    EXPECT_TRUE(waitUntil([&] { return !retryTimer().isActive(); }));
    plugInAnew();
    settle();
    EXPECT_EQ(arrivals.size(), 2U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot listen to udev: it does not run\n");
}

} // namespace
} // namespace kavelo::test
