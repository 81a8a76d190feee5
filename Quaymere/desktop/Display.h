// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace tidewick::Display {

/// Where Qt's platform plugins are installed.
std::filesystem::path platformPlugins();

/// Whether there is a window system to connect to, and one of these plugins for it. Qt aborts the
/// program if not, so check this first. Reports a missing plugin on standard error.
bool isThere(const std::filesystem::path &plugins = platformPlugins());

} // namespace tidewick::Display
