// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <chrono>

namespace tidewick::Format {

/// Formats a duration in whole minutes, without days: "59m", "1h 0m", "27h 3m". A negative one
/// counts as 0.
QString duration(std::chrono::seconds duration);

} // namespace tidewick::Format
