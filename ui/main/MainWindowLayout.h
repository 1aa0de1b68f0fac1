#pragma once

#include "PedalSetting.h"

#include <QRect>
#include <QStringView>

#include <array>
#include <span>

/// The layouts of the main window, one for each number of pedals, and the texts of its explanation.
/// All lengths are in device-independent pixels.
namespace kavelo {

constexpr QStringView ConnectExplanation =
    u"Connect the Kavelo. The Kavelo will be automatically recognized.\r"
    "If you do not set the Kavelo, exit this application.";
constexpr QStringView SettingsExplanation =
    u"The current settings for the Kavelo are shown below. \r"
    "If you want to change the settings of a pedal, click the button corresponding to the pedal.";

/// The texts in the column of one pedal.
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
    int rowsShown;                           ///< rows 3 and 4 are hidden from this index on
    std::span<const PedalCaptions> captions; ///< of the first rows; the other rows keep their texts
};

constexpr int BlankWindowWidth = 680;
/// Distance of the explanation and the annotation from the window's edges.
constexpr int Margin = 15;

/// Number of rows whose position depends on the number of pedals. Rows 3 and 4 stay at the position
/// that the form gives them.
constexpr std::size_t MovableRows = 3;
/// Left offsets of the movable rows (name, text box and Standard button) when the shift is 0.
constexpr std::array<int, MovableRows> RowLeft{240, 15, 465};
/// A row's Advanced button begins this far to the right of its Standard button, which lies above
/// it. Both end with the column.
constexpr int AdvancedIndent = 5;

/// The window's first place on a screen. The window keeps its origin when it becomes wider, so the
/// widest layout fits there, in the middle. A narrower screen shows the window's left edge.
[[nodiscard]] QPoint firstPlace(const QRect &screen, int height);

/// The layout without a unit. Its captions name all five rows.
[[nodiscard]] const MainWindowLayout &blankLayout();

/// The layout for a unit of 0 to 5 pedals.
[[nodiscard]] const MainWindowLayout &pedalLayout(int numberOfPedals);

} // namespace kavelo
