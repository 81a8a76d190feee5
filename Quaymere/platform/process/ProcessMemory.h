// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <optional>

#include <sys/types.h>

namespace tidewick {

/// The memory use of a process, in bytes.
struct ProcessMemory
{
    qint64 footprint;
    /// The largest footprint since the process started.
    qint64 peakFootprint;

    /// Nothing if the process has gone or the host does not report its memory use.
    static std::optional<ProcessMemory> of(pid_t process);

    /// Makes the allocator return freed memory to the system from now on, even after a large block
    /// has been in use. Call it before anything else.
    static void giveBackFreed();
};

} // namespace tidewick
