// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Page.h"
#include "ui/controls/Scheme.h"

namespace tidewick {

/// Draws every surface of the program with sample data, in these colours, with the application's
/// font and layout direction: the tray's images, menu, panel, windows, dialogs, list of choices and
/// tooltip. Notifications and most menus are drawn by the desktop.
std::vector<Figure> surfaces(const Scheme &scheme);

} // namespace tidewick
