// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace tidewick {

/// Whether the process is running. A process that has ended keeps its id until its parent reaps it;
/// if that parent is init, it may never do so, as not every init reaps its children.
inline bool runs(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // The state follows the name, which is in parentheses and may contain any character.
    const std::size_t name = line.rfind(") ");
    return name != std::string::npos && line.at(name + 2) != 'Z' && line.at(name + 2) != 'X';
}

/// The children that the process's main thread has started, including those not yet reaped.
inline std::vector<pid_t> childrenOf(pid_t process)
{
    const std::string task = std::to_string(process);
    std::ifstream file("/proc/" + task + "/task/" + task + "/children");
    return {std::istream_iterator<pid_t>(file), {}};
}

/// Returns when the process has ended, or when the limit has passed. Does not reap the process,
/// which need not be a child of this one.
inline void waitForEnd(pid_t process, std::chrono::milliseconds limit)
{
    const UniqueDescriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0U)));
    if (!descriptor)
        return;
    pollfd entry{descriptor.get(), POLLIN, 0};
    ::poll(&entry, 1, static_cast<int>(limit.count()));
}

/// The total time that the process's main thread has been runnable but waiting for a processor.
/// Zero if the kernel does not report it.
inline std::chrono::nanoseconds keptWaiting(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
    std::int64_t ran = 0;
    std::int64_t waited = 0;
    file >> ran >> waited;
    return std::chrono::nanoseconds(waited);
}

} // namespace tidewick
