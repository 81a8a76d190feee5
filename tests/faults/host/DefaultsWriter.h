// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <optional>

/// A separate process that writes settings: this program, run in a special mode.
namespace tidewick::DefaultsWriter {

/// The command that stores the numbers up to `times` under this key. It exits with status 1 if a
/// number cannot be stored or is missing afterwards.
ChildSpec spec(const std::string &key, int times);

/// Runs that mode if the arguments select it, and returns the exit status; otherwise returns
/// nothing.
std::optional<int> run(int argc, char **argv);

} // namespace tidewick::DefaultsWriter
