// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Bundle.h"
#include "support/TestFiles.h"

#include <filesystem>

namespace tidewick {

/// A private bundle that a test may modify: the application, the simulated node, and simple
/// resources.
class TestBundle
{
public:
    TestBundle();

    std::filesystem::path path() const;
    Bundle bundle() const { return Bundle(path()); }
    std::filesystem::path application() const;
    std::filesystem::path node() const;
    std::filesystem::path resource(const char *name) const;

    /// Installs the shipped configuration template, built for this store: "Mossgrid", the initial
    /// one, or "NuDB".
    void setStore(const std::string &store) const;

    /// Replaces the node's executable.
    void setNode(const std::filesystem::path &executable) const;

private:
    TemporaryFolder m_folder;
};

} // namespace tidewick
