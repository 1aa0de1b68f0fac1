#pragma once

#include "KaveloTest.h"
#include "MainWindowViewController.h"
#include "PedalDescription.h"
#include "SimulatedBus.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <random>
#include <vector>

namespace kavelo {

inline const auto ConnectText =
    QStringLiteral("Connect the Kavelo. The Kavelo will be automatically recognized.\n"
                   "If you do not set the Kavelo, exit this application.");
inline const auto SettingsText = QStringLiteral(
    "The current settings for the Kavelo are shown below. \n"
    "If you want to change the settings of a pedal, click the button corresponding to the pedal.");

/// The main window on the simulated bus, and what a user sees of it.
class WindowTest : public KaveloTest
{
protected:
    WindowTest() { window.show(); }

    template <class Control>
    Control *find(const char *name, int row)
    {
        return window.findChild<Control *>(QString::asprintf(name, row));
    }
    QLabel *name(int row) { return find<QLabel>("labelPedal%dName", row); }
    QPlainTextEdit *contents(int row)
    {
        return find<QPlainTextEdit>("textboxPedal%dContents", row);
    }
    QPushButton *standard(int row) { return find<QPushButton>("buttonSetPedal%dStandard", row); }
    QPushButton *advanced(int row) { return find<QPushButton>("buttonSetPedal%dAdvanced", row); }
    QString explanation()
    {
        return window.findChild<QLabel *>(QStringLiteral("labelMainWindowExplanation"))->text();
    }

    /// The rows that can be edited, in their order.
    std::vector<int> litRows()
    {
        std::vector<int> rows;
        for (int row = 0; row < MaxPedals; ++row) {
            if (name(row)->isEnabled() && standard(row)->isEnabled() &&
                contents(row)->isVisible()) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    bool isBlank()
    {
        return explanation() == ConnectText && window.width() == 680 && litRows().empty() &&
               !contents(0)->isVisible() && contents(0)->toPlainText().isEmpty();
    }
    /// Whether every pedal of the unit has been read and is shown as the unit has it.
    bool showsUnit(const SimulatedUnit &shown)
    {
        const int pedals = shown.memory().numberOfPedals;
        if (explanation() != SettingsText || int(litRows().size()) != pedals) {
            return false;
        }
        for (std::size_t row = 0; row < std::size_t(pedals); ++row) {
            const PedalMemory &memory = shown.memory().pedals.at(row);
            const bool isRead = OutputMode.at(row) == memory.mode &&
                                CommonData.at(row) == memory.record &&
                                (memory.mode != PLURAL_SIMULTANEOUS_KEY_OUTPUT ||
                                 AdditionalData.at(row) == memory.additional);
            const QString text = PedalDescription(int(row)).remove(QLatin1Char('\r'));
            if (!isRead || contents(int(row))->toPlainText() != text) {
                return false;
            }
        }
        return true;
    }

    MainWindowViewController window;
};

/// Five pedals that all differ, the second of them a sequence of outputs.
inline void setFiveModes(SimulatedUnit &unit)
{
    std::mt19937 random(7);
    for (PedalMemory &pedal : unit.memory().pedals) {
        std::ranges::generate(pedal.record, [&] { return std::uint8_t(random()); });
        std::ranges::generate(pedal.additional, [&] { return std::uint8_t(random()); });
    }
    unit.memory().pedals[0].mode = POINTER_MOVE;
    unit.memory().pedals[1].mode = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    unit.memory().pedals[1].record[3] = 0x84;
    unit.memory().pedals[2].mode = SIMPLE_CLICK;
    unit.memory().pedals[3].mode = OUTPUT_AT_CHANGE;
    unit.memory().pedals[4].mode = CONTINUOUS_KEY_OUTPUT;
}

} // namespace kavelo
