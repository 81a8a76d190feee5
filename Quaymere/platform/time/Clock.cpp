// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/time/Clock.h"

#include "platform/time/ContinuousTimer.h"

namespace tidewick {

namespace {

class TimerAlarm final : public Alarm
{
public:
    TimerAlarm(ContinuousClock::time_point when, std::function<void()> due) : m_timer(when)
    {
        QObject::connect(&m_timer, &ContinuousTimer::elapsed, &m_timer, std::move(due));
    }

private:
    ContinuousTimer m_timer;
};

} // namespace

SuspendingClock::time_point SystemClock::suspendingNow() const
{
    return SuspendingClock::now();
}

ContinuousClock::time_point SystemClock::continuousNow() const
{
    return ContinuousClock::now();
}

WallClock::time_point SystemClock::wallNow() const
{
    return WallClock::now();
}

std::unique_ptr<Alarm> SystemClock::alarm(ContinuousClock::time_point when,
                                          std::function<void()> due)
{
    return std::make_unique<TimerAlarm>(when, std::move(due));
}

QCoro::Task<> sleepUntil(std::shared_ptr<Clock> clock, ContinuousClock::time_point when,
                         TaskToken token)
{
    if (token.cancelled())
        co_return;
    OneShot<bool> over;
    // Resuming the task may end it and destroy this frame with the alarm, so only the frame
    // releases the alarm.
    const auto alarm = clock->alarm(when, [&over] { over.resolve(true); });
    const auto wake = token.onCancel([&over] { over.resolve(false); });
    co_await over;
}

} // namespace tidewick
