#include "HID_PnP.h"
#include "KaveloTest.h"
#include "SimulatedBus.h"

namespace kavelo {
namespace {

class LinkTest : public KaveloTest
{
};

TEST_F(LinkTest, StartLeavesAChangePendingWithAndWithoutAUnit)
{
    for (const bool plugged : {false, true}) {
        DeviceDetectedChanged = false;
        if (plugged) {
            bus::plugIn(unit);
        }
        const HID_PnP link;
        EXPECT_TRUE(DeviceDetectedChanged);
        EXPECT_EQ(DeviceDetected, plugged);
        EXPECT_EQ(isConnected, plugged);
        EXPECT_EQ(link.myDevice() != nullptr, plugged);
    }
}

} // namespace
} // namespace kavelo
