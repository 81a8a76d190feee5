// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"
#include "platform/time/Clock.h"

#include <chrono>
#include <optional>

namespace tidewick {

/// Limits at which a running node is stopped automatically. A value, read from the settings at each
/// start.
struct RunLimits
{
    /// Counted from the first moment in sync.
    std::optional<std::chrono::seconds> afterFull;
    /// Counted from the start.
    std::optional<std::chrono::seconds> hardCap;
    /// GB of 10^9 bytes that the data volume must keep free.
    double diskGuardGB = 10;

    /// Aborts the program if a number of minutes, converted to seconds, does not fit into 64 bits.
    static RunLimits read(const Defaults &defaults);

    /// The earlier of the two deadlines, as far as they are known; nothing if neither is. A
    /// deadline beyond the range of the clock (about 292 years) is the clock's last time.
    std::optional<SuspendingClock::time_point>
    deadline(SuspendingClock::time_point startedAt,
             std::optional<SuspendingClock::time_point> firstFullAt) const;
};

} // namespace tidewick
