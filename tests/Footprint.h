#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <malloc.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <iterator>

/// Part of the sanitizers, which count what is allocated themselves.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace kavelo {

/// What the process holds of all that must not pile up.
struct Footprint
{
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t bytes = 0; ///< allocated on the heap
    qsizetype windows = 0;
    qsizetype widgets = 0;
    qsizetype objects = 0; ///< below the main window
    qsizetype timers = 0;  ///< those of them that run

    static Footprint of(QWidget &mainWindow)
    {
        mainWindow.repaint(); // gives the window's picture the window's size
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Footprint now;
        const std::filesystem::directory_iterator open("/proc/self/fd");
        now.descriptors = std::distance(begin(open), end(open));
        if (__sanitizer_get_current_allocated_bytes != nullptr) {
            now.bytes = std::ptrdiff_t(__sanitizer_get_current_allocated_bytes());
        } else {
            const struct mallinfo2 heap = mallinfo2();
            now.bytes = std::ptrdiff_t(heap.uordblks + heap.hblkhd);
        }
        now.windows = QApplication::topLevelWidgets().size();
        now.widgets = QApplication::allWidgets().size();
        now.objects = mainWindow.findChildren<QObject *>().size();
        for (const QTimer *timer : mainWindow.findChildren<QTimer *>()) {
            now.timers += timer->isActive() ? 1 : 0;
        }
        return now;
    }
};

constexpr int WarmUpRounds = 100;
constexpr std::ptrdiff_t AllowedGrowth = 1 << 20; // bytes

/// Plays a round over and over; after the first hundred, nothing may pile up.
template <class Round>
void expectSteadyFootprint(QWidget &mainWindow, int rounds, Round playRound)
{
    Footprint before;
    for (int round = 0; round < WarmUpRounds + rounds; ++round) {
        if (round == WarmUpRounds) {
            before = Footprint::of(mainWindow);
        }
        playRound(round);
        ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "in round " << round;
    }
    const Footprint after = Footprint::of(mainWindow);
    std::printf("%d rounds: %td descriptors, then %td; %td bytes, then %td more\n", rounds,
                before.descriptors, after.descriptors, before.bytes, after.bytes - before.bytes);
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_LT(after.bytes - before.bytes, AllowedGrowth);
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_EQ(after.widgets, before.widgets);
    EXPECT_EQ(after.objects, before.objects);
    EXPECT_EQ(after.timers, before.timers);
}

} // namespace kavelo
