// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <chrono>
#include <filesystem>

#include <sys/types.h>

namespace tidewick {

/// Sees to it that children do not outlive this program, however it dies: a small process of ours
/// waits for that, sends each of them SIGTERM, once, and SIGKILL to those that have not ended in
/// time. The kernel's own parent-death signal is not fit for that in a program with threads: when
/// they all die at once, it can be sent for several of them, and a node that gets two SIGTERM at
/// short distance dies without closing its store.
class DeathWatch
{
public:
    /// Make it before there are threads, and before much memory is in use: its process keeps a copy
    /// of what this one changes later. Where it cannot be made, it guards nobody.
    ///
    /// Where a file is named, the watch keeps a lock on it, which tells a later program of it.
    explicit DeathWatch(const std::filesystem::path &lockFile = {},
                        std::chrono::seconds patience = std::chrono::seconds(90));
    DeathWatch(const DeathWatch &) = delete;
    DeathWatch &operator=(const DeathWatch &) = delete;
    /// As if the program had died: who is guarded and runs still gets SIGTERM, and is waited for.
    ~DeathWatch();

    /// Guards the process behind this process descriptor. False when that is not possible.
    bool guard(int process, pid_t id) const;

    /// Notes that a process is told to end by other means, so that it is not told twice.
    void noteTold(pid_t id) const;

    /// Whether no program before this one has left children that its watch still waits for. Where
    /// that cannot be told, they are taken to have ended.
    bool isAlone() const;

private:
    UniqueDescriptor m_lock;
    UniqueDescriptor m_channel;
};

} // namespace tidewick
