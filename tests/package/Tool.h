// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/RunProgram.h"

#include <string>
#include <vector>

namespace tidewick {

/// Runs a program looked up in PATH; the variables override the test's own.
Outcome runTool(std::vector<std::string> words, const ProcessEnvironment &variables = {});

/// Whether the program exits with status 0 and without output on standard error. Otherwise its
/// output is printed to the test's own output.
bool isContent(const std::vector<std::string> &words, const ProcessEnvironment &variables = {});

} // namespace tidewick
