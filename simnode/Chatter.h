// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QtGlobal>

#include <stop_token>
#include <thread>

#include <sys/types.h>

/// What a scenario has the process do with its standard streams, most of it before anything else.
namespace tidewick::sim::Chatter {

/// Prints "line 1", "line 2" and so on to standard error.
void printLines(qint64 count);

/// Prints numbered lines of a hundred bytes to standard error, so many bytes in all; the last byte
/// is a line feed. Takes little memory for any amount.
void printBytes(qint64 bytes, const std::stop_token &stop = {});

/// The same beside everything else, as fast as it goes. It ends with its thread.
[[nodiscard]] std::jthread flood(qint64 bytes);

/// Has standard output and error lead nowhere, so that who reads them sees their end.
void closeStreams();

/// Leaves a process behind that keeps the standard streams open, in a session of its own so that no
/// signal to the node's group reaches it, and ends by itself after that long. To be called before
/// anything is opened, for it would keep that open as well. Its process id.
pid_t startGrandchild(Seconds lifetime);

} // namespace tidewick::sim::Chatter
