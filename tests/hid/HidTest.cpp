#include "HidTest.h"

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <numeric>
#include <span>
#include <tuple>

namespace kavelo::test {
namespace {

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

/// Counts the calls that another thread has posted to an object.
struct PostedCalls : QObject
{
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::MetaCall ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// Gives or takes the permission to open the node, from root as well. The mode's group bits are
/// also the limit of what the node's access list gives to a user.
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

TEST_F(HidTest, FindsExactlyTheMatchingDevices)
{
    // clang-format off
    const std::vector<std::tuple<const char *, DeviceKind, std::size_t>> cases{
        {"the unit", {}, 1},
        {"vendor page second", {.descriptor = "05010906a101c00600ff0901a101c0"}, 1},
        {"its keyboard interface", {.descriptor = "05010906a101c0"}, 0},
        {"another vendor", {.hidId = "0003:00001208:00000001"}, 0},
        {"another product", {.hidId = "0003:00001209:00000002"}, 0},
        // Only mocked devices can be like these.
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

TEST_F(HidTest, ADeadNodeIsARemovalAtOnceAndOnlyOnce)
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
        EXPECT_EQ(std::ranges::count(manager->copyDevices(), device), 0);
        EXPECT_FALSE(send(device));

        unit->sendEvent("change");
        settle();
        unit.reset();
        settle();
        // A manager that looks takes the device for a new one while the system still lists it.
        const std::size_t most = isLooking ? 2 : 1;
        for (const Devices &told : {removals, arrivals}) {
            EXPECT_EQ(std::ranges::count(told, device), 1);
            EXPECT_LE(told.size(), most);
        }
    }
}

TEST_F(HidTest, TheSameNodePluggedAgainIsANewDevice)
{
    startWithUnit();
    followArrivals();
    settle();
    // A manager that looks tells two devices of one name apart only by the end of the open one.
    EXPECT_TRUE(!isLooking || send(device));
    plugInAnew();
    EXPECT_FALSE(send(device)) << "the removal is not known yet";
    unit->sendEvent("remove"); // also cancels an arrival that is not announced yet
    unit->sendEvent("add");
    ASSERT_TRUE(waitUntil([&] { return arrivals.size() == 2; }));
    settle();
    const DeviceRef again = manager->copyDevices().at(0);
    EXPECT_NE(again, device);
    EXPECT_EQ(arrivals, (Devices{device, again}));
    EXPECT_EQ(removals.size(), areDevicesReal() || isLooking ? 1U : 2U);
    EXPECT_FALSE(send(device));
    EXPECT_TRUE(send(again));
}

TEST_F(HidTest, WritesOnlyTheReportsBytesAndNeverMoreThanSixteen)
{
    startWithUnit();
    listen(device);
    // From a mocked node, the rest of a long report comes as a report of its own, so the long one
    // is the last. The kernel drops short ones.
    const std::vector<std::size_t> sizes{1, 15, 16, 17};
    const bool isRestSeen = !areDevicesReal() && isLooking;
    for (const std::size_t size :
         std::span(sizes).first(isRestSeen ? 3 : 4).subspan(areDevicesReal() ? 2 : 0)) {
        SCOPED_TRACE(size);
        guarded.fill(0xC5);
        auto expected = guarded;
        const Bytes report = reportOf(1, std::min(size, ReportSize));
        std::ranges::copy(report, expected.begin() + ReportSize);
        EXPECT_EQ(received(reportOf(1, size)), Reports{report});
        EXPECT_EQ(guarded, expected);
    }
}

TEST_F(HidTest, SaysWhetherAReportWentOut)
{
    startWithUnit();
    const int node = nextDescriptor();
    ASSERT_TRUE(send(device));
    ASSERT_TRUE(waitUntil([&] { return !unit->writes.empty(); }));
    Bytes expected = reportOf(1);
    expected.insert(expected.begin(), 0);
    EXPECT_EQ(unit->writes.front(), expected);
    if (isLooking) {
        // With hidapi, a failing send ends the device. A pipe's end can be waited for but not
        // written.
        std::array<int, 2> pipe = {};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        ::dup2(pipe[0], node);
        EXPECT_FALSE(send(device));
        EXPECT_TRUE(waitUntil([&] { return removals == Devices{device}; }));
        std::ranges::for_each(pipe, ::close);
        return;
    }
    if (areDevicesReal()) {
        GTEST_SKIP() << "a real device of this kind takes all reports";
    }
    // While the event loop does not run, no report is read, until there is no room for another one.
    std::size_t sent = 1;
    while (sent < 10000 && send(device)) {
        ++sent;
    }
    EXPECT_FALSE(send(device)) << "nor is there room for a single byte";
    EXPECT_TRUE(waitUntil([&] { return unit->writes.size() == sent; }));
}

TEST_F(HidTest, CallsNothingThatWasSwitchedOffMeanwhile)
{
    startWithUnit();
    listen(device);
    PostedCalls calls;
    dynamic_cast<QObject &>(*device).installEventFilter(&calls);
    unit->queueReport(reportOf(1));
    listen(device, nullptr);
    // hidapi's reader may come to the report late.
    EXPECT_TRUE(waitUntil([&] { return !isLooking || calls.count > 0; }));
    followArrivals();
    manager->registerDeviceMatchingCallback(nullptr, nullptr);
    settle();
    EXPECT_EQ(arrivals, Devices());
    EXPECT_EQ(guarded, decltype(guarded)());

    // The dropped report does not arrive after the next registration, either.
    listen(device);
    EXPECT_EQ(received(reportOf(2)), Reports{reportOf(2)});

    // After two registrations, the arrival is delivered once.
    followArrivals();
    followArrivals();
    settle();
    EXPECT_EQ(arrivals, Devices{device});

    if (isLooking) {
        return; // hidapi's removals are posted by the reader, and delivered in the same round
    }
    // One round of the event loop finds the removal, the next one would deliver it.
    unit->cut();
    while (!manager->copyDevices().empty()) {
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    }
    manager->registerDeviceRemovalCallback(nullptr, nullptr);
    settle();
    EXPECT_EQ(removals, Devices());
}

TEST_F(HidTest, AManagerAndItsDeviceCanGoAtAnyTime)
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

TEST_F(HidTest, ARefusedNodeIsNamedOnceAndComesAsANewDeviceWhenItCanBeOpened)
{
    startWithUnit();
    followArrivals();
    settle();
    setPermitted(*unit, false);
    testing::internal::CaptureStderr();
    listen(device);
    EXPECT_TRUE(QSignalSpy(&timer(), &QTimer::timeout).wait());
    const std::string reason = "Permission denied";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kavelo: cannot open " + unit->node() + ": " +
                  (isLooking ? "Failed to open a device with path '" + unit->node() + "': " + reason
                             : reason + "; install the udev rule 70-kavelo.rules and plug the unit "
                                        "in again") +
                  "\n");
    EXPECT_EQ(manager->copyDevices(), Devices{device});

    unit->queueReport(reportOf(1)); // as if to the program that used it before
    setPermitted(*unit, true);
    EXPECT_FALSE(send(device));
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    settle();
    EXPECT_EQ(removals, Devices{device});
    const DeviceRef again = manager->copyDevices().at(0);
    EXPECT_EQ(arrivals, (Devices{device, again}));
    EXPECT_EQ(timer().isActive(), isLooking);
    listen(again);
    EXPECT_EQ(received(reportOf(2)), Reports{reportOf(2)});
}

} // namespace
} // namespace kavelo::test
