// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::SmokeMode {

/// Runs the smoke test in its own data folder and prints the transcript to standard output. Returns
/// the exit status of the process.
int run(int &argc, char **argv);

} // namespace tidewick::SmokeMode
