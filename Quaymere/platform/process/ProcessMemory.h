// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <optional>

#include <sys/types.h>

namespace tidewick {

/// What a process holds in memory, in bytes.
struct ProcessMemory
{
    qint64 footprint;
    /// The largest footprint since the process began.
    qint64 peakFootprint;

    /// Nothing when the process is gone or the host does not tell.
    static std::optional<ProcessMemory> of(pid_t process);

    /// From now on this process gives back what it frees, also after it has held something large
    /// once. To be called first of all.
    static void giveBackFreed();
};

} // namespace tidewick
