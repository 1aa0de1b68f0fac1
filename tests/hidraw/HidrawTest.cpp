#include "Hid.h"
#include "MockBus.h"
#include "RunLoop.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <functional>
#include <numeric>
#include <random>
#include <tuple>

namespace kavelo::test {
namespace {

using hid::DeviceRef;
using hid::Report;
using namespace std::chrono_literals;

constexpr hid::Matching TheUnit = {0x1209, 0x0001, 0xFF00};

const Bytes KeyboardDescriptor = {0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0xC0};

Bytes joined(Bytes first, const Bytes &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes randomBytes(std::size_t size)
{
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes every time
    Bytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

Report reportOf(std::uint8_t first)
{
    Report report = {};
    std::iota(report.begin(), report.end(), first);
    return report;
}

/// Runs the event loop until `holds`, or for so long that something must be wrong.
bool waitUntil(const std::function<bool()> &holds)
{
    const QDeadlineTimer deadline(20s);
    while (!holds() && !deadline.hasExpired()) {
        runEventLoop(100ms);
    }
    return holds();
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
        manager = hid::createManager();
        manager->setDeviceMatching(TheUnit);
        ASSERT_TRUE(manager->open());
        manager->registerDeviceRemovalCallback(&Hidraw::removal, this);
    }
    void followArrivals() { manager->registerDeviceMatchingCallback(&Hidraw::arrival, this); }
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
    /// Runs the event loop until nothing is left of what the bus has sent so far.
    static void settle()
    {
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
        }
    }
    std::span<std::uint8_t, hid::ReportSize> buffer()
    {
        return std::span(guarded).subspan<hid::ReportSize, hid::ReportSize>();
    }

    static void arrival(void *context, const DeviceRef &arrived)
    {
        static_cast<Hidraw *>(context)->arrivals.push_back(arrived);
        static_cast<Hidraw *>(context)->afterCallback();
    }
    static void removal(void *context, const DeviceRef &removed)
    {
        static_cast<Hidraw *>(context)->removals.push_back(removed);
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
        {"vendor page second", {.descriptor = joined(KeyboardDescriptor, unitDescriptor())}, true},
        {"its keyboard interface", {.descriptor = KeyboardDescriptor}, false},
        {"another vendor", {.vendorId = 0x1208}, false},
        {"another product", {.productId = 0x0002}, false},
        {"no descriptor", {.descriptor = {}}, false},
        {"truncated descriptor", {.descriptor = {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1}}, false},
        {"random descriptor", {.descriptor = randomBytes(4096)}, false},
    };
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        const std::string atStart = bus.plug(row.options);
        start();
        EXPECT_EQ(manager->copyDevices().size(), row.found ? 1U : 0U) << "at start";
        bus.unplug(atStart);
        settle();
        EXPECT_EQ(manager->copyDevices().size(), 0U);

        followArrivals();
        const std::string later = bus.plug(row.options);
        settle();
        EXPECT_EQ(manager->copyDevices(), arrivals);
        EXPECT_EQ(arrivals.size(), row.found ? 1U : 0U) << "plugged in later";
        bus.unplug(later);
        arrivals.clear();
    }
}

TEST_F(Hidraw, DeliversThroughTheEventLoopAndEachDeviceOnce)
{
    startWithUnit();
    followArrivals();
    EXPECT_TRUE(arrivals.empty());
    EXPECT_EQ(manager->copyDevices().front(), device);
    for (const char *action : {"add", "bind", "change", "add"}) {
        bus.sendEvent(node, action);
    }
    settle();
    EXPECT_EQ(arrivals, std::vector{device});
    EXPECT_EQ(manager->copyDevices(), std::vector{device});
}

TEST_F(Hidraw, SecondUnitWaitsUntilTheFirstGoes)
{
    startWithUnit();
    manager->registerDeviceMatchingCallback(nullptr, nullptr);
    bus.plug({.number = 901});
    settle();
    ASSERT_EQ(manager->copyDevices().size(), 2U);
    const DeviceRef second = manager->copyDevices().back();
    EXPECT_EQ(manager->copyDevices().front(), device);
    EXPECT_TRUE(arrivals.empty());

    bus.unplug(node);
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    EXPECT_EQ(removals, std::vector{device});
    followArrivals();
    ASSERT_TRUE(waitUntil([&] { return !arrivals.empty(); }));
    EXPECT_EQ(arrivals, std::vector{second});
    EXPECT_TRUE(second->setReport(Report{}));
}

TEST_F(Hidraw, ReportsTheRemovalOfADeviceThatNobodyOpened)
{
    node = bus.plug();
    start();
    bus.unplug(node);
    settle();
    EXPECT_EQ(removals.size(), 1U);
    EXPECT_TRUE(manager->copyDevices().empty());
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
    bus.queueReport(node, reportOf(3));
    listen(again);
    ASSERT_TRUE(waitUntil([&] { return !reports.empty(); }));
    EXPECT_TRUE(std::ranges::equal(buffer(), reportOf(3)));
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

TEST_F(Hidraw, TakesABurstInOrder)
{
    startWithUnit();
    constexpr int Count = 200;
    for (int i = 0; i < Count; ++i) {
        bus.queueReport(node, reportOf(static_cast<std::uint8_t>(i)));
    }
    ASSERT_TRUE(waitUntil([&] { return reports.size() == Count; }));
    for (int i = 0; i < Count; ++i) {
        const Report expected = reportOf(static_cast<std::uint8_t>(i));
        EXPECT_TRUE(std::ranges::equal(reports[static_cast<std::size_t>(i)], expected)) << i;
    }
}

TEST_F(Hidraw, WritesOnlyTheReportsBytesAndNeverMoreThanSixteen)
{
    startWithUnit();
    guarded.fill(0xC5);
    const auto untouched = guarded;
    for (const std::size_t size : {1U, 15U, 16U, 17U, 64U}) {
        SCOPED_TRACE(size);
        guarded = untouched;
        reports.clear();
        const Bytes report = randomBytes(size);
        bus.queueReport(node, report);
        ASSERT_TRUE(waitUntil([&] { return !reports.empty(); }));
        const auto kept = static_cast<std::ptrdiff_t>(std::min(size, hid::ReportSize));
        const Bytes expected(report.begin(), report.begin() + kept);
        EXPECT_EQ(reports, std::vector<Bytes>{expected});
        auto whole = untouched;
        std::ranges::copy(expected, whole.begin() + hid::ReportSize);
        EXPECT_EQ(guarded, whole);
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
    const Report report = reportOf(7);
    EXPECT_EQ(bus.writes(node).front(), joined({0}, Bytes(report.begin(), report.end())));
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

TEST_F(Hidraw, AManagerCanGoWhileDeliveriesWait)
{
    startWithUnit();
    followArrivals();
    bus.queueReport(node, reportOf(1));
    manager.reset();
    settle();
    EXPECT_TRUE(arrivals.empty());
    EXPECT_TRUE(reports.empty());
    EXPECT_FALSE(device->setReport(Report{}));
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

TEST_F(Hidraw, ANodeWithoutPermissionStaysAndIsNamedOnce)
{
    for (const bool tellsUdev : {false, true}) {
        SCOPED_TRACE(tellsUdev ? "cured, and udev says so" : "cured, noticed at the next use");
        node = bus.plug();
        start();
        followArrivals();
        settle();
        device = arrivals.back();
        bus.setPermitted(node, false);
        testing::internal::CaptureStderr();
        {
            const WithoutFileOverride asAnyUser;
            listen(device);
            EXPECT_FALSE(device->setReport(Report{}));
            bus.sendEvent(node, "change");
            settle();
        }
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
        for (const std::string &part :
             {node, std::string("denied"), std::string("70-kavelo.rules")}) {
            EXPECT_NE(said.find(part), std::string::npos) << said;
        }
        EXPECT_EQ(manager->copyDevices(), std::vector{device});

        bus.setPermitted(node, true);
        EXPECT_EQ(!tellsUdev && device->setReport(Report{}), !tellsUdev);
        bus.sendEvent(node, "change");
        settle();
        // Whoever was refused for good so far gets the device anew.
        EXPECT_EQ(removals.size(), tellsUdev ? 1U : 0U);
        EXPECT_EQ(manager->copyDevices(), std::vector{arrivals.back()});
        EXPECT_EQ(arrivals.back() != device, tellsUdev);
        listen(arrivals.back());
        bus.queueReport(node, reportOf(4));
        EXPECT_TRUE(waitUntil([&] { return !reports.empty(); }));
        bus.unplug(node);
        settle();
        removals.clear();
        reports.clear();
    }
}

TEST_F(Hidraw, SleepsWhileNothingHappensEvenOnADeadNode)
{
    startWithUnit();
    bus.cut(node);
    ASSERT_TRUE(waitUntil([&] { return !removals.empty(); }));
    int wakeUps = 0;
    const QObject scope;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &scope,
                     [&] { ++wakeUps; });
    const QDeadlineTimer deadline(300ms);
    while (!deadline.hasExpired()) {
        runEventLoop(100ms);
    }
    EXPECT_LT(wakeUps, 50);
}

} // namespace
} // namespace kavelo::test
