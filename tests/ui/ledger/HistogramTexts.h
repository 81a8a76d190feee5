// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/DrawnTexts.h"
#include "ui/ledger/LedgerRig.h"

namespace tidewick {

/// The text above the bars, on the right.
inline QString label(const LedgerRig &rig)
{
    return drawnLines(rig.histogram()).value(1);
}

/// The text expected there while the bar at that index is hovered or focused.
inline QString labelOf(const LedgerRig &rig, qsizetype place)
{
    const LedgerFeed::Ledger &ledger = rig.histogram().ledgers().at(place);
    return QStringLiteral("#%1 · %2 transactions").arg(ledger.id).arg(ledger.txns);
}

/// The page that a click on a ledger opens.
inline QString pageOf(qint64 ledger)
{
    return QStringLiteral("https://xrplexplorer.com/ledger/%1").arg(ledger);
}

} // namespace tidewick
