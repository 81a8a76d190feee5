// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>

namespace tidewick {

/// The colours that controls take from their palettes, by these roles: Window the ground of
/// windows; Base that of cards and lists; Button and ButtonText pickers and buttons, Dark their
/// borders; WindowText titles, labels and commands; Text figures; PlaceholderText details and
/// hints; BrightText errors; Mid hairlines; AlternateBase the translucent fill of what is under the
/// pointer, pressed or focused; Link the focus ring; ToolTipBase the ground of advice; Highlight
/// and HighlightedText selections. Texts of enabled controls have a contrast of at least 4.5, on
/// the fill too.
QPalette controlPalette(bool dark);

} // namespace tidewick
