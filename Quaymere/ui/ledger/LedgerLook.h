// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerMetrics.h"
#include "ui/ledger/Palette.h"

namespace tidewick {

/// How the ledger window looks at present; its parts take it from the window that owns it.
struct LedgerLook
{
    Palette colors;
    LedgerMetrics metrics;
    /// Nothing moves by itself.
    bool still = false;
};

} // namespace tidewick
