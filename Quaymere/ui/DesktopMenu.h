// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/Windows.h"
#include "ui/menu/MenuCommands.h"

namespace tidewick {

class Alerts;

/// Returns the menu's host on a desktop. It uses the clipboard and these windows and alerts, which
/// must outlive the commands.
MenuHost desktopMenuHost(Windows &windows, Alerts &alerts, Windows::OpenUrl openUrl);

} // namespace tidewick
