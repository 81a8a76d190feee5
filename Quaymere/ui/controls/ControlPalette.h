// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>

namespace tidewick {

/// Returns the palette that controls take their colours from. Its roles: Window is the background
/// of windows, Base that of cards and lists. Button and ButtonText are for pickers and buttons,
/// Dark for their borders. WindowText is for titles, labels and commands, Text for figures,
/// PlaceholderText for details and hints, BrightText for errors. Mid is for hairlines.
/// AlternateBase is the translucent fill of anything under the pointer, pressed or focused. Link is
/// the focus ring, ToolTipBase the background of advice, Highlight and HighlightedText are for
/// selections. The text of enabled controls has a contrast of at least 4.5, even on the fill.
QPalette controlPalette(bool dark);

} // namespace tidewick
