#include "ModifierName.h"

#include <QStringView>
#include <array>

namespace kavelo {
namespace {

struct ModifierPiece
{
    ModifierBit bit;
    QStringView text;
};

// "(left)" of the left Shift has a small "l" on purpose: users know that name.
constexpr std::array<ModifierPiece, 8> Pieces = {{
    {LeftControl, u"(Left)control+"},
    {LeftShift, u"(left)shift+"},
    {LeftOption, u"(Left)option+"},
    {LeftCommand, u"(Left)command+"},
    {RightControl, u"Right control+"},
    {RightShift, u"Right shift+"},
    {RightOption, u"Right option+"},
    {RightCommand, u"Right command+"},
}};

} // namespace

QString GetModifierName(std::uint8_t ModifierByte)
{
    QString name;
    for (const ModifierPiece &piece : Pieces) {
        if ((ModifierByte & piece.bit) != 0) {
            name += piece.text;
        }
    }
    name.chop(1); // the last piece's "+"
    return name;
}

} // namespace kavelo
