// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <map>

namespace tidewick {

/// Time that passes when a test says so.
class FakeClock final : public Clock
{
public:
    SuspendingClock::time_point suspendingNow() const override { return m_suspending; }
    ContinuousClock::time_point continuousNow() const override { return m_continuous; }
    WallClock::time_point wallNow() const override { return m_wall; }
    std::unique_ptr<Alarm> alarm(ContinuousClock::time_point when,
                                 std::function<void()> due) override;

    /// Lets time pass, calling what is due on the way, each at its moment.
    void advance(std::chrono::nanoseconds time);

    /// Lets the machine sleep: the suspending clock stands still, and alarms ring on waking.
    void sleep(std::chrono::nanoseconds time);

    /// How many alarms are set.
    std::size_t alarms() const { return m_alarms.size(); }

private:
    class Entry;
    using Alarms = std::multimap<ContinuousClock::time_point, std::function<void()>>;

    void ringUntil(ContinuousClock::time_point end);

    // Not zero, so that a moment never set is not taken for one.
    SuspendingClock::time_point m_suspending{std::chrono::hours(1)};
    ContinuousClock::time_point m_continuous{std::chrono::hours(2)};
    WallClock::time_point m_wall{std::chrono::hours(24 * 365 * 50)};
    Alarms m_alarms;
};

} // namespace tidewick
