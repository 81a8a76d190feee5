// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

#include <optional>

// The base URLs of the public XRP Ledger explorers that links open, each with a trailing slash.

namespace tidewick::Explorers {

/// For the menu's ledger row; "ledger/" and a ledger index follow.
inline constexpr const char *menu = "https://xrpscan.com/";

/// For the ledger window; "ledger/" and a ledger index follow, or "tx/" and a transaction's hash.
inline constexpr const char *window = "https://xrplexplorer.com/";

/// Returns the page of an item below an explorer's base URL. The name may be anything that a node
/// reports and stays a single path segment; nothing for names that cannot be one.
std::optional<QUrl> page(const char *base, const char *folder, const QString &name);

} // namespace tidewick::Explorers
