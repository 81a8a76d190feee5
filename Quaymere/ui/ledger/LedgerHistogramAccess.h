// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick {

class LedgerHistogram;

/// The histogram as screen readers see it: a list with an item for each bar.
namespace LedgerHistogramAccess {

/// Registers accessible interfaces for histograms. Repeated calls are harmless.
void install();

/// Reports that the keyboard focus is at another bar.
void tellFocus(LedgerHistogram &histogram);

} // namespace LedgerHistogramAccess

} // namespace tidewick
