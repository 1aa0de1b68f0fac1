#pragma once

#include <QObject>

#include <memory>
#include <vector>

namespace kavelo {
class SimulatedUnit;
}

/// The computer's USB bus as the simulated HID manager sees it. It lists the units that are plugged
/// in, the first one first. The bus owns no unit. A unit that is destroyed is unplugged.
namespace kavelo::bus {

/// A unit from its plugging in until its unplugging. Each plugging in makes a new attachment.
struct Attachment
{
    SimulatedUnit *unit; ///< null once the unit has been unplugged
};
using AttachmentRef = std::shared_ptr<Attachment>;

/// Announces every change. The signals are emitted inside the call that makes the change.
class Events : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void pluggedIn(const kavelo::bus::AttachmentRef &attachment);
    void unplugged(const kavelo::bus::AttachmentRef &attachment);
};

/// Plugs the unit in and gives it power. Does nothing when it is plugged in already.
void plugIn(SimulatedUnit &unit);
/// Unplugs the unit, which loses its power. Does nothing when it is not plugged in.
void unplug(SimulatedUnit &unit);
[[nodiscard]] bool isPluggedIn(const SimulatedUnit &unit);
/// Unplugs every unit.
void reset();

[[nodiscard]] const std::vector<AttachmentRef> &attachments();

[[nodiscard]] Events &events();

} // namespace kavelo::bus
