// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <map>

namespace tidewick {

/// A clock that advances only when a test tells it to.
class FakeClock final : public Clock
{
public:
    SuspendingClock::time_point suspendingNow() const override { return m_suspending; }
    ContinuousClock::time_point continuousNow() const override { return m_continuous; }
    WallClock::time_point wallNow() const override { return m_wall; }
    std::unique_ptr<Alarm> alarm(ContinuousClock::time_point when,
                                 std::function<void()> due) override;

    /// Advances all clocks, ringing each alarm that falls due at its own time.
    void advance(std::chrono::nanoseconds time);

    /// Simulates system sleep: the suspending clock stands still, and due alarms ring on waking.
    void sleep(std::chrono::nanoseconds time);

    /// The number of alarms set.
    std::size_t alarms() const { return m_alarms.size(); }

private:
    class Entry;
    using Alarms = std::multimap<ContinuousClock::time_point, std::function<void()>>;

    void ringUntil(ContinuousClock::time_point end);

    // Nonzero, so that a time point that was never set cannot be mistaken for a real one.
    SuspendingClock::time_point m_suspending{std::chrono::hours(1)};
    ContinuousClock::time_point m_continuous{std::chrono::hours(2)};
    WallClock::time_point m_wall{std::chrono::hours(24 * 365 * 50)};
    Alarms m_alarms;
};

} // namespace tidewick
