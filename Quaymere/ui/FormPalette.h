// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>

namespace tidewick {

/// The colours of the windows made of cards. Beside the node panel's, which keep their roles, and
/// with the same contrast of 4.5 and more for texts: Base cards and lists; Button and ButtonText
/// pickers and buttons; Dark the borders of those; BrightText what went wrong.
QPalette formPalette(bool dark);

} // namespace tidewick
