// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "commandline/CommandLine.h"

namespace tidewick::SnapshotMode {

/// Renders one of the application's windows to a PNG file: in memory, in the theme asked for, with
/// no node started and nothing else written. Returns the exit status of the process.
int run(const Mode::Snapshot &mode, char **argv);

} // namespace tidewick::SnapshotMode
