// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

// Output of the command-line modes: unbuffered, so that nothing is lost at an abrupt end and lines
// keep their order with those of a child.

namespace tidewick::StandardStreams {

/// Call first in main. Fills descriptors 0 to 2 where the caller closed them, so that no file
/// opened later receives what is meant for a stream, and has writes to a closed pipe fail instead
/// of ending the process.
void prepare();

/// The line and a line feed on standard output. False when it could not be written, with the reason
/// told on standard error.
bool printLine(std::string_view line);

/// The text as it stands on standard error. Nothing can be done if that fails.
void printError(std::string_view text);

} // namespace tidewick::StandardStreams
