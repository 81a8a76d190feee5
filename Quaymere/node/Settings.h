// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Defaults.h"

#include <QLatin1String>

#include <limits>

namespace tidewick {

/// An integer setting: its key, the value that applies while it is absent, and the range to which a
/// stored value is clamped.
struct Setting
{
    QLatin1String key;
    qint64 fallback;
    qint64 least = std::numeric_limits<qint64>::min();
    qint64 most = std::numeric_limits<qint64>::max();

    /// The value in the store, which may have been edited by hand, or the fallback.
    qint64 stored(const Defaults &defaults) const;

    /// The value that applies.
    qint64 read(const Defaults &defaults) const;
};

/// All settings of the user. They are read when a node starts; a change made while it runs applies
/// from the next start.
namespace Settings {

/// Minutes from the first moment in sync to an automatic stop; 0 means never.
inline constexpr Setting autoStopAfterFullMinutes{QLatin1String("autoStopAfterFullMinutes"), 0, 0};

/// Minutes from the start to an automatic stop; 0 means no limit.
inline constexpr Setting autoStopHardCapMinutes{QLatin1String("autoStopHardCapMinutes"), 0, 0};

/// MiB by which the store grows before the node trims it.
inline constexpr Setting roundGrowthMiB{QLatin1String("roundGrowthMiB"), 2048, 512, 16384};

/// GB (10^9 bytes) that the data volume must keep free while a node runs.
inline constexpr Setting diskGuardFreeGB{QLatin1String("diskGuardFreeGB"), 10};

} // namespace Settings

} // namespace tidewick
