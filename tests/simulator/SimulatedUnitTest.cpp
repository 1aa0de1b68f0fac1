#include "SimulatedUnit.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace kavelo;

// What the program never asks of the unit, or would not notice.
TEST(SimulatedUnitTest, RejectsWhatItCannotDoAndWorksOnOneRequestAtATime)
{
    std::vector<hid::Report> replies;
    SimulatedUnit unit;
    QObject::connect(&unit, &SimulatedUnit::inputReport,
                     [&](const hid::Report &report) { replies.push_back(report); });
    const auto send = [&](const std::vector<hid::Report> &requests) {
        replies.clear();
        for (const hid::Report &request : requests) {
            EXPECT_TRUE(unit.receive(request));
        }
        EXPECT_TRUE(replies.empty()) << "a reply never comes from inside the request";
        EXPECT_TRUE(QTest::qWaitFor([&] { return replies.size() == requests.size(); }));
        return replies;
    };
    unit.setPowered(true);
    unit.memory().numberOfPedals = 4;
    const UnitMemory before = unit.memory();
    const std::vector<hid::Report> rejected = {{0x8F, 1}, {0x93, 1},    {0x94, 4, 1}, {0x95, 4},
                                               {0x98, 4}, {0x98, 1, 5}, {0x98, 1, 20}};
    for (const hid::Report &request : rejected) {
        EXPECT_EQ(send({request}).at(0), (hid::Report{request[0], request[1], 0xFF}));
    }
    EXPECT_EQ(unit.memory(), before);
    unit.memory().numberOfPedals = 255;
    EXPECT_EQ(send({{0x95, 5}, {0x94, 1, SIMPLE_CLICK, 4}, {0x95, 1}, {0x91}}),
              (std::vector<hid::Report>{
                  {0x95, 5, 0xFF}, {0x94, 1}, {0x95, 1, SIMPLE_CLICK, 4}, {0x91, 0, 255}}));
    EXPECT_TRUE(unit.receive({0x94, 2, SIMPLE_CLICK, 2}));
    unit.setPowered(false);
    EXPECT_FALSE(unit.receive({0x91}));
    unit.setPowered(true); // the reply that was due is gone, what was written is not
    EXPECT_EQ(send({{0x95, 2}}).at(0), (hid::Report{0x95, 2, SIMPLE_CLICK, 2}));
}
