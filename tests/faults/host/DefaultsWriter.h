// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <optional>

/// Another process that writes settings: this program, run in a way of its own.
namespace tidewick::DefaultsWriter {

/// How to run it: it stores the numbers up to `times` under this key. Ends with 1 when one cannot
/// be stored or is not there afterwards.
ChildSpec spec(const std::string &key, int times);

/// Does so if that is what the arguments of this process say; the exit status then.
std::optional<int> run(int argc, char **argv);

} // namespace tidewick::DefaultsWriter
