// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/LedgerSchedule.h"

#include <algorithm>

namespace tidewick::sim {

namespace {

using namespace std::chrono_literals;

/// The network's pace, which does not depend on that of the run, and the ledger at a reference
/// time, 2026-11-01 00:00:00 UTC.
constexpr std::chrono::seconds networkInterval = 4s;
constexpr std::chrono::seconds baseTime = 1'793'491'200s;
constexpr qint64 baseIndex = 98'700'000;

/// About a hundred years to either side of it, since a clock may be set to anything.
constexpr qint64 least = 1'000'000;
constexpr qint64 most = 900'000'000;

} // namespace

LedgerSchedule::LedgerSchedule(WallTime now, Seconds interval, std::optional<quint32> newestStored)
    : m_interval(interval)
{
    const auto since = std::chrono::floor<std::chrono::seconds>(now.time_since_epoch()) - baseTime;
    const qint64 closed =
        std::chrono::floor<std::chrono::duration<qint64, std::ratio<4>>>(since).count();
    static_assert(networkInterval == std::chrono::duration<qint64, std::ratio<4>>(1));

    m_firstIndex = static_cast<quint32>(std::clamp(baseIndex + closed, least, most));
    m_firstClose = WallTime(baseTime + closed * networkInterval);
    if (newestStored && *newestStored >= m_firstIndex) {
        m_firstIndex = *newestStored + 1;
        m_firstClose = now;
    }
}

WallTime LedgerSchedule::closeOf(quint32 index) const
{
    const double after = static_cast<double>(index) - static_cast<double>(m_firstIndex);
    return m_firstClose + wallSpan(after * m_interval);
}

} // namespace tidewick::sim
