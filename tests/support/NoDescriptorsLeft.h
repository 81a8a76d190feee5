// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <vector>

#include <fcntl.h>
#include <sys/resource.h>

namespace tidewick {

/// Uses up all file descriptors of this process for as long as the object exists.
class NoDescriptorsLeft
{
public:
    NoDescriptorsLeft()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit limit{64, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
        while (true) {
            UniqueDescriptor taken(::open("/dev/null", O_RDONLY | O_CLOEXEC));
            if (!taken)
                break;
            m_taken.push_back(std::move(taken));
        }
    }
    NoDescriptorsLeft(const NoDescriptorsLeft &) = delete;
    NoDescriptorsLeft &operator=(const NoDescriptorsLeft &) = delete;
    ~NoDescriptorsLeft() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

    /// Frees one descriptor.
    void giveBackOne() { m_taken.pop_back(); }

private:
    rlimit m_before{};
    std::vector<UniqueDescriptor> m_taken;
};

} // namespace tidewick
