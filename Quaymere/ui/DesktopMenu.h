// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/Windows.h"
#include "ui/menu/MenuCommands.h"

namespace tidewick {

class Alerts;

/// What the menu's commands take from a desktop: these windows and alerts, which outlive the
/// commands, and its clipboard.
MenuHost desktopMenuHost(Windows &windows, Alerts &alerts, Windows::OpenUrl openUrl);

} // namespace tidewick
