#include "AdditionalDataTransfer.h"
#include "HID_PnP.h"
#include "KaveloTest.h"
#include "SimulatedBus.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <numeric>

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

TEST_F(LinkTest, FollowsArrivalAndRemovalAndKeepsToOneUnit)
{
    SimulatedUnit second;
    const HID_PnP link;
    DeviceDetectedChanged = false;
    bus::plugIn(unit);
    bus::plugIn(second);
    ASSERT_TRUE(waitUntil([] { return DeviceDetected; }));
    const hid::DeviceRef first = link.myDevice();

    DeviceDetectedChanged = false;
    bus::unplug(second);
    runTicks(1);
    EXPECT_FALSE(DeviceDetectedChanged) << "another unit's removal is nothing to the link";
    EXPECT_EQ(link.myDevice(), first);

    bus::plugIn(second);
    StandardSettingDialogOpen = true;
    bus::unplug(unit);
    ASSERT_TRUE(waitUntil([&] { return link.myDevice() && link.myDevice() != first; }))
        << "the waiting unit is taken";
    EXPECT_TRUE(CloseStandardSetting);

    CloseStandardSetting = StandardSettingDialogOpen = false;
    bus::unplug(second);
    ASSERT_TRUE(waitUntil([] { return !isConnected; }));
    EXPECT_FALSE(CloseStandardSetting) << "no dialog is open";
}

TEST_F(LinkTest, ExchangesOneRequestForItsReply)
{
    unit.memory().version = {2, 7, 9};
    bus::plugIn(unit);
    HID_PnP link;
    OutputPacketBuffer[1] = 4;
    ASSERT_FALSE(link.Communicate(GET_OUTPUT_MODE_AND_DATA, MESSAGE_ON));
    EXPECT_EQ(InputPacketBuffer, (hid::Report{GET_OUTPUT_MODE_AND_DATA, 4, 0, 0, 0x4F}));
    ASSERT_FALSE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_EQ(InputPacketBuffer, (hid::Report{GET_VERSION_NUMBER, 4, 2, 7, 9}));
    EXPECT_EQ(requests.back(), (hid::Report{GET_VERSION_NUMBER, 4})) << "byte 1 is left as it was";
}

TEST_F(LinkTest, WithoutAUnitFailsSilently)
{
    HID_PnP link;
    EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_EQ(boxes.messages(), QStringList());
}

/// What the first two exchanges meet with.
struct FailureCase
{
    FaultKind first;
    bool messageOn;
    const char *box;
    bool isLate = false; ///< the reply to the first comes in when the second is out
    FaultKind second = FaultKind::None;
};

class LinkFailureTest : public LinkTest, public ::testing::WithParamInterface<FailureCase>
{
};

TEST_P(LinkFailureTest, IsToldOnceAndTheNextExchangesGetTheirOwnReplies)
{
    TickPeriod = std::chrono::milliseconds(20);
    const FailureCase &failure = GetParam();
    bus::plugIn(unit);
    unit.setReplyDelay(std::chrono::milliseconds(5));
    HID_PnP link;
    unit.setFault({.kind = failure.first, .exchange = 1});
    const QStringList told{QLatin1String(failure.box)};
    if (failure.messageOn) {
        boxes.answerWith(Qt::Key_Return);
    }
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, failure.messageOn));
    const std::string printed = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.find("timeout\n") != std::string::npos, Flag_timeout);
    EXPECT_EQ(boxes.messages(), failure.messageOn ? told : QStringList());

    unit.setFault({.kind = failure.second, .exchange = 1});
    QObject::connect(
        &unit, &SimulatedUnit::exchanged, &link,
        [&](const Exchange &exchange) {
            if (failure.isLate && exchange.number == 2 &&
                exchange.outcome == Exchange::Outcome::Waiting) {
                Q_EMIT unit.inputReport({0xEE, 0xEE});
            }
        },
        Qt::QueuedConnection);
    for (const std::uint8_t command : {GET_NUMBER_OF_PEDALS, GET_PEDAL_STATE, GET_VERSION_NUMBER}) {
        ASSERT_FALSE(link.Communicate(command, MESSAGE_ON));
        EXPECT_EQ(InputPacketBuffer[0], command);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Faults, LinkFailureTest,
    ::testing::Values(FailureCase{FaultKind::RefuseSend, MESSAGE_ON, "sending error"},
                      FailureCase{FaultKind::RefuseSend, MESSAGE_OFF, ""},
                      FailureCase{FaultKind::DropReply, MESSAGE_ON, "timeout"},
                      FailureCase{FaultKind::DropReply, MESSAGE_OFF, ""},
                      FailureCase{FaultKind::DropReply, MESSAGE_ON, "timeout", true},
                      FailureCase{FaultKind::DropReply, MESSAGE_ON, "timeout", true,
                                  FaultKind::DropReply}));

TEST_F(LinkTest, AReportNobodyAskedForAnswersNothing)
{
    bus::plugIn(unit);
    HID_PnP link;
    Q_EMIT unit.inputReport({0xEE, 0xEE, 0xEE});
    EXPECT_TRUE(Flag_input);
    ASSERT_FALSE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_EQ(InputPacketBuffer[0], GET_VERSION_NUMBER);
}

TEST_F(LinkTest, OneWayRequestsNeverAnswerALaterExchange)
{
    unit.setReplyDelay(std::chrono::milliseconds(30));
    bus::plugIn(unit);
    HID_PnP link;
    SelectedPedalNo = 3;
    link.Communicate_AdditionalData();
    link.Communicate_AdditionalData();
    hid::Report expected;
    expected.fill(0xFF);
    std::copy_n(hid::Report{GET_ADDITIONAL_DATA, 3, 0}.begin(), 3, expected.begin());
    EXPECT_EQ(requests, (std::vector{expected, expected}));
    ASSERT_FALSE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_EQ(InputPacketBuffer[0], GET_VERSION_NUMBER);
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

TEST_F(LinkTest, ARequestNeverReachesAUnitThatItWasNotMeantFor)
{
    SimulatedUnit other;
    bus::plugIn(unit);
    bus::plugIn(other);
    HID_PnP link;
    unit.setFault({.kind = FaultKind::DropReply, .exchange = 1});
    EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_OFF));

    // The write waits for the reply that is owed; the units change places meanwhile.
    const UnitMemory before = other.memory();
    QTimer::singleShot(50, &unit, [this] { bus::unplug(unit); });
    OutputMode[0] = POINTER_MOVE;
    fillSetOutputModeAndData(0);
    EXPECT_TRUE(link.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON));
    EXPECT_EQ(other.memory(), before);
}

TEST_F(LinkTest, ClosingEndsAWaitAtOnceWithoutAMessage)
{
    unit.setFault({.kind = FaultKind::DropReply, .exchange = 0});
    bus::plugIn(unit);
    HID_PnP link;
    QTimer::singleShot(50, &link, &HID_PnP::close);
    EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_FALSE(Flag_timeout);
    EXPECT_TRUE(link.Communicate(GET_VERSION_NUMBER, MESSAGE_ON));
    EXPECT_EQ(boxes.messages(), QStringList());
}

TEST_F(LinkTest, AdditionalDataComesInFivePiecesAndStopsAtTheFirstFailure)
{
    AdditionalBlock &block = unit.memory().pedals[2].additional;
    std::iota(block.begin(), block.end(), std::uint8_t{1});
    bus::plugIn(unit);
    HID_PnP link;

    unit.setFault({.kind = FaultKind::RefuseSend, .exchange = 3});
    EXPECT_TRUE(readAdditionalData(link, 2, MESSAGE_OFF));
    AdditionalBlock partly{};
    std::copy_n(block.begin(), 26, partly.begin());
    EXPECT_EQ(AdditionalData[2], partly);

    requests.clear();
    EXPECT_FALSE(readAdditionalData(link, 2, MESSAGE_OFF));
    EXPECT_EQ(AdditionalData[2], block);
    ASSERT_EQ(requests.size(), 5U);
    for (std::size_t piece = 0; piece < requests.size(); ++piece) {
        EXPECT_EQ(requests[piece], (hid::Report{GET_ADDITIONAL_DATA, 2, std::uint8_t(piece)}));
    }
}

} // namespace
} // namespace kavelo
