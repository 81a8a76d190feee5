// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

/// The node panel's measures in points, as TextScale has them.
namespace tidewick::PanelMetrics {

inline constexpr int width = 320;
/// From the window's edge to a command's fill, to a hairline, to the text.
inline constexpr int fillMargin = 6;
inline constexpr int lineMargin = 12;
inline constexpr int textMargin = 16;
/// Above and below a text, both together.
inline constexpr int commandPadding = 10;
inline constexpr int figurePadding = 7;
inline constexpr int fillRadius = 5;
/// A hairline with the space around it.
inline constexpr int line = 15;
inline constexpr int top = 12;
/// Between the header and its hairline, beside the space that every hairline has.
inline constexpr int headerBottom = 7;
inline constexpr int bottom = 14;
/// The advice: its ground's corners, the space within it at the sides and, both together, above and
/// below, and around it towards header and hairline.
inline constexpr int adviceRadius = 7;
inline constexpr int adviceMargin = 12;
inline constexpr int advicePadding = 18;
inline constexpr int adviceGap = 5;
/// The icon's height, the widest icon there is, and the space between it and the title. The title
/// has two places only: beside the bare mark and beside a mark with a badge.
inline constexpr int iconHeight = 17;
inline constexpr int iconWidth = 38;
inline constexpr int markWidth = 23;
inline constexpr int iconGap = 11;

} // namespace tidewick::PanelMetrics
