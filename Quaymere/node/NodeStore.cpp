// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeStore.h"

#include "node/Probe.h"

namespace tidewick {

NodeStore::NodeStore(const std::filesystem::path &dataDirectory) : m_path(dataDirectory / "db") {}

qint64 NodeStore::size() const
{
    return Probe::directorySize(m_path);
}

qint64 NodeStore::dataSize() const
{
    return Probe::directorySize(m_path,
                                [](std::string_view name) { return name.starts_with("nudb.tpl"); });
}

std::error_code NodeStore::remove() const
{
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
    return error;
}

} // namespace tidewick
