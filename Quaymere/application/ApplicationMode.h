// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::ApplicationMode {

/// Runs the application on the desktop, or in the terminal if there is no display. Ignores all
/// arguments except the program name. Returns the exit status of the process.
int run(char **argv);

} // namespace tidewick::ApplicationMode
