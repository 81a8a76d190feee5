// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <filesystem>

namespace tidewick {

/// A temporary folder that is removed with its object, whatever the names of its files.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder();

    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// Writes a complete file; ends the program on failure.
void writeFile(const std::filesystem::path &path, const QByteArray &content);

/// A path to a library that LD_PRELOAD accepts. LD_PRELOAD separates names at spaces and colons and
/// supports no quoting, so if the library's own path contains either, this creates a link in the
/// folder. Ends the program if the folder's path contains one too.
std::filesystem::path preloadable(const std::filesystem::path &library,
                                  const std::filesystem::path &folder);

/// The disk space that the file occupies, in bytes; does not follow links. The file is synced to
/// disk first, since some file systems allocate space only then.
qint64 allocatedBytes(const std::filesystem::path &path);

/// The file's content; ends the program if the file cannot be read.
QByteArray contentOf(const std::filesystem::path &path);

} // namespace tidewick
