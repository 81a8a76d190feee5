// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"

#include <string>

namespace tidewick {

/// This build as installed by "cmake --install" into a folder with this name, inside a temporary
/// one.
class Installation
{
public:
    explicit Installation(const std::string &name);

    const std::filesystem::path &prefix() const { return m_prefix; }
    std::filesystem::path program() const { return m_prefix / "bin/quaymere"; }

    /// Makes the installed program run the simulated node, which is not installed itself.
    void useSimulatedNode() const;

private:
    TemporaryFolder m_folder;
    std::filesystem::path m_prefix;
};

} // namespace tidewick
