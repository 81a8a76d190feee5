// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QtGlobal>

#include <optional>

namespace tidewick::sim {

/// When the simulated network closes which ledger: one after the other at an even pace. A value.
class LedgerSchedule
{
public:
    /// The schedule of a run that begins now. The index follows from the time of day, so that a
    /// later run goes on with higher ones; it is above `newestStored`, which a fast run may have
    /// taken further. `interval` is real time.
    LedgerSchedule(WallTime now, Seconds interval, std::optional<quint32> newestStored);

    /// The ledger that was the last one to be closed when the run began.
    quint32 firstIndex() const { return m_firstIndex; }

    /// When a ledger is or was closed, also for ledgers from before the run.
    WallTime closeOf(quint32 index) const;

private:
    quint32 m_firstIndex;
    WallTime m_firstClose;
    Seconds m_interval;
};

} // namespace tidewick::sim
