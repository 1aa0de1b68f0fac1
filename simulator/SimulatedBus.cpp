#include "SimulatedBus.h"

#include "SimulatedUnit.h"

#include <algorithm>
#include <utility>

namespace kavelo::bus {
namespace {

// Changed by the functions of this file only, read through attachments().
std::vector<AttachmentRef> Attachments;
// The HID managers of the program; each comes and goes by itself.
std::vector<Listener *> Listeners;

auto find(const SimulatedUnit &unit)
{
    return std::ranges::find(Attachments, &unit,
                             [](const AttachmentRef &attachment) { return attachment->unit; });
}

} // namespace

void plugIn(SimulatedUnit &unit)
{
    if (isPluggedIn(unit)) {
        return;
    }
    unit.setPowered(true);
    // A unit also goes by itself: by a fault, or when it is destroyed.
    QObject::connect(
        &unit, &SimulatedUnit::poweredChanged, &unit, [&unit] { unplug(unit); },
        Qt::SingleShotConnection);
    const auto attachment = std::make_shared<Attachment>(Attachment{&unit});
    Attachments.push_back(attachment);
    for (Listener *listener : Listeners) {
        listener->pluggedIn(attachment);
    }
}

void unplug(SimulatedUnit &unit)
{
    const auto found = find(unit);
    if (found == Attachments.end()) {
        return;
    }
    const AttachmentRef attachment = *found;
    Attachments.erase(found);
    attachment->unit = nullptr;
    for (Listener *listener : Listeners) {
        listener->unplugged(attachment);
    }
    unit.setPowered(false);
}

bool isPluggedIn(const SimulatedUnit &unit)
{
    return find(unit) != Attachments.end();
}

void reset()
{
    while (!Attachments.empty()) {
        unplug(*Attachments.back()->unit);
    }
}

const std::vector<AttachmentRef> &attachments()
{
    return Attachments;
}

void addListener(Listener &listener)
{
    Listeners.push_back(&listener);
}

void removeListener(Listener &listener)
{
    std::erase(Listeners, &listener);
}

} // namespace kavelo::bus
