// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerMetrics.h"
#include "ui/ledger/Palette.h"

namespace tidewick {

/// The current look of the ledger window, which owns it and shares it with its parts.
struct LedgerLook
{
    Palette colors;
    LedgerMetrics metrics;
    /// Whether nothing may move by itself.
    bool still = false;
    /// Whether the figures are no longer current.
    bool old = false;
};

} // namespace tidewick
