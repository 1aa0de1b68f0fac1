#include "FileDescriptor.h"
#include "Hid.h"
#include "MockBus.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/netlink.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <numeric>
#include <tuple>
#include <utility>

namespace kavelo::test {
namespace {

using hid::DeviceRef;
using hid::Report;

constexpr hid::Matching TheUnit = {0x1209, 0x0001, 0xFF00};

Report reportOf(std::uint8_t first)
{
    Report report = {};
    std::iota(report.begin(), report.end(), first);
    return report;
}

/// Runs the event loop until `holds`, or for so long that something must be wrong.
bool waitUntil(const std::function<bool()> &holds)
{
    return QTest::qWaitFor(holds, 20000);
}

/// The one datagram socket of the process: the one that udev's events come through.
int monitorDescriptor()
{
    int type = 0;
    socklen_t size = sizeof(type);
    int fd = 1000;
    while (fd >= 0 &&
           (::getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) != 0 || type != SOCK_DGRAM)) {
        --fd;
    }
    return fd;
}

/// A socket like udev's that has lost messages for want of room, which its reader is yet to learn.
int overflowedSocket()
{
    const int overflowed = ::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK, NETLINK_USERSOCK);
    const FileDescriptor sender(::socket(AF_NETLINK, SOCK_RAW, NETLINK_USERSOCK));
    const int room = 1;
    ::setsockopt(overflowed, SOL_SOCKET, SO_RCVBUF, &room, sizeof(room));
    sockaddr_nl group = {.nl_family = AF_NETLINK, .nl_pad = 0, .nl_pid = 0, .nl_groups = 1};
    const auto *address = reinterpret_cast<const sockaddr *>(&group);
    ::bind(overflowed, address, sizeof(group));
    for (int i = 0; i < 10; ++i) {
        const Bytes message(1000);
        ::sendto(sender.get(), message.data(), message.size(), 0, address, sizeof(group));
    }
    return overflowed;
}

/// While it lives, root has to keep to the permissions of files like anybody else.
class WithoutFileOverride
{
public:
    WithoutFileOverride()
    {
        ::syscall(SYS_capget, &m_header, m_before.data());
        auto reduced = m_before;
        reduced[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
        ::syscall(SYS_capset, &m_header, reduced.data());
    }
    WithoutFileOverride(const WithoutFileOverride &) = delete;
    WithoutFileOverride &operator=(const WithoutFileOverride &) = delete;
    ~WithoutFileOverride() { ::syscall(SYS_capset, &m_header, m_before.data()); }

private:
    __user_cap_header_struct m_header = {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> m_before = {};
};

/// A manager on a mock bus and what its callbacks were called with.
class Hidraw : public testing::Test
{
protected:
    void start()
    {
        manager.reset();
        manager = openManager();
        manager->registerDeviceRemovalCallback(&Hidraw::take<&Hidraw::removals>, this);
    }
    static std::unique_ptr<hid::Manager> openManager()
    {
        auto opened = hid::createManager();
        opened->setDeviceMatching(TheUnit);
        EXPECT_TRUE(opened->open());
        return opened;
    }
    [[nodiscard]] QTimer &retryTimer() const
    {
        return *dynamic_cast<QObject &>(*manager).findChild<QTimer *>();
    }
    void followArrivals()
    {
        manager->registerDeviceMatchingCallback(&Hidraw::take<&Hidraw::arrivals>, this);
    }
    void listen(const DeviceRef &source)
    {
        source->registerInputReportCallback(buffer(), &Hidraw::input, this);
    }
    /// Starts with a unit plugged in and an open node.
    void startWithUnit()
    {
        node = bus.plug();
        start();
        ASSERT_EQ(manager->copyDevices().size(), 1U);
        device = manager->copyDevices().front();
        listen(device);
    }
    /// Runs the event loop until nothing is left of what the bus has sent so far. A descriptor that
    /// keeps the loop from sleeping fails the test.
    static void settle()
    {
        int turns = 0;
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
            ASSERT_LT(++turns, 10000);
        }
    }
    std::span<std::uint8_t, hid::ReportSize> buffer()
    {
        return std::span(guarded).subspan<hid::ReportSize, hid::ReportSize>();
    }

    template <std::vector<DeviceRef> Hidraw::*List>
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

    MockBus bus;
    std::unique_ptr<hid::Manager> manager;
    std::string node;
    DeviceRef device;
    std::vector<DeviceRef> arrivals;
    std::vector<DeviceRef> removals;
    std::vector<Bytes> reports;
    std::function<void()> afterCallback = [] {};
    /// The registered buffer, with as many bytes on either side that nothing may touch.
    std::array<std::uint8_t, 3 *hid::ReportSize> guarded = {};
};

TEST_F(Hidraw, FindsExactlyTheMatchingDevices)
{
    struct Case
    {
        const char *name;
        PluggedDevice options;
        bool found;
    };
    const std::vector<Case> cases = {
        {"the unit", {}, true},
        {"vendor page second",
         {.descriptor = {0x05, 1, 0xA1, 1, 0xC0, 0x06, 0x00, 0xFF, 0xA1, 1}},
         true},
        {"its keyboard interface", {.descriptor = {0x05, 1, 0x09, 6, 0xA1, 1, 0xC0}}, false},
        {"another node of it", {.subsystem = QStringLiteral("input")}, false},
        {"another vendor", {.vendorId = 0x1208}, false},
        {"another product", {.productId = 0x0002}, false},
    };
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        const std::string atStart = bus.plug(row.options);
        start();
        EXPECT_EQ(manager->copyDevices().size(), row.found ? 1U : 0U) << "at start";
        bus.unplug(atStart);
        settle();
        EXPECT_EQ(manager->copyDevices().size(), 0U);
        EXPECT_EQ(removals.size(), row.found ? 1U : 0U);
        removals.clear();

        followArrivals();
        const std::string later = bus.plug(row.options);
        settle();
        EXPECT_EQ(manager->copyDevices(), arrivals);
        EXPECT_EQ(arrivals.size(), row.found ? 1U : 0U) << "plugged in later";
        bus.unplug(later);
        settle();
        arrivals.clear();
        removals.clear();
    }
}

TEST_F(Hidraw, ADeadNodeIsARemovalAtOnceAndOnlyOnce)
{
    for (const bool endOfFile : {false, true}) {
        SCOPED_TRACE(endOfFile ? "end of file" : "read error");
        startWithUnit();
        followArrivals();
        ASSERT_TRUE(device->setReport(reportOf(1))); // a reply is now waited for
        if (endOfFile) {
            bus.queueReport(node, {});
        } else {
            bus.cut(node);
        }
        ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
        EXPECT_EQ(removals, std::vector{device});
        EXPECT_TRUE(manager->copyDevices().empty());
        EXPECT_FALSE(device->setReport(Report{}));

        arrivals.clear();
        bus.sendEvent(node, "change");
        settle();
        bus.unplug(node);
        settle();
        EXPECT_EQ(removals, std::vector{device});
        EXPECT_TRUE(arrivals.empty());
        EXPECT_TRUE(reports.empty());
        removals.clear();
    }
}

TEST_F(Hidraw, TheSameNodePluggedAgainIsANewDevice)
{
    startWithUnit();
    followArrivals();
    bus.unplug(node);
    ASSERT_EQ(bus.plug(), node);
    ASSERT_TRUE(waitUntil([&] { return manager->copyDevices() != std::vector{device}; }));
    settle();
    EXPECT_EQ(removals, std::vector{device});
    ASSERT_EQ(manager->copyDevices().size(), 1U);
    const DeviceRef again = manager->copyDevices().front();
    EXPECT_NE(again, device);
    EXPECT_EQ(arrivals.back(), again);

    EXPECT_FALSE(device->setReport(reportOf(1)));
    EXPECT_TRUE(again->setReport(reportOf(2)));
    EXPECT_EQ(bus.writes(node).size(), 1U);
}

TEST_F(Hidraw, NeverOpensANodeThatNowBelongsToAnotherDevice)
{
    node = bus.plug();
    start();
    device = manager->copyDevices().front();
    bus.unplug(node);
    ASSERT_EQ(bus.plug({.productId = 2}), node);
    // The event loop has not run, so the removal is not known yet.
    EXPECT_FALSE(device->setReport(Report{}));
    EXPECT_TRUE(bus.writes(node).empty());
}

TEST_F(Hidraw, WritesOnlyTheReportsBytesAndNeverMoreThanSixteen)
{
    startWithUnit();
    for (const std::size_t size : {1U, 15U, 16U, 17U, 64U}) {
        SCOPED_TRACE(size);
        guarded.fill(0xC5);
        reports.clear();
        Bytes report(size);
        std::iota(report.begin(), report.end(), std::uint8_t{1});
        bus.queueReport(node, report);
        ASSERT_TRUE(waitUntil([&] { return !reports.empty(); }));
        report.resize(std::min(size, hid::ReportSize));
        EXPECT_EQ(reports, std::vector<Bytes>{report});
        auto expected = decltype(guarded)();
        expected.fill(0xC5);
        std::ranges::copy(report, expected.begin() + hid::ReportSize);
        EXPECT_EQ(guarded, expected);
    }
}

TEST_F(Hidraw, SaysWhetherAReportWentOut)
{
    startWithUnit();
    using Row = std::tuple<int, int, bool>; // error, bytes missing, sent
    for (const auto &[error, missing, sent] :
         {Row{0, 0, true}, Row{EPIPE, 0, false}, Row{EAGAIN, 0, false}, Row{0, 1, false}}) {
        bus.setWriteResult(node, error, missing);
        EXPECT_EQ(device->setReport(reportOf(7)), sent) << error << ' ' << missing;
    }
    Bytes expected(1 + hid::ReportSize);
    std::iota(expected.begin() + 1, expected.end(), std::uint8_t{7});
    EXPECT_EQ(bus.writes(node).front(), expected);
    EXPECT_EQ(manager->copyDevices(), std::vector{device});
}

TEST_F(Hidraw, CallsNothingThatWasSwitchedOffMeanwhile)
{
    startWithUnit();
    bus.queueReport(node, reportOf(1));
    device->registerInputReportCallback(buffer(), nullptr, nullptr);
    followArrivals();
    manager->registerDeviceMatchingCallback(nullptr, nullptr);
    ASSERT_TRUE(waitUntil([&] { return bus.unreadReports(node) == 0; }));
    settle();
    EXPECT_TRUE(arrivals.empty());
    EXPECT_TRUE(reports.empty());
    EXPECT_TRUE(std::ranges::equal(buffer(), Report{}));

    // Nor does the dropped report come up when somebody listens again.
    listen(device);
    bus.queueReport(node, reportOf(2));
    ASSERT_TRUE(waitUntil([&] { return !reports.empty(); }));
    EXPECT_TRUE(std::ranges::equal(reports.front(), reportOf(2)));

    // Registered twice, the arrival is still delivered once.
    followArrivals();
    followArrivals();
    settle();
    EXPECT_EQ(arrivals, std::vector{device});

    // One round of the event loop finds the removal, the next one would deliver it.
    bus.cut(node);
    while (!manager->copyDevices().empty()) {
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    }
    manager->registerDeviceRemovalCallback(nullptr, nullptr);
    settle();
    EXPECT_TRUE(removals.empty());
}

TEST_F(Hidraw, AnArrivalIsNotDeliveredForADeviceThatIsGoneAgain)
{
    start();
    followArrivals();
    node = bus.plug();
    bus.sendEvent(node, "remove"); // both events are waiting when the event loop runs
    settle();
    EXPECT_TRUE(arrivals.empty());
    EXPECT_EQ(removals.size(), 1U);
}

TEST_F(Hidraw, AManagerCanGoWhileAnArrivalWaits)
{
    startWithUnit();
    followArrivals();
    manager.reset();
    settle();
    EXPECT_TRUE(arrivals.empty());
    listen(device);
    EXPECT_FALSE(device->setReport(Report{}));
}

TEST_F(Hidraw, AManagerAndItsDeviceCanGoInsideACallback)
{
    afterCallback = [this] {
        manager.reset();
        device.reset();
        arrivals.clear();
    };
    for (const bool inArrival : {false, true}) {
        SCOPED_TRACE(inArrival ? "arrival" : "input report");
        startWithUnit();
        if (inArrival) {
            followArrivals();
        }
        bus.queueReport(node, reportOf(1));
        bus.queueReport(node, reportOf(2));
        ASSERT_TRUE(waitUntil([&] { return !manager; }));
        settle();
        EXPECT_EQ(reports.size(), inArrival ? 0U : 1U);
        reports.clear();
        bus.unplug(node);
    }
}

TEST_F(Hidraw, ARefusedNodeIsNamedOnceAndComesAsANewDeviceWhenItCanBeOpened)
{
    const WithoutFileOverride asAnyUser;
    std::unique_ptr<hid::Manager> otherProgram;
    struct Case
    {
        const char *reason;
        std::function<void()> refuse;
        std::function<void()> cure;
    };
    const std::array<Case, 2> cases = {{
        {"Permission denied; install the udev rule 70-kavelo.rules",
         [&] { bus.setPermitted(node, false); }, [&] { bus.setPermitted(node, true); }},
        {"another program uses it",
         [&] {
             otherProgram = openManager();
             EXPECT_TRUE(otherProgram->copyDevices().front()->setReport(Report{}));
         },
         [&] { otherProgram.reset(); }},
    }};
    for (const Case &row : cases) {
        SCOPED_TRACE(row.reason);
        node = bus.plug();
        row.refuse();
        start();
        followArrivals();
        settle();
        device = arrivals.back();
        testing::internal::CaptureStderr();
        listen(device);
        QSignalSpy retries(&retryTimer(), &QTimer::timeout);
        EXPECT_TRUE(retries.wait());
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(said.starts_with("kavelo: cannot open " + node + ": " + row.reason)) << said;
        EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
        EXPECT_EQ(manager->copyDevices(), std::vector{device});

        bus.queueReport(node, reportOf(1)); // for whoever was there before
        row.cure();
        EXPECT_FALSE(device->setReport(Report{}));
        ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
        EXPECT_EQ(removals, std::vector{device});
        settle();
        EXPECT_EQ(manager->copyDevices(), std::vector{arrivals.back()});
        EXPECT_NE(arrivals.back(), device);
        EXPECT_FALSE(retryTimer().isActive());
        listen(arrivals.back());
        bus.queueReport(node, reportOf(2));
        ASSERT_TRUE(waitUntil([&] { return !reports.empty(); }));
        EXPECT_TRUE(std::ranges::equal(reports.front(), reportOf(2)));
        bus.unplug(node);
        settle();
        removals.clear();
        reports.clear();
    }
}

TEST_F(Hidraw, FindsOutByItselfWhatUdevCouldNotTell)
{
    const auto notASocket = [] { return ::open("/dev/null", O_RDONLY); };
    const std::array<std::pair<const char *, int (*)()>, 3> failures = {{
        {"kavelo: cannot listen to udev: Socket operation on non-socket\n", notASocket},
        {"", notASocket},
        {"", overflowedSocket},
    }};
    start();
    for (const auto &[expected, replacement] : failures) {
        node = bus.plug();
        ASSERT_TRUE(waitUntil([&] { return !manager->copyDevices().empty(); }));
        device = manager->copyDevices().front();
        bus.unplug(node);
        node = bus.plug({.number = 901});
        // With the socket go the two events that wait in it.
        const FileDescriptor broken(replacement());
        ASSERT_GE(::dup2(broken.get(), monitorDescriptor()), 0);
        testing::internal::CaptureStderr();
        EXPECT_TRUE(waitUntil([&] { return !removals.empty(); }));
        settle();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
        EXPECT_EQ(removals, std::vector{device});
        EXPECT_EQ(manager->copyDevices().size(), 1U);
        EXPECT_FALSE(retryTimer().isActive());
        bus.unplug(node);
        settle();
        removals.clear();
    }
}

TEST_F(Hidraw, KeepsTryingWhenItCannotEvenBegin)
{
    node = bus.plug();
    manager = hid::createManager();
    manager->setDeviceMatching(TheUnit);
    testing::internal::CaptureStderr();
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    // No number is left for another descriptor; a limit of 0 would stop the mock's own polls, too.
    const int next = FileDescriptor(::dup(STDERR_FILENO)).get();
    const rlimit none = {static_cast<rlim_t>(next), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(manager->open());
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot listen to udev: Too many open files\n");
    EXPECT_TRUE(waitUntil([&] { return !manager->copyDevices().empty(); }));
    EXPECT_FALSE(retryTimer().isActive());
}

} // namespace
} // namespace kavelo::test
