// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "commandline/CommandLine.h"

#include <cstdlib>

// The modes for scripts that draw nothing: results on standard output, everything else on standard
// error. Each returns the exit status of the process. Only the smoke test needs an event loop.

namespace tidewick::ToolingModes {

/// A status of its own for wrong use, apart from EXIT_FAILURE for an operation that failed.
inline constexpr int exitUsage = 2;

int run(const Mode::RenderConfig &mode);
int run(const Mode::NodeVersion &mode);
int run(const Mode::DescribeStorage &mode);
int run(const Mode::Usage &mode);

} // namespace tidewick::ToolingModes
