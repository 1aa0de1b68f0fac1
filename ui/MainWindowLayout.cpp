#include "MainWindowLayout.h"

namespace kavelo {
namespace {

// One row a pedal, in the order of the pedals' indices. Which pedal stands where is the unit's own
// numbering: index 0 is the middle one or the right one of two.
// clang-format off
constexpr std::array<PedalCaptions, MaxPedals> Blank{{
    {u"Center pedal",    u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Left Pedal",      u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Right Pedal",     u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
    {u"Right End Pedal", u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
}};
constexpr std::array<PedalCaptions, 1> One{{
    {u"Pedal", u"Set the Pedal (Standard)", u"Set the Pedal (Advanced)"},
}};
constexpr std::array<PedalCaptions, 2> Two{{
    {u"Right Pedal", u"Set Right Pedal (Standard)", u"Set Right Pedal (Advanced)"},
    {u"Left Pedal",  u"Set Left Pedal (Standard)",  u"Set Left Pedal (Advanced)"},
}};
constexpr std::array<PedalCaptions, 3> Three{{
    {u"Center Pedal", u"Set Center Pedal (Standard)", u"Set Center Pedal (Advanced)"},
    {u"Left Pedal",   u"Set Left Pedal (Standard)",   u"Set Left Pedal (Advanced)"},
    {u"Right Pedal",  u"Set Right Pedal (Standard)",  u"Set Right Pedal (Advanced)"},
}};
constexpr std::array<PedalCaptions, 4> Four{{
    {u"Right PEdal",     u"Set Right Pedal (Standard)",     u"Set Right Pedal (Advanced)"},
    {u"Left Pedal",      u"Set Left Pedal (Standard)",      u"Set Left Pedal (Advanced)"},
    {u"Right End Pedal", u"Set Right End Pedal (Standard)", u"Set Right End Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set Left End Pedal (Standard)",  u"Set Left End Pedal (Advanced)"},
}};
constexpr std::array<PedalCaptions, 5> Five{{
    {u"Center Pedal",    u"Set Center Pedal (Standard)", u"Set Center Pedal (Advanced)"},
    {u"Left Pedal",      u"Set Left Pedal (Standard)",   u"Set Left Pedal (Advanced)"},
    {u"Right Pedal",     u"Set Right Pedal (Standard)",  u"Set Right Pedal (Advanced)"},
    {u"Left End Pedal",  u"Set Left End Pedal (S.)",     u"Set Left End Pedal (A.)"},
    {u"Right End Pedal", u"Set Right End Pedal (S.)",    u"Set Right End Pedal (A.)"},
}};

constexpr int Narrow = BlankWindowWidth;
constexpr int Column = 225; // from one column to the next

constexpr MainWindowLayout BlankLayout{Narrow, 0, 3, Blank};
constexpr std::array<MainWindowLayout, MaxPedals + 1> Layouts{{
    {Narrow,              0,      3, {}},
    {Narrow,              0,      3, One},
    {Narrow,              0,      3, Two},
    {Narrow,              0,      3, Three},
    {Narrow + Column,     Column, 4, Four},
    {Narrow + 2 * Column, Column, 5, Five},
}};
// clang-format on

} // namespace

const MainWindowLayout &blankLayout()
{
    return BlankLayout;
}

const MainWindowLayout &pedalLayout(int numberOfPedals)
{
    return Layouts.at(static_cast<std::size_t>(numberOfPedals));
}

} // namespace kavelo
