// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::sim {

/// In the shape of a real node's, and not to be mistaken for one.
inline constexpr const char *version = "2.3.0-simulated";

} // namespace tidewick::sim
