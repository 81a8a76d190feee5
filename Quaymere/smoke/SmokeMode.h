// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

namespace tidewick::SmokeMode {

/// Runs the smoke test in a data folder of its own, printing the transcript to standard output. The
/// process's exit status.
int run(int &argc, char **argv);

} // namespace tidewick::SmokeMode
