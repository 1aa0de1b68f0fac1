#include "MainWindowLayout.h"

#include <algorithm>

namespace kavelo {
namespace {

// Each table has one row per pedal: its name, and the titles of its buttons. The order is the
// unit's numbering of the pedals. Index 0 is the middle pedal, or the right one of two.
// clang-format off
constexpr auto Blank = std::to_array<PedalCaptions>({
    {u"Center pedal",    u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Left Pedal",      u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Right Pedal",     u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Right End Pedal", u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
});
static_assert(Blank.size() == MaxPedals);
constexpr auto One = std::to_array<PedalCaptions>({
    {u"Pedal", u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
});
constexpr auto Two = std::to_array<PedalCaptions>({
    {u"Right Pedal", u"Set Right Pedal (Standard)", u"Set Right Pedal (Advanced)"},
    {u"Left Pedal",  u"Set Left Pedal (Standard)",  u"Set Left Pedal (Advanced)"},
});
constexpr auto Three = std::to_array<PedalCaptions>({
    {u"Center Pedal", u"Set Center Pedal (Standard)", u"Set Center Pedal (Advanced)"},
    {u"Left Pedal",   u"Set Left Pedal (Standard)",   u"Set Left Pedal (Advanced)"},
    {u"Right Pedal",  u"Set Right Pedal (Standard)",  u"Set Right Pedal (Advanced)"},
});
constexpr auto Four = std::to_array<PedalCaptions>({
    {u"Right PEdal",     u"Set Right Pedal (Standard)",     u"Set Right Pedal (Advanced)"},
    {u"Left Pedal",      u"Set Left Pedal (Standard)",      u"Set Left Pedal (Advanced)"},
    {u"Right End Pedal", u"Set Right End Pedal (Standard)", u"Set Right End Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set Left End Pedal (Standard)",  u"Set Left End Pedal (Advanced)"},
});
constexpr auto Five = std::to_array<PedalCaptions>({
    {u"Center Pedal",    u"Set Center Pedal (Standard)", u"Set Center Pedal (Advanced)"},
    {u"Left Pedal",      u"Set Left Pedal (Standard)",   u"Set Left Pedal (Advanced)"},
    {u"Right Pedal",     u"Set Right Pedal (Standard)",  u"Set Right Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set Left End Pedal (S.)",     u"Set Left End Pedal (A.)"},
    {u"Right End Pedal", u"Set Right End Pedal (S.)",    u"Set Right End Pedal (A.)"},
});

constexpr int Narrow = BlankWindowWidth;
constexpr int Column = 225; // distance from one column to the next

constexpr MainWindowLayout BlankLayout{Narrow, 0, 3, Blank};
constexpr auto Layouts = std::to_array<MainWindowLayout>({
    {Narrow,              0,      3, {}},
    {Narrow,              0,      3, One},
    {Narrow,              0,      3, Two},
    {Narrow,              0,      3, Three},
    {Narrow + Column,     Column, 4, Four},
    {Narrow + 2 * Column, Column, 5, Five},
});
static_assert(Layouts.size() == MaxPedals + 1);
// clang-format on

} // namespace

QPoint firstPlace(const QRect &screen, int height)
{
    const QSize spare = screen.size() - QSize(Layouts.back().width, height);
    return screen.topLeft() + QPoint(std::max(spare.width(), 0), std::max(spare.height(), 0)) / 2;
}

const MainWindowLayout &blankLayout()
{
    return BlankLayout;
}

const MainWindowLayout &pedalLayout(int numberOfPedals)
{
    return Layouts.at(static_cast<std::size_t>(numberOfPedals));
}

} // namespace kavelo
