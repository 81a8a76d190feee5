// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::ApplicationMode {

/// Runs the application: on the desktop, or in the terminal where there is no display. Of the
/// arguments only the program's name counts. The process's exit status.
int run(char **argv);

} // namespace tidewick::ApplicationMode
