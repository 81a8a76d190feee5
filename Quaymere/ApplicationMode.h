// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::ApplicationMode {

/// Runs the application: on the desktop, or in the terminal where there is no display. What follows
/// the program's name on the command line is not for Qt to read. The process's exit status.
int run(char *programName);

} // namespace tidewick::ApplicationMode
