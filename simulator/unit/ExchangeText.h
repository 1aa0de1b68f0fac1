#pragma once

#include "SimulatedUnit.h"

#include <QString>

namespace kavelo {

// The columns of a list of exchanges.

/// The time of the request, to the millisecond.
[[nodiscard]] QString timeText(const Exchange &exchange);
/// The name of the request's command.
[[nodiscard]] QString commandText(const Exchange &exchange);
/// All bytes in groups of four, short enough for a request and its reply side by side.
[[nodiscard]] QString hexText(const hid::Report &report);
/// The reply's bytes; without a reply, the outcome in words.
[[nodiscard]] QString replyText(const Exchange &exchange);

} // namespace kavelo
