// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTemporaryDir>

#include <filesystem>

namespace tidewick::bench {

/// A temporary folder with this number of one-byte files, in subfolders of 100, flushed to disk.
class StoreOfFiles
{
public:
    explicit StoreOfFiles(int files);

    std::filesystem::path path() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};

} // namespace tidewick::bench
