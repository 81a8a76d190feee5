// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QtGlobal>

#include <optional>

namespace tidewick::sim {

/// The times at which the simulated network closes ledgers, at an even pace. A value.
class LedgerSchedule
{
public:
    /// The schedule of a run that begins now. The first index follows from the date and time, so
    /// that later runs continue with higher ones. It is always above `newestStored`, which may be
    /// ahead of the clock after a fast run. `interval` is real time.
    LedgerSchedule(WallTime now, Seconds interval, std::optional<quint32> newestStored);

    /// The last ledger that had been closed when the run began.
    quint32 firstIndex() const { return m_firstIndex; }

    /// The time at which a ledger closes or closed, including ledgers from before the run.
    WallTime closeOf(quint32 index) const;

private:
    quint32 m_firstIndex;
    WallTime m_firstClose;
    Seconds m_interval;
};

} // namespace tidewick::sim
