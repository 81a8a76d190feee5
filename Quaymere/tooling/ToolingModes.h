// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "commandline/CommandLine.h"

#include <cstdlib>

// The modes for scripts that render nothing. They write results to standard output and everything
// else to standard error. Each returns the exit status of the process. None needs an event loop.

namespace tidewick::ToolingModes {

/// The exit status for incorrect usage, distinct from EXIT_FAILURE, which reports a failed
/// operation.
inline constexpr int exitUsage = 2;

int run(const Mode::RenderConfig &mode);
int run(const Mode::NodeVersion &mode);
int run(const Mode::DescribeStorage &mode);
int run(const Mode::Usage &mode);

} // namespace tidewick::ToolingModes
