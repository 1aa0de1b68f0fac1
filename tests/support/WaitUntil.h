#pragma once

#include <QTest>

#include <functional>

namespace kavelo {

/// Runs the event loop until `condition` holds. Returns false when it does not hold in time.
[[nodiscard]] inline bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, 60000);
}

} // namespace kavelo
