// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <QString>

#include <optional>

/// Converts dates from the node's form to the reader's.
namespace tidewick::NodeDate {

/// Parses a date as the node writes it, "2026-Dec-22 00:35:01.000000000 UTC"; drops fractions of a
/// second. Nothing for other texts, such as "unknown" and "never".
std::optional<WallClock::time_point> parse(const QString &text);

/// The day as a reader in this time zone would write it: "18 January", with the year if it is not
/// the current one.
QString day(WallClock::time_point date, WallClock::time_point now);

} // namespace tidewick::NodeDate
