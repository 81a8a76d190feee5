// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick {

class LedgerHistogram;

/// The histogram as assistive software meets it: a list with an item for each bar.
namespace LedgerHistogramAccess {

/// Makes histograms known to it. Once is enough; more does no harm.
void install();

/// The keyboard is at another bar.
void tellFocus(LedgerHistogram &histogram);

} // namespace LedgerHistogramAccess

} // namespace tidewick
