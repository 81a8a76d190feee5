// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTemporaryDir>

#include <filesystem>

namespace tidewick::bench {

/// A temporary folder with so many files of one byte, in folders of 100, all on disk.
class StoreOfFiles
{
public:
    explicit StoreOfFiles(int files);

    std::filesystem::path path() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};

} // namespace tidewick::bench
