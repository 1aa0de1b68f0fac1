// Time for a program whose waits are to cost none: the monotonic clock, which Qt's timers go by,
// stands still while the program works, and where the program would sleep it jumps to the end of
// the sleep. The two functions below take the C library's place for all libraries of the process.

#include "Require.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>

using namespace std::chrono;

namespace {

/// What one look at the clock takes. A loop that waits for the time to pass without sleeping ends.
constexpr nanoseconds LookTime{1000};

nanoseconds now{seconds(1)};

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (clock != CLOCK_MONOTONIC) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    now += LookTime;
    const auto whole = duration_cast<seconds>(now);
    *time = {.tv_sec = whole.count(), .tv_nsec = (now - whole).count()};
    return 0;
}

extern "C" int ppoll(pollfd *files, nfds_t count, const timespec *timeout, const sigset_t *mask)
{
    timespec none{};
    const auto ready = syscall(SYS_ppoll, files, count, &none, mask, _NSIG / 8);
    if (ready == 0) {
        kavelo::require(timeout != nullptr, "the program does not sleep for ever");
        now += seconds(timeout->tv_sec) + nanoseconds(timeout->tv_nsec);
    }
    return static_cast<int>(ready);
}
