#pragma once

#include <QObject>

#include <memory>
#include <vector>

namespace kavelo {
class SimulatedUnit;
}

/// The computer's USB bus as the simulated HID manager sees it: the units that are plugged in, in
/// the order of their plugging in. The bus owns no unit; one that is destroyed is unplugged.
namespace kavelo::bus {

/// One stay of a unit on the bus. A unit that is plugged in again gets a new one.
struct Attachment
{
    SimulatedUnit *unit; ///< null from the moment it is unplugged
};
using AttachmentRef = std::shared_ptr<Attachment>;

/// Tells, from inside the call that causes it, of every change.
class Events : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void pluggedIn(const kavelo::bus::AttachmentRef &attachment);
    void unplugged(const kavelo::bus::AttachmentRef &attachment);
};

/// Plugs the unit in behind those already there and gives it power; nothing if it is plugged in.
void plugIn(SimulatedUnit &unit);
/// Unplugs the unit, which loses its power; nothing if it is not plugged in.
void unplug(SimulatedUnit &unit);
[[nodiscard]] bool isPluggedIn(const SimulatedUnit &unit);
/// Unplugs every unit.
void reset();

[[nodiscard]] const std::vector<AttachmentRef> &attachments();

[[nodiscard]] Events &events();

} // namespace kavelo::bus
