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

    /// Bytes on disk, all of them.
    qint64 size() const;

    /// Bytes on disk without the engine's preallocated templates ("nudb.tpl…"), which hold no data.
    qint64 dataSize() const;

    /// Deletes the store if it is there. Never leaves the data folder: where "db" is a link, the
    /// link goes and what it points to stays. What could not be deleted remains.
    std::error_code remove() const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
