// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

/// The measures of card windows, in points, for text of 10 points. With larger text they grow as
/// TextScale::scaled() defines.
namespace tidewick::ControlMetrics {

inline constexpr int cardRadius = 10;
inline constexpr int controlRadius = 6;
inline constexpr int controlHeight = 26;
/// From a control's edge to its text.
inline constexpr int controlPadding = 12;
/// Between a card's edge and the texts and controls in it.
inline constexpr int rowPadding = 15;
inline constexpr int rowEnd = 11;
inline constexpr int rowGap = 12;
/// Above and below the content of a row.
inline constexpr int rowMargin = 7;
inline constexpr int pickerWidth = 150;
/// The arrows of a picker and the indicator of a disclosure.
inline constexpr int signWidth = 8;
inline constexpr int signMargin = 9;

} // namespace tidewick::ControlMetrics
