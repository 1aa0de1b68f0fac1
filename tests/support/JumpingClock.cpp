// Simulated time for tests: waits take no real time, and results don't depend on the machine's
// speed. The monotonic clock, which Qt's timers use, stands still while the program works. When the
// program would sleep, the clock jumps to the end of the sleep. The functions below replace those
// of the C library for all libraries of the process.

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace std::chrono;

namespace {

/// Every reading of the clock moves it forward by this much. So a loop that waits for a point in
/// time without sleeping ends.
constexpr nanoseconds LookTime{1000};

nanoseconds now{seconds(1)};

nanoseconds durationOf(const timespec &time)
{
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// Makes Qt use its own event loop, which sleeps in ppoll(). The event loop of glib, which Qt
/// prefers, does not.
[[maybe_unused]] const int sleepsByPpoll = setenv("QT_NO_GLIB", "1", 1);

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
    const timespec none{};
    const auto ready = syscall(SYS_ppoll, files, count, &none, mask, _NSIG / 8);
    if (ready == 0) {
        if (timeout == nullptr) {
            std::fputs("The program sleeps for ever.\n", stderr);
            std::abort();
        }
        now += durationOf(*timeout);
    }
    return static_cast<int>(ready);
}

extern "C" int nanosleep(const timespec *duration, timespec * /*remaining*/)
{
    now += durationOf(*duration);
    return 0;
}

extern "C" int clock_nanosleep(clockid_t /*clock*/, int flags, const timespec *time,
                               timespec * /*remaining*/)
{
    const nanoseconds end = durationOf(*time);
    now = (flags & TIMER_ABSTIME) == 0 ? now + end : std::max(now, end);
    return 0;
}
