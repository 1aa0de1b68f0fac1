#include "SimulatedHidManager.h"

#include "Protocol.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"

#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace kavelo;
using Devices = std::vector<hid::DeviceRef>;

namespace {

/// Lets everything that is due happen.
void turnLoop()
{
    QTest::qWait(5);
}

void countReport(void *context, std::span<const std::uint8_t> report)
{
    EXPECT_EQ(report.size(), hid::ReportSize);
    ++*static_cast<int *>(context);
}

class SimulatedHidManagerTest : public testing::Test
{
protected:
    void SetUp() override { bus::reset(); }
    void TearDown() override { bus::reset(); }

    void openManager()
    {
        manager = hid::createManager();
        manager->setDeviceMatching(KaveloMatching);
        ASSERT_TRUE(manager->open());
    }

    SimulatedUnit unit;
    SimulatedUnit secondUnit;
    std::unique_ptr<hid::Manager> manager;
};

TEST_F(SimulatedHidManagerTest, FindsMatchingUnitsInTheOrderOfPlugging)
{
    SimulatedUnit stranger;
    stranger.setMatching({.vendorId = 0x1209, .productId = 0x0001, .usagePage = 0x0001});
    bus::plugIn(stranger);
    bus::plugIn(secondUnit);
    openManager();
    bus::plugIn(unit);
    bus::plugIn(unit);
    const Devices devices = manager->copyDevices();
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(manager->copyDevices(), devices);

    unit.memory().numberOfPedals = 1;
    hid::Report buffer{};
    int count = 0;
    devices[1]->registerInputReportCallback(buffer, countReport, &count);
    ASSERT_TRUE(devices[1]->setReport(hid::Report{0x91}));
    EXPECT_EQ(count, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return count == 1; }));
    EXPECT_EQ(buffer, (hid::Report{0x91, 0, 1}));
}

TEST_F(SimulatedHidManagerTest, WritesTheBufferOnlyWhileACallbackIsOn)
{
    bus::plugIn(unit);
    openManager();
    const hid::DeviceRef device = manager->copyDevices().at(0);
    hid::Report buffer{};
    int count = 0;
    device->registerInputReportCallback(buffer, countReport, &count);
    ASSERT_TRUE(device->setReport(hid::Report{0x91}));
    device->registerInputReportCallback(buffer, nullptr, nullptr);
    turnLoop();
    EXPECT_EQ(buffer, hid::Report{});

    // A device that is gone neither sends nor hears the unit's next stay on the bus.
    device->registerInputReportCallback(buffer, countReport, &count);
    bus::unplug(unit);
    EXPECT_FALSE(device->setReport(hid::Report{0x91}));
    bus::plugIn(unit);
    ASSERT_TRUE(manager->copyDevices().at(0)->setReport(hid::Report{0x91}));
    turnLoop();
    EXPECT_FALSE(device->setReport(hid::Report{0x91}));
    EXPECT_EQ(buffer, hid::Report{});
    EXPECT_EQ(count, 0);
}

} // namespace
