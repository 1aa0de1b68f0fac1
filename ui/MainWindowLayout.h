#pragma once

#include "PedalSetting.h"

#include <QStringView>

#include <array>
#include <span>

/// The main window's layouts, one per number of pedals. All lengths are device-independent pixels.
namespace kavelo {

/// The texts of one pedal's column.
struct PedalCaptions
{
    QStringView name;
    QStringView standardTitle;
    QStringView advancedTitle;
};

struct MainWindowLayout
{
    int width;                               ///< of the window
    int shift;                               ///< added to the left offsets of rows 0 to 2
    int rowsShown;                           ///< rows 3 and 4 are hidden from this row on
    std::span<const PedalCaptions> captions; ///< of rows 0 on; further rows keep theirs
};

constexpr int BlankWindowWidth = 680;

/// Rows that change places with the number of pedals. Rows 3 and 4 stay where the form has them.
constexpr std::size_t MovableRows = 3;
/// Left offsets of the movable rows' name, text box and Standard button without a shift.
constexpr std::array<int, MovableRows> RowLeft{240, 15, 465};
/// How much further right a row's Advanced button stands.
constexpr int AdvancedIndent = 5;

/// The layout of an empty window, whose captions name all five rows.
[[nodiscard]] const MainWindowLayout &blankLayout();

/// The layout for a unit of 0 to 5 pedals.
[[nodiscard]] const MainWindowLayout &pedalLayout(int numberOfPedals);

} // namespace kavelo
