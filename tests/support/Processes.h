// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>

#include <poll.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace tidewick {

/// Whether the process runs. One that has ended keeps its number until its parent collects it;
/// where that parent is the first process of the system, not every one does.
inline bool runs(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // The state follows the name, which may contain anything, in parentheses.
    const std::size_t name = line.rfind(") ");
    return name != std::string::npos && line.at(name + 2) != 'Z' && line.at(name + 2) != 'X';
}

/// Returns when the process, anybody's, has ended, or after so much time. Does not collect it.
inline void waitForEnd(pid_t process, std::chrono::milliseconds limit)
{
    const UniqueDescriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0U)));
    if (!descriptor)
        return;
    pollfd entry{descriptor.get(), POLLIN, 0};
    ::poll(&entry, 1, static_cast<int>(limit.count()));
}

/// For how long so far the process, its first thread, was ready to go on while others had the
/// processors. Zero where the kernel does not tell.
inline std::chrono::nanoseconds keptWaiting(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
    std::int64_t ran = 0;
    std::int64_t waited = 0;
    file >> ran >> waited;
    return std::chrono::nanoseconds(waited);
}

} // namespace tidewick
