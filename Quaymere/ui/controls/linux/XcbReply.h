// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <memory>

namespace tidewick {

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};

/// A reply of the X server, which the caller must free.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

} // namespace tidewick
