#pragma once

#include "PedalSetting.h"

#include <QStringView>

#include <array>
#include <span>

/// The main window's layouts, one per number of pedals, and what it says above them. All lengths
/// are device-independent pixels.
namespace kavelo {

constexpr QStringView ConnectExplanation =
    u"Connect the Kavelo. The Kavelo will be automatically recognized.\r"
    "If you do not set the Kavelo, exit this application.";
constexpr QStringView SettingsExplanation =
    u"The current settings for the Kavelo are shown below. \r"
    "If you want to change the settings of a pedal, click the button corresponding to the pedal.";

/// The texts of one pedal's column.
struct PedalCaptions
{
    QStringView name;
    QStringView place; ///< behind "Standard settings" in the dialog's heading
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
/// From the window's edges to the explanation and the annotation.
constexpr int Margin = 15;

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
