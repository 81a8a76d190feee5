// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/time/Clock.h"

#include <QString>

#include <optional>

/// Dates between the node and the reader.
namespace tidewick::NodeDate {

/// A date as the node writes it, "2026-Dec-22 00:35:01.000000000 UTC"; fractions of a second are
/// dropped. Nothing for other texts, such as "unknown" and "never".
std::optional<WallClock::time_point> parse(const QString &text);

/// The day as a reader in this time zone would say it: "18 January", with the year where that is
/// not the present one.
QString day(WallClock::time_point date, WallClock::time_point now);

} // namespace tidewick::NodeDate
