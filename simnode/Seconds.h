// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>

namespace tidewick::sim {

/// A duration in real or simulated time. The course of a run is calculated in fractions of a
/// second.
using Seconds = std::chrono::duration<double>;

using WallTime = std::chrono::system_clock::time_point;

/// The duration as a whole number of ticks of the system clock.
inline std::chrono::system_clock::duration wallSpan(Seconds seconds)
{
    return std::chrono::duration_cast<std::chrono::system_clock::duration>(seconds);
}

} // namespace tidewick::sim
