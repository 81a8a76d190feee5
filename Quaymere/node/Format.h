// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <chrono>

namespace tidewick::Format {

/// "59m", "1h 0m", "27h 3m": whole minutes, without days. Negative counts as 0.
QString duration(std::chrono::seconds duration);

} // namespace tidewick::Format
