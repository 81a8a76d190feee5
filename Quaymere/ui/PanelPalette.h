// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>

namespace tidewick {

/// The node panel's colours. Its widgets take them from their palettes, by these roles:
/// Window the ground; WindowText title and commands; Text figures; PlaceholderText the detail and
/// the hint; Mid hairlines; AlternateBase the fill of a command under the pointer or with the
/// focus, on the ground; ToolTipBase the ground of advice; Link the ring around the focus;
/// Highlight and HighlightedText selections. Texts other than those of disabled commands have a
/// contrast of 4.5 and more, on the fill too.
QPalette panelPalette(bool dark);

} // namespace tidewick
