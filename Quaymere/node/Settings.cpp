// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Settings.h"

#include <algorithm>

namespace tidewick {

qint64 Setting::read(const Defaults &defaults) const
{
    return defaults.contains(key) ? std::clamp(defaults.integer(key), least, most) : fallback;
}

} // namespace tidewick
