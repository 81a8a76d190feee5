// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QString>

/// Points in time as a node writes them, always in UTC and in English.
namespace tidewick::sim::DateText {

/// "2026-Nov-20 19:47:40.012 UTC", with this number of decimals for the second, at most 9.
QString human(WallTime time, int decimals);

/// "2026-11-20T19:47:40Z".
QString iso(WallTime time);

/// Whole seconds since the year 2000, as ledgers count them.
qint64 ledgerTime(WallTime time);

} // namespace tidewick::sim::DateText
