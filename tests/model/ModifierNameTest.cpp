#include "ModifierName.h"

#include "ModelFixture.h"

#include <QStringList>

namespace kavelo {
namespace {

TEST(ModifierName, JoinsTheSetBitsInBitOrder)
{
    const QString all = QStringLiteral("(Left)control+(left)shift+(Left)option+(Left)command+"
                                       "Right control+Right shift+Right option+Right command");
    EXPECT_EQ(GetModifierName(0x00), QString());
    EXPECT_EQ(GetModifierName(0x03), QStringLiteral("(Left)control+(left)shift"));
    EXPECT_EQ(GetModifierName(LeftCommand | RightCommand),
              QStringLiteral("(Left)command+Right command"));
    EXPECT_EQ(GetModifierName(0xFF), all);
    for (int bit = 0; bit < 8; ++bit) {
        EXPECT_EQ(GetModifierName(static_cast<std::uint8_t>(1 << bit)), all.split(u'+').at(bit));
    }
}

} // namespace
} // namespace kavelo
