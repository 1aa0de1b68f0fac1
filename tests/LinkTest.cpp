#include "HID_PnP.h"
#include "KaveloTest.h"
#include "SimulatedBus.h"

#include <QTimer>

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

TEST_F(LinkTest, TheRemovalOfAnotherUnitIsNothingToTheLink)
{
    SimulatedUnit second;
    bus::plugIn(unit);
    bus::plugIn(second);
    const HID_PnP link;
    const hid::DeviceRef held = link.myDevice();
    DeviceDetectedChanged = false;
    bus::unplug(second);
    runTicks(1);
    EXPECT_EQ(link.myDevice(), held);
    EXPECT_FALSE(DeviceDetectedChanged);
}

TEST_F(LinkTest, FailuresAreToldOnceAndTheNextExchangeGetsItsOwnReply)
{
    TickPeriod = std::chrono::milliseconds(20);
    unit.setReplyDelay(18 * TickPeriod); // late enough for any tick that ends a wait too soon
    bus::plugIn(unit);
    HID_PnP link;
    for (const FaultKind fault : {FaultKind::RefuseSend, FaultKind::DropReply}) {
        const bool isTimeout = fault == FaultKind::DropReply;
        for (const bool messageOn : {MESSAGE_ON, MESSAGE_OFF}) {
            SCOPED_TRACE(::testing::Message() << isTimeout << messageOn);
            QStringList told = boxes.messages();
            if (messageOn) {
                told << (isTimeout ? QStringLiteral("timeout") : QStringLiteral("sending error"));
                boxes.answerWith(Qt::Key_Return);
            }
            unit.setFault({.kind = fault, .exchange = 1});
            ::testing::internal::CaptureStdout();
            EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, messageOn));
            const std::string printed = ::testing::internal::GetCapturedStdout();
            EXPECT_EQ(printed.find("timeout\n") != std::string::npos, isTimeout);
            EXPECT_EQ(boxes.messages(), told);

            Q_EMIT unit.inputReport({0xEE, 0xEE}); // late, or asked for by nobody
            ASSERT_FALSE(link.Communicate(GET_NUMBER_OF_PEDALS, MESSAGE_ON));
            EXPECT_EQ(InputPacketBuffer, (hid::Report{GET_NUMBER_OF_PEDALS, 0, MaxPedals}));
            EXPECT_FALSE(Flag_timeout);
        }
    }
}

TEST_F(LinkTest, AnExchangeTellsItsOwnFateWhateverIsSentBeforeItReturns)
{
    TickPeriod = std::chrono::milliseconds(20);
    unit.setReplyDelay(std::chrono::milliseconds(5));
    bus::plugIn(unit);
    HID_PnP link;
    for (const bool isOneWay : {true, false}) {
        for (const FaultKind fault : {FaultKind::None, FaultKind::DropReply}) {
            SCOPED_TRACE(::testing::Message() << isOneWay << int(fault));
            requests.clear();
            unit.setFault({.kind = fault, .exchange = 1});
            QStringList told = boxes.messages();
            if (fault != FaultKind::None) {
                told << QStringLiteral("timeout");
                boxes.answerWith(Qt::Key_Return);
            }
            QTimer::singleShot(0, &link, [&] {
                if (isOneWay) {
                    link.Communicate_AdditionalData();
                } else {
                    EXPECT_FALSE(link.Communicate(GET_NUMBER_OF_PEDALS, MESSAGE_ON));
                    EXPECT_EQ(InputPacketBuffer[0], GET_NUMBER_OF_PEDALS);
                }
            });
            EXPECT_EQ(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON), fault != FaultKind::None);
            EXPECT_EQ(boxes.messages(), told);
            EXPECT_GE(requests.size(), 2U);
            if (fault == FaultKind::None) {
                EXPECT_EQ(InputPacketBuffer[0], GET_VERSION_NUMBER);
            }
            ASSERT_TRUE(waitUntil([&] { return !link.isReplyOwed(); }));
        }
    }
}

} // namespace
} // namespace kavelo
