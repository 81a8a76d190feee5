// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>

namespace tidewick::sim {

/// A span of time, real or simulated; the course of a run is reckoned in fractions of a second.
using Seconds = std::chrono::duration<double>;

using WallTime = std::chrono::system_clock::time_point;

/// The point of time, or the span, as a whole number of its clock's ticks.
inline std::chrono::system_clock::duration wallSpan(Seconds seconds)
{
    return std::chrono::duration_cast<std::chrono::system_clock::duration>(seconds);
}

} // namespace tidewick::sim
