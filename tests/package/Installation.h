// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"

#include <string>

namespace tidewick {

/// What "cmake --install" makes of this build, in a folder of that name in a temporary one.
class Installation
{
public:
    explicit Installation(const std::string &name);

    const std::filesystem::path &prefix() const { return m_prefix; }
    std::filesystem::path program() const { return m_prefix / "bin/quaymere"; }

    /// Has it run the simulated node, which is not installed.
    void useSimulatedNode() const;

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_prefix;
};

} // namespace tidewick
