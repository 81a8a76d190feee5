// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/RunLimits.h"

#include "node/Settings.h"

#include <algorithm>

namespace tidewick {

namespace {

std::optional<std::chrono::seconds> limit(const Setting &minutes, const Defaults &defaults)
{
    const qint64 count = minutes.read(defaults);
    if (count < 1)
        return std::nullopt;
    qint64 seconds = 0;
    if (__builtin_mul_overflow(count, 60, &seconds))
        qFatal("%s: %lld minutes are out of range", minutes.key.data(), count);
    return std::chrono::seconds(seconds);
}

SuspendingClock::time_point endOf(SuspendingClock::time_point start, std::chrono::seconds length)
{
    constexpr auto last = SuspendingClock::time_point::max();
    const auto room = std::chrono::floor<std::chrono::seconds>(last - start);
    return length > room ? last : start + length;
}

} // namespace

RunLimits RunLimits::read(const Defaults &defaults)
{
    return {limit(Settings::autoStopAfterFullMinutes, defaults),
            limit(Settings::autoStopHardCapMinutes, defaults),
            static_cast<double>(Settings::diskGuardFreeGB.read(defaults))};
}

std::optional<SuspendingClock::time_point>
RunLimits::deadline(SuspendingClock::time_point startedAt,
                    std::optional<SuspendingClock::time_point> firstFullAt) const
{
    std::optional<SuspendingClock::time_point> end;
    if (hardCap)
        end = endOf(startedAt, *hardCap);
    if (afterFull && firstFullAt) {
        const auto afterFullEnd = endOf(*firstFullAt, *afterFull);
        end = end ? std::min(*end, afterFullEnd) : afterFullEnd;
    }
    return end;
}

} // namespace tidewick
