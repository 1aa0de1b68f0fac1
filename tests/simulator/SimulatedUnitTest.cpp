#include "SimulatedUnit.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <numeric>
#include <vector>

using namespace kavelo;
using namespace std::chrono_literals;
using Outcome = Exchange::Outcome;

namespace {

class SimulatedUnitTest : public testing::Test
{
protected:
    SimulatedUnitTest()
    {
        QObject::connect(&unit, &SimulatedUnit::inputReport,
                         [this](const hid::Report &report) { replies.push_back(report); });
        QObject::connect(&unit, &SimulatedUnit::exchanged, [this](const Exchange &exchange) {
            const auto number = static_cast<std::size_t>(exchange.number);
            outcomes.resize(std::max(outcomes.size(), number));
            outcomes[number - 1] = exchange.outcome;
        });
        unit.setPowered(true);
    }

    /// Sends a request and waits for its reply.
    hid::Report ask(const hid::Report &request)
    {
        const std::size_t before = replies.size();
        EXPECT_TRUE(unit.receive(request));
        EXPECT_TRUE(QTest::qWaitFor([&] { return replies.size() > before; }));
        return replies.empty() ? hid::Report{} : replies.back();
    }

    std::vector<hid::Report> replies;
    std::vector<Outcome> outcomes; ///< of every exchange so far
    SimulatedUnit unit;
};

TEST_F(SimulatedUnitTest, AnswersEveryCommandAndChangesOnlyWhatItNames)
{
    struct Case
    {
        const char *name;
        hid::Report request;
        hid::Report reply;
        void (*expectedChange)(UnitMemory &memory);
    };
    constexpr auto Nothing = [](UnitMemory &) {};
    constexpr std::uint8_t No = SimulatedUnit::RejectedStatus;
    const std::vector<Case> cases = {
        {"version", {0x90, 7}, {0x90, 7, 1, 22, 33}, Nothing},
        {"number of pedals", {0x91, 7}, {0x91, 7, 4}, Nothing},
        {"parameters",
         {0x92, 1, 2, 3, 4, 9},
         {0x92, 1},
         [](UnitMemory &memory) {
             memory.timing = {1, 2, 3, 4};
         }},
        {"ability",
         {0x93, 2},
         {0x93, 2},
         [](UnitMemory &memory) { memory.keyboardMouseAbility = 2; }},
        {"no such ability", {0x93, 4}, {0x93, 4, No}, Nothing},
        {"set record",
         {0x94, 3, 10, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13},
         {0x94, 3},
         [](UnitMemory &memory) {
             memory.pedals[3].mode = 10;
             memory.pedals[3].record = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
         }},
        {"set a missing pedal", {0x94, 4, 10, 1}, {0x94, 4, No}, Nothing},
        {"set pedal 255", {0x94, 255, 10, 1}, {0x94, 255, No}, Nothing},
        {"get record", {0x95, 1}, {0x95, 1, 0, 0, 0x28}, Nothing},
        {"get a missing pedal", {0x95, 4}, {0x95, 4, No}, Nothing},
        {"pedal state", {0x96}, {0x96, 0, 0b1001}, Nothing},
        {"set piece 1",
         {0x97, 2, 1, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33},
         {0x97, 2},
         [](UnitMemory &memory) {
             std::iota(&memory.pedals[2].additional[13], &memory.pedals[2].additional[26],
                       std::uint8_t{21});
         }},
        {"set piece 4",
         {0x97, 0, 4, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53},
         {0x97, 0},
         [](UnitMemory &memory) {
             std::iota(&memory.pedals[0].additional[52], memory.pedals[0].additional.end(),
                       std::uint8_t{41});
         }},
        {"set piece 5", {0x97, 0, 5, 1}, {0x97, 0, No}, Nothing},
        {"set a missing pedal's piece", {0x97, 4, 0, 1}, {0x97, 4, No}, Nothing},
        {"get piece 0",
         {0x98, 1, 0},
         {0x98, 1, 100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112},
         Nothing},
        {"get piece 4",
         {0x98, 1, 4},
         {0x98, 1, 152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 162},
         Nothing},
        {"get piece 5", {0x98, 1, 5}, {0x98, 1, No}, Nothing},
        {"get piece 255", {0x98, 1, 255}, {0x98, 1, No}, Nothing},
        {"set number", {0x99, 2}, {0x99, 2}, [](UnitMemory &memory) { memory.numberOfPedals = 2; }},
        {"set 0 pedals", {0x99, 0}, {0x99, 0, No}, Nothing},
        {"set 6 pedals", {0x99, 6}, {0x99, 6, No}, Nothing},
        {"no command", {0x8F, 1}, {0x8F, 1, No}, Nothing},
        {"no command either", {0x9A, 1, 2, 3}, {0x9A, 1, No}, Nothing},
    };
    UnitMemory start;
    start.version = {1, 22, 33};
    start.numberOfPedals = 4;
    std::iota(start.pedals[1].additional.begin(), start.pedals[1].additional.end(),
              std::uint8_t{100});
    unit.setDepressedPedals(0b1001);

    for (const Case &each : cases) {
        SCOPED_TRACE(each.name);
        unit.memory() = start;
        EXPECT_EQ(ask(each.request), each.reply);
        UnitMemory expected = start;
        each.expectedChange(expected);
        EXPECT_EQ(unit.memory(), expected);
    }
}

TEST_F(SimulatedUnitTest, WorksOnOneRequestAtATimeAndKeepsWhatWasWrittenWithoutPower)
{
    unit.setReplyDelay(20ms);
    ASSERT_TRUE(unit.receive({0x94, 0, SIMPLE_KEY_OUTPUT, 0, 4}));
    unit.setReplyDelay(0ms);
    ASSERT_TRUE(unit.receive({0x95, 0}));
    ASSERT_TRUE(unit.receive({0x91}));
    EXPECT_TRUE(replies.empty()) << "a reply never comes from inside the request";
    ASSERT_TRUE(QTest::qWaitFor([this] { return replies.size() == 3; }));
    EXPECT_EQ(replies[0][0], 0x94);
    EXPECT_EQ(replies[1], (hid::Report{0x95, 0, SIMPLE_KEY_OUTPUT, 0, 4}));
    EXPECT_EQ(replies[2][0], 0x91);

    ASSERT_TRUE(unit.receive({0x94, 1, SIMPLE_CLICK, 4}));
    ASSERT_TRUE(unit.receive({0x91}));
    unit.setPowered(false);
    EXPECT_FALSE(unit.receive({0x91}));
    EXPECT_EQ(outcomes, (std::vector{Outcome::Answered, Outcome::Answered, Outcome::Answered,
                                     Outcome::NoReply, Outcome::NoReply}));
    unit.setPowered(true);
    EXPECT_EQ(ask({0x95, 1}), (hid::Report{0x95, 1, SIMPLE_CLICK, 4}));
    EXPECT_EQ(replies.size(), 4U) << "replies dropped with the power never come";
}

} // namespace
