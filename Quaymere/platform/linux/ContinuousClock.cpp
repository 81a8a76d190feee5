// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/time/Clock.h"

#include <ctime>

namespace tidewick {

// On Linux, CLOCK_MONOTONIC stops during sleep and CLOCK_BOOTTIME does not.
ContinuousClock::time_point ContinuousClock::now() noexcept
{
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return time_point(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace tidewick
