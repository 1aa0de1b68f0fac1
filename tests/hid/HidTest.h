#pragma once

#include "FileDescriptor.h"
#include "Hid.h"
#include "PluggedDevice.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace kavelo::test {

using hid::DeviceRef;
using hid::ReportSize;
using Devices = std::vector<DeviceRef>;
using Reports = std::vector<Bytes>;

/// The number that the next descriptor to be opened gets.
inline int nextDescriptor()
{
    return FileDescriptor(::dup(STDERR_FILENO)).get();
}

/// Puts a file in a descriptor's place that always has something to read but cannot be read.
inline void breakDescriptor(int descriptor)
{
    ASSERT_GE(::dup2(FileDescriptor(::open("/", O_RDONLY)).get(), descriptor), 0);
}

/// A HID manager, and what its callbacks were called with.
class HidTest : public testing::Test
{
protected:
    void create()
    {
        manager = hid::createManager();
        manager->setDeviceMatching({0x1209, 0x0001, 0xFF00});
        manager->registerDeviceRemovalCallback(&HidTest::take<&HidTest::removals>, this);
        timer().setInterval(200); // saves time, but leaves some between two looks
        arrivals.clear();
        removals.clear();
    }
    void start()
    {
        create();
        EXPECT_TRUE(manager->open());
        isLooking = timer().isActive();
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
        manager->registerDeviceMatchingCallback(&HidTest::take<&HidTest::arrivals>, this);
    }
    void listen(const DeviceRef &source, hid::Device::InputReportCallback callback = &input)
    {
        const auto buffer = std::span(guarded).subspan<ReportSize, ReportSize>();
        source->registerInputReportCallback(buffer, callback, this);
    }
    /// Lets the unit send a report and returns what the program receives.
    const Reports &received(const Bytes &report)
    {
        reports.clear();
        unit->queueReport(report);
        EXPECT_TRUE(waitUntil([&] { return !reports.empty(); }));
        return reports;
    }
    /// The manager's only timer, at which it compares its set with the system's devices.
    [[nodiscard]] QTimer &timer() const
    {
        return *dynamic_cast<QObject &>(*manager).findChild<QTimer *>();
    }
    /// Runs the event loop until the manager has found what has changed and nothing is left to do.
    /// A descriptor that keeps the loop from sleeping fails the test.
    void settle()
    {
        if (manager && timer().isActive()) {
            EXPECT_TRUE(QSignalSpy(&timer(), &QTimer::timeout).wait());
        }
        int turns = 0;
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
            ASSERT_LT(++turns, 10000);
        }
    }
    template <Devices HidTest::*List>
    static void take(void *context, const DeviceRef &told)
    {
        (static_cast<HidTest *>(context)->*List).push_back(told);
        static_cast<HidTest *>(context)->afterCallback();
    }
    static void input(void *context, std::span<const std::uint8_t> report)
    {
        static_cast<HidTest *>(context)->reports.emplace_back(report.begin(), report.end());
        static_cast<HidTest *>(context)->afterCallback();
    }

    /// Whether the manager gets no events from the system and looks for changes at a timer instead.
    bool isLooking = false;
    std::unique_ptr<PluggedDevice> unit;
    std::unique_ptr<hid::Manager> manager;
    DeviceRef device;
    Devices arrivals;
    Devices removals;
    Reports reports;
    std::function<void()> afterCallback = [] {};
    /// The registered buffer, between as many bytes on each side that must not change.
    std::array<std::uint8_t, 3 *ReportSize> guarded = {};
};

} // namespace kavelo::test
