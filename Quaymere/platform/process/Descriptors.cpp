// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/Descriptors.h"

#include "platform/files/Files.h"
#include "platform/process/StandardStreams.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tidewick::Descriptors {

namespace {

/// With all its windows open on a desktop, the program uses about 25.
constexpr int needed = 32;
/// The soft limit required for that, including inherited descriptors.
constexpr rlim_t usualLimit = 256;

void raiseLimit()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= usualLimit)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, usualLimit);
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

bool suffice()
{
    raiseLimit();
    std::vector<UniqueDescriptor> taken;
    while (taken.size() < needed) {
        taken.emplace_back(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
        if (taken.back())
            continue;
        const std::error_code reason(errno, std::generic_category());
        taken.clear();
        StandardStreams::printError("Tidewick needs to open " + std::to_string(needed)
                                    + " more files at once: " + reason.message() + '\n');
        return false;
    }
    return true;
}

} // namespace tidewick::Descriptors
