#pragma once

#include "PedalSetting.h"

#include <QString>

#include <array>

class QLabel;
class QPushButton;

namespace kavelo {

namespace Ui {
class MainWindowViewController;
}

struct MainWindowLayout;
class ReadOnlyTextBox;

/// The controls of the pedals in the main window: a name, a text, a Standard and an Advanced button
/// for each. A row is identified by the pedal's index, not by its position on the screen. A row is
/// lit when its pedal has been read, and dark otherwise.
class PedalRows
{
public:
    /// The controls of one pedal.
    struct Controls
    {
        QLabel *name;
        ReadOnlyTextBox *contents;
        QPushButton *standard;
        QPushButton *advanced;
    };

    explicit PedalRows(const Ui::MainWindowViewController &ui);

    [[nodiscard]] const Controls &at(int row) const
    {
        return m_rows.at(static_cast<std::size_t>(row));
    }

    /// Makes all rows dark and empties their texts.
    void darken();
    /// Lights the row of a pedal that has been read. Alt+1 becomes the shortcut of the leftmost
    /// pedal, Alt+2 of the next one.
    void light(int row);
    [[nodiscard]] bool isLit(int row) const;
    /// Enables the Standard buttons of the lit rows, or disables all.
    void enableStandardButtons(bool areEnabled) const;
    /// Gives the focus to the Standard button of the leftmost row that is lit.
    void focusLeftmost() const;

    /// Places the rows beside each other and gives them their texts.
    void applyLayout(const MainWindowLayout &layout) const;
    /// Places the controls of all rows below each other, from `top` on, with heights that suit the
    /// desktop's font. Returns where they end.
    int stack(int top);

private:
    std::array<Controls, MaxPedals> m_rows;
};

} // namespace kavelo
