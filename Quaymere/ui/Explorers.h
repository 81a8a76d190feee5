// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

// The public XRP Ledger explorers that links lead to, each with the slash at its end.

namespace tidewick::Explorers {

/// For the menu's ledger row; "ledger/" and a ledger index follow.
inline constexpr const char *menu = "https://xrpscan.com/";

} // namespace tidewick::Explorers
