// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

#include <optional>

// The public XRP Ledger explorers that links lead to, each with the slash at its end.

namespace tidewick::Explorers {

/// For the menu's ledger row; "ledger/" and a ledger index follow.
inline constexpr const char *menu = "https://xrpscan.com/";

/// For the ledger window; "ledger/" and a ledger index follow, or "tx/" and a transaction's hash.
inline constexpr const char *window = "https://xrplexplorer.com/";

/// The page of something below an explorer's base. The name is whatever a node says, and stays one
/// segment of the path; nothing for names that cannot be one.
std::optional<QUrl> page(const char *base, const char *folder, const QString &name);

} // namespace tidewick::Explorers
