#pragma once

#include "SimulatedUnit.h"

#include <QWidget>

#include <algorithm>

namespace kavelo {

// What the main window shows, for the tour and the tests.

/// The visible dialog of this class; null when there is none. A dialog that was dismissed may still
/// exist.
template <class Dialog>
Dialog *visibleDialog(const QWidget &window)
{
    const auto dialogs = window.findChildren<Dialog *>();
    const auto visible = std::ranges::find_if(dialogs, &QWidget::isVisible);
    return visible == dialogs.end() ? nullptr : *visible;
}

/// Number of pedals whose Standard button is enabled.
[[nodiscard]] int editablePedals(const QWidget &window);

/// Whether the program has read the record of every pedal of the unit, and the window shows its
/// description and lets the user edit it.
[[nodiscard]] bool showsRecords(const QWidget &window, const SimulatedUnit &unit);

/// What a unit with this memory holds after a restore. A restore sends the factory's mode and the
/// bytes that this mode uses; the other bytes keep their values.
[[nodiscard]] UnitMemory restored(UnitMemory memory);

} // namespace kavelo
