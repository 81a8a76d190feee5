// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QtGlobal>

#include <stop_token>
#include <thread>

#include <sys/types.h>

/// What a scenario makes the process do with its standard streams, mostly before anything else.
namespace tidewick::sim::Chatter {

/// Prints "line 1", "line 2" and so on to standard error.
void printLines(qint64 count);

/// Prints numbered lines of a hundred bytes to standard error, `bytes` in total; the last byte is a
/// line feed. Needs little memory for any amount.
void printBytes(qint64 bytes, const std::stop_token &stop = {});

/// Does the same in a thread, as fast as possible, until the thread is stopped.
[[nodiscard]] std::jthread flood(qint64 bytes);

/// Redirects standard output and error to /dev/null, so that their readers see end of file.
void closeStreams();

/// Starts a process that keeps the standard streams open and exits after `lifetime`. It has its own
/// session, so that signals to the node's process group do not reach it. Call this before opening
/// anything, because the process would keep that open, too. Returns the process id.
pid_t startGrandchild(Seconds lifetime);

} // namespace tidewick::sim::Chatter
