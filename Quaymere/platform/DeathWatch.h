// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Files.h"

#include <sys/types.h>

namespace tidewick {

/// Sees to it that children do not outlive this program, however it dies: a small process of ours
/// waits for that and sends each of them SIGTERM, once. The kernel's own parent-death signal is not
/// fit for that in a program with threads: when they all die at once, it can be sent for several of
/// them, and a node that gets two SIGTERM at short distance dies without closing its store.
class DeathWatch
{
public:
    /// Make it before there are threads, and before much memory is in use: its process keeps a copy
    /// of what this one changes later. Where it cannot be made, it guards nobody.
    DeathWatch();
    DeathWatch(const DeathWatch &) = delete;
    DeathWatch &operator=(const DeathWatch &) = delete;
    /// As if the program had died: who is guarded and runs still gets SIGTERM.
    ~DeathWatch();

    /// Guards the process behind this process descriptor. False when that is not possible.
    bool guard(int process, pid_t id) const;

    /// Lets go of a process that is told to end by other means, so that it is not told twice.
    void release(pid_t id) const;

private:
    UniqueDescriptor m_channel;
    pid_t m_watcher = -1;
};

} // namespace tidewick
