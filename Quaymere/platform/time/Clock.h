// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/tasks/Task.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tidewick {

/// Stops while the machine sleeps. Limits on running time use it, so that a night with the lid
/// closed does not count.
using SuspendingClock = std::chrono::steady_clock;

/// Continues while the machine sleeps. Waits use it, so that a wait whose time passed during sleep
/// is over on waking.
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

/// A call scheduled for a time of the continuous clock. Destroying the object cancels the call.
class Alarm
{
public:
    Alarm() = default;
    Alarm(const Alarm &) = delete;
    Alarm &operator=(const Alarm &) = delete;
    virtual ~Alarm() = default;
};

/// The host's clocks as one object, so that a test can control time. Main thread only; must outlive
/// the alarms it returns.
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

    /// Calls `due` from the event loop once the clock reaches `when`, never from inside this call.
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

/// Suspends the calling task until `when`, or until the task is cancelled; the token says which.
QCoro::Task<> sleepUntil(std::shared_ptr<Clock> clock, ContinuousClock::time_point when,
                         TaskToken token);

} // namespace tidewick
