#include "WindowView.h"

#include "PedalDescription.h"

#include <QPlainTextEdit>
#include <QPushButton>

namespace kavelo {
namespace {

bool isEditable(const QWidget &window, int pedal)
{
    return window.findChild<QPushButton *>(QStringLiteral("buttonSetPedal%1Standard").arg(pedal))
        ->isEnabled();
}

bool isRead(int pedal, const PedalMemory &memory)
{
    const auto row = static_cast<std::size_t>(pedal);
    return OutputMode.at(row) == memory.mode && CommonData.at(row) == memory.record &&
           (memory.mode != PLURAL_SIMULTANEOUS_KEY_OUTPUT ||
            AdditionalData.at(row) == memory.additional);
}

QString shownText(const QWidget &window, int pedal)
{
    return window.findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal%1Contents").arg(pedal))
        ->toPlainText();
}

} // namespace

int editablePedals(const QWidget &window)
{
    int count = 0;
    for (int pedal = 0; pedal < MaxPedals; ++pedal) {
        count += isEditable(window, pedal) ? 1 : 0;
    }
    return count;
}

bool showsRecords(const QWidget &window, const SimulatedUnit &unit)
{
    const int pedals = unit.memory().numberOfPedals;
    for (int pedal = 0; pedal < pedals; ++pedal) {
        // A text box has "\n" for a description's line break "\r\n".
        const QString text = PedalDescription(pedal).remove(u'\r');
        if (!isRead(pedal, unit.memory().pedals.at(static_cast<std::size_t>(pedal))) ||
            shownText(window, pedal) != text) {
            return false;
        }
    }
    return editablePedals(window) == pedals;
}

UnitMemory restored(UnitMemory memory)
{
    const UnitMemory factory;
    for (std::size_t i = 0; i < memory.numberOfPedals; ++i) {
        PedalMemory &pedal = memory.pedals.at(i);
        pedal.mode = factory.pedals.at(i).mode;
        const int used = pedal.mode == SIMPLE_CLICK ? 1 : 2;
        std::copy_n(factory.pedals.at(i).record.begin(), used, pedal.record.begin());
    }
    memory.timing = factory.timing;
    return memory;
}

} // namespace kavelo
