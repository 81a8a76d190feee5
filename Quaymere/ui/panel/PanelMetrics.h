// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

/// The node panel's measures in points, scaled by TextScale.
namespace tidewick::PanelMetrics {

inline constexpr int width = 320;
/// From the window's edge to a command's fill, to a hairline, and to the text.
inline constexpr int fillMargin = 6;
inline constexpr int lineMargin = 12;
inline constexpr int textMargin = 16;
/// The space above and below a text, added together.
inline constexpr int commandPadding = 10;
inline constexpr int figurePadding = 7;
inline constexpr int fillRadius = 5;
/// A hairline with the space around it.
inline constexpr int line = 15;
inline constexpr int top = 12;
/// Between the header and its hairline, in addition to the space around every hairline.
inline constexpr int headerBottom = 7;
inline constexpr int bottom = 14;
/// The advice: the corner radius of its background, the space inside it at each side, the space
/// inside it above and below, added together, and the gap between it and its neighbours.
inline constexpr int adviceRadius = 7;
inline constexpr int adviceMargin = 12;
inline constexpr int advicePadding = 18;
inline constexpr int adviceGap = 5;
/// The icon's height, the width of the widest icon and of the bare mark, and the space between icon
/// and title. The title has only two positions: beside the bare mark and beside a mark with a
/// badge.
inline constexpr int iconHeight = 17;
inline constexpr int iconWidth = 38;
inline constexpr int markWidth = 23;
inline constexpr int iconGap = 11;

} // namespace tidewick::PanelMetrics
