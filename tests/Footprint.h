#pragma once

#include "WaitUntil.h"

#include <QApplication>
#include <QPixmapCache>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

/// Defined by the sanitizers, which replace the heap and count its bytes.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace kavelo {

inline std::ptrdiff_t bytesOnHeap()
{
    QPixmapCache::clear(); // it limits its own size
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return std::ptrdiff_t(__sanitizer_get_current_allocated_bytes());
    }
    const struct mallinfo2 heap = mallinfo2();
    return std::ptrdiff_t(heap.uordblks + heap.hblkhd);
}

/// Counts of everything else that must not grow.
inline std::map<std::string, std::ptrdiff_t> footprint(QWidget &mainWindow)
{
    mainWindow.repaint(); // the window's buffer changes its size only when it is painted
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const std::filesystem::directory_iterator open("/proc/self/fd");
    const auto timers = mainWindow.findChildren<QTimer *>();
    return {{"descriptors", std::distance(begin(open), end(open))},
            {"widgets", QApplication::allWidgets().size()},
            {"objects", mainWindow.findChildren<QObject *>().size()},
            {"running timers", std::ranges::count_if(timers, &QTimer::isActive)}};
}

/// Plays a round many times. After the first rounds, at most a hundred, the counts must not grow.
template <class Round>
void expectSteadyFootprint(QWidget &mainWindow, int rounds, Round playRound)
{
    const auto play = [&](int first, int end) {
        for (int round = first; round < end; ++round) {
            playRound(round);
            ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "in round " << round;
        }
    };
    const int first = std::min(rounds, 100);
    play(0, first);
    const auto before = footprint(mainWindow);
    const std::ptrdiff_t bytes = bytesOnHeap();
    play(first, first + rounds);
    // Objects of the last round may be destroyed a moment later.
    EXPECT_TRUE(waitUntil([&] {
        return std::ranges::equal(footprint(mainWindow), before, std::less_equal());
    })) << ::testing::PrintToString(footprint(mainWindow));
    const std::ptrdiff_t growth = bytesOnHeap() - bytes;
    std::printf("%d rounds: %td bytes, then %td more\n", rounds, bytes, growth);
    EXPECT_LT(growth, 1 << 20);
}

} // namespace kavelo
