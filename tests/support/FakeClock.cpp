// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/FakeClock.h"

#include <algorithm>

namespace tidewick {

/// An alarm's entry among those set, removed once the alarm has rung.
class FakeClock::Entry final : public Alarm
{
public:
    Entry(Alarms &alarms, ContinuousClock::time_point when, std::function<void()> due)
        : m_alarms(alarms), m_place(alarms.emplace(when, [this, call = std::move(due)] {
              m_rung = true;
              call();
          }))
    {
    }
    ~Entry() override
    {
        if (!m_rung)
            m_alarms.erase(m_place);
    }

private:
    Alarms &m_alarms;
    Alarms::iterator m_place;
    bool m_rung = false;
};

std::unique_ptr<Alarm> FakeClock::alarm(ContinuousClock::time_point when, std::function<void()> due)
{
    return std::make_unique<Entry>(m_alarms, when, std::move(due));
}

void FakeClock::advance(std::chrono::nanoseconds time)
{
    const ContinuousClock::time_point end = m_continuous + time;
    const auto suspendingEnd = m_suspending + time;
    const auto wallEnd = m_wall + std::chrono::duration_cast<WallClock::duration>(time);
    while (!m_alarms.empty() && m_alarms.begin()->first <= end) {
        const auto step =
            std::max(m_alarms.begin()->first - m_continuous, std::chrono::nanoseconds(0));
        m_continuous += step;
        m_suspending += step;
        ringUntil(m_continuous);
    }
    m_continuous = end;
    m_suspending = suspendingEnd;
    m_wall = wallEnd;
}

void FakeClock::sleep(std::chrono::nanoseconds time)
{
    m_continuous += time;
    m_wall += std::chrono::duration_cast<WallClock::duration>(time);
    ringUntil(m_continuous);
}

void FakeClock::ringUntil(ContinuousClock::time_point end)
{
    while (!m_alarms.empty() && m_alarms.begin()->first <= end) {
        const auto call = std::move(m_alarms.begin()->second);
        m_alarms.erase(m_alarms.begin());
        call();
    }
}

} // namespace tidewick
