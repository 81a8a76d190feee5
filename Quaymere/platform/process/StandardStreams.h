// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

// Output of the command-line modes. It is unbuffered, so that nothing is lost if the process ends
// abruptly, and lines stay in order with those of a child process.

namespace tidewick::StandardStreams {

/// Call first in main. Fills those of descriptors 0 to 2 that the caller closed, so that no file
/// opened later receives output meant for a stream. Also makes writes to a closed pipe fail instead
/// of ending the process.
void prepare();

/// Writes the line and a line feed to standard output. If that fails, prints the reason on standard
/// error and returns false.
bool printLine(std::string_view line);

/// Writes the text unchanged to standard error. Ignores failure, since there is nowhere left to
/// report it.
void printError(std::string_view text);

} // namespace tidewick::StandardStreams
