// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/tasks/Task.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tidewick {

/// Stands still while the machine sleeps. Limits on running time are reckoned on it, so that a
/// night with the lid closed counts for nothing.
using SuspendingClock = std::chrono::steady_clock;

/// Goes on while the machine sleeps. Waits are reckoned on it, so that one whose time passed during
/// a sleep is over on waking.
struct ContinuousClock
{
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<ContinuousClock>;
    static constexpr bool is_steady = true;

    static time_point now() noexcept;
};

using WallClock = std::chrono::system_clock;

/// A call that is due at a moment of the continuous clock; destroying it calls it off.
class Alarm
{
public:
    Alarm() = default;
    Alarm(const Alarm &) = delete;
    Alarm &operator=(const Alarm &) = delete;
    virtual ~Alarm() = default;
};

/// The host's clocks, as one object so that a test can stand in for time.
/// Main thread only; it outlives the alarms it hands out.
class Clock
{
public:
    Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock() = default;

    virtual SuspendingClock::time_point suspendingNow() const = 0;
    virtual ContinuousClock::time_point continuousNow() const = 0;
    virtual WallClock::time_point wallNow() const = 0;

    /// Calls `due` from the event loop once `when` has come, never from inside this call.
    virtual std::unique_ptr<Alarm> alarm(ContinuousClock::time_point when,
                                         std::function<void()> due) = 0;
};

/// The real clocks. Alarms need a running event loop.
class SystemClock final : public Clock
{
public:
    SuspendingClock::time_point suspendingNow() const override;
    ContinuousClock::time_point continuousNow() const override;
    WallClock::time_point wallNow() const override;
    std::unique_ptr<Alarm> alarm(ContinuousClock::time_point when,
                                 std::function<void()> due) override;
};

/// Suspends the calling task until `when`, or until the task is cancelled; ask the token which.
QCoro::Task<> sleepUntil(std::shared_ptr<Clock> clock, ContinuousClock::time_point when,
                         TaskToken token);

} // namespace tidewick
