// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace tidewick {

/// Returns a table of the contrast ratios of all texts and graphics against what is behind them, a
/// line for each, with a column for each scheme of colours.
QString contrastTable();

} // namespace tidewick
