// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"
#include "platform/time/Clock.h"

#include <chrono>
#include <optional>

namespace tidewick {

/// When a running node stops on its own. A value, read from the settings at each start.
struct RunLimits
{
    /// Reckoned from the first moment in sync.
    std::optional<std::chrono::seconds> afterFull;
    /// Reckoned from the start.
    std::optional<std::chrono::seconds> hardCap;
    /// GB of 10^9 bytes that the data volume must keep free.
    double diskGuardGB = 10;

    /// Ends the program for a number of minutes whose seconds do not fit 64 bits.
    static RunLimits read(const Defaults &defaults);

    /// The earlier of the two ends, of those that are known; nothing when none is. An end beyond
    /// the range of the clock (some 292 years) is the clock's last moment.
    std::optional<SuspendingClock::time_point>
    deadline(SuspendingClock::time_point startedAt,
             std::optional<SuspendingClock::time_point> firstFullAt) const;
};

} // namespace tidewick
