// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::sim {

/// Has the format of a real node's version, but cannot be mistaken for one.
inline constexpr const char *version = "2.3.0-simulated";

} // namespace tidewick::sim
