// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/RunProgram.h"

#include <string>
#include <vector>

namespace tidewick {

/// Runs a program that is looked for where programs are, with variables laid over the test's own.
Outcome runTool(std::vector<std::string> words, const ProcessEnvironment &variables = {});

/// Whether it ended well and without a word on standard error. What it said else goes to the test's
/// own output.
bool isContent(const std::vector<std::string> &words, const ProcessEnvironment &variables = {});

} // namespace tidewick
