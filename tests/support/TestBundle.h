// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Bundle.h"
#include "support/TestFiles.h"

#include <filesystem>

namespace tidewick {

/// A bundle of its own for a test to take apart: the application, the simulated node, and simple
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

    /// Puts in the shipped template, made for this store as a build makes it: "Mossgrid", which it
    /// is at first, or "NuDB".
    void setStore(const std::string &store) const;

    /// Puts another executable in the node's place.
    void setNode(const std::filesystem::path &executable) const;

private:
    TemporaryFolder m_folder;
};

} // namespace tidewick
