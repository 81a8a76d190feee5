// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Settings.h"

#include <algorithm>

namespace tidewick {

qint64 Setting::stored(const Defaults &defaults) const
{
    return defaults.contains(key) ? defaults.integer(key) : fallback;
}

qint64 Setting::read(const Defaults &defaults) const
{
    return std::clamp(stored(defaults), least, most);
}

} // namespace tidewick
