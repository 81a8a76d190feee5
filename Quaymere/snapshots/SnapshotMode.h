// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "commandline/CommandLine.h"

namespace tidewick::SnapshotMode {

/// Renders one of the application's windows to a PNG file, in memory and in the requested theme.
/// Starts no node and writes nothing else. Returns the exit status of the process.
int run(const Mode::Snapshot &mode, char **argv);

} // namespace tidewick::SnapshotMode
