// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <filesystem>
#include <system_error>

namespace tidewick {

/// The node's store, the folder "db" in the data folder.
class NodeStore
{
public:
    explicit NodeStore(const std::filesystem::path &dataDirectory);

    const std::filesystem::path &path() const { return m_path; }

    /// The total size in bytes on disk.
    qint64 size() const;

    /// The size in bytes on disk without the engine's preallocated templates ("nudb.tpl…"), which
    /// hold no data.
    qint64 dataSize() const;

    /// Deletes the store if there is one. Never leaves the data folder: if "db" is a link, deletes
    /// the link and not its target. Files that cannot be deleted remain.
    std::error_code remove() const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
