// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"

#include <QPalette>

namespace tidewick {

/// Returns the palette that controls take their colours from. The roles are:
/// - Window: the background of windows
/// - Base: the background of cards and lists
/// - Button, ButtonText, Dark: pickers and buttons, their texts and their borders
/// - WindowText: titles, labels and commands
/// - Text: figures
/// - PlaceholderText: details and hints
/// - BrightText: errors
/// - Mid: hairlines
/// - AlternateBase: the translucent fill of controls under the pointer, pressed or focused
/// - Link: the focus ring
/// - ToolTipBase: the background of advice
/// - Highlight, HighlightedText: selections
///
/// Text of enabled controls has a contrast of at least 4.5, even on the fill, and of at least 7 if
/// the scheme is one of high contrast. Borders and hairlines then have at least 3.
QPalette controlPalette(const Scheme &scheme);

/// Whether a palette returned by controlPalette() is one of high contrast.
bool hasHighContrast(const QPalette &palette);

} // namespace tidewick
