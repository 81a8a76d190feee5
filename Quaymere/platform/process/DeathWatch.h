// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <chrono>
#include <filesystem>

#include <sys/types.h>

namespace tidewick {

/// Ensures that child processes do not outlive this program, however it dies. A small watchdog
/// process waits for the program's end, then sends SIGTERM once to each child, and SIGKILL to those
/// that have not ended in time. The kernel's own parent-death signal is unsuitable for a program
/// with threads: when all threads die at once, it can be sent for several of them, and a node that
/// receives SIGTERM twice in quick succession dies without closing its store.
class DeathWatch
{
public:
    /// Create it before any threads, and before much memory is in use: the watchdog process keeps a
    /// copy of any memory that this process changes later. If the watchdog process cannot be
    /// started, nothing is guarded. `patience` is the time between SIGTERM and SIGKILL.
    ///
    /// If a lock file is named, the watchdog process shares the lock that isAlone() takes on it and
    /// holds it until it ends. A later instance of the program detects the watchdog process by that
    /// lock.
    explicit DeathWatch(const std::filesystem::path &lockFile = {},
                        std::chrono::seconds patience = std::chrono::seconds(90));
    DeathWatch(const DeathWatch &) = delete;
    DeathWatch &operator=(const DeathWatch &) = delete;
    /// Acts as if the program had died: guarded processes that still run receive SIGTERM, and the
    /// destructor waits for them to end.
    ~DeathWatch();

    /// Guards the process that this process descriptor refers to. Returns false if that is not
    /// possible.
    bool guard(int process, pid_t id) const;

    /// Has the watchdog process send SIGTERM to the guarded process, unless it has done so before.
    /// Whatever happens to this program meanwhile, the process receives the signal exactly once.
    /// Returns false if the watchdog process has gone.
    bool terminate(pid_t id) const;

    /// Takes the lock. Returns false if an earlier instance of the program has left child processes
    /// that its watchdog process still waits for. If that cannot be determined, assumes that they
    /// have ended.
    bool isAlone() const;

private:
    UniqueDescriptor m_lock;
    UniqueDescriptor m_channel;
};

} // namespace tidewick
