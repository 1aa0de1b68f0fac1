#pragma once

#include <chrono>

namespace kavelo {

/// Waits for events for at most `slice` and handles them: timers, device callbacks and user input.
/// Returns as soon as any event has been handled.
void runEventLoop(std::chrono::milliseconds slice);

/// Handles events for this time.
void runEventLoopFor(std::chrono::milliseconds time);

} // namespace kavelo
