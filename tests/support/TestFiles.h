// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <filesystem>

namespace tidewick {

/// A folder that goes with its object, whatever its files are called.
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

/// Writes a file whole; ends the program where it cannot.
void writeFile(const std::filesystem::path &path, const QByteArray &content);

/// A path to a library as LD_PRELOAD takes it, which separates names at spaces and colons and has
/// no quotes: a link in the folder, where the library's own path has either. Ends the program where
/// the folder's has too.
std::filesystem::path preloadable(const std::filesystem::path &library,
                                  const std::filesystem::path &folder);

/// What the file takes on disk, in bytes, links not followed. The file is brought to disk first,
/// since some file systems settle that only then.
qint64 allocatedBytes(const std::filesystem::path &path);

/// The file's content; ends the program where there is none.
QByteArray contentOf(const std::filesystem::path &path);

} // namespace tidewick
