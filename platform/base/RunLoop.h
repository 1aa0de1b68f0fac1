#pragma once

#include <chrono>

namespace kavelo {

/// Runs the main event loop for at most `slice`. Sleeps while nothing happens and returns early,
/// as soon as any event was handled. Timers, device callbacks and user input all run inside.
void runEventLoop(std::chrono::milliseconds slice);

} // namespace kavelo
