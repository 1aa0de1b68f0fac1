#include "SimulatedBus.h"

#include "SimulatedUnit.h"

#include <algorithm>
#include <utility>

namespace kavelo::bus {
namespace {

// Only this file changes it. Other files read it through attachments().
std::vector<AttachmentRef> Attachments;

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
    // A unit also loses its power by a fault, and when it is destroyed.
    QObject::connect(
        &unit, &SimulatedUnit::poweredChanged, &unit, [&unit] { unplug(unit); },
        Qt::SingleShotConnection);
    const auto attachment = std::make_shared<Attachment>(Attachment{&unit});
    Attachments.push_back(attachment);
    Q_EMIT events().pluggedIn(attachment);
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
    Q_EMIT events().unplugged(attachment);
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

Events &events()
{
    static Events events;
    return events;
}

} // namespace kavelo::bus
