// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QtGlobal>

#include <filesystem>
#include <optional>

namespace tidewick::sim {

/// The node's ledgers on disk, half a MiB each, in one file that a rebuild replaces. What is
/// written says little more than which ledger it is for; it takes up the room and the time. At most
/// 32 MiB a file; from there on the oldest ledgers are overwritten. All functions throw FileError.
class Store
{
public:
    /// Goes on with what is in the folder, which is made if need be. Of a rebuild that was cut off,
    /// only what counts remains.
    explicit Store(std::filesystem::path folder);

    /// The newest ledger in the store.
    std::optional<quint32> newestLedger() const;

    /// In all files.
    qint64 bytes() const;

    /// Writes the record of a ledger.
    void append(quint32 ledger);

    /// Begins a rebuild: ledgers are written to the copy, too.
    void beginCopy();

    /// The copy takes the place of the file, which stays until tidy().
    void switchToCopy();

    /// Removes a copy that did not come to be used, and the file that was replaced.
    void tidy();

private:
    /// A file of records of one length each.
    struct File
    {
        std::filesystem::path path;
        UniqueDescriptor descriptor;
        /// Written since the beginning, overwritten ones included.
        qint64 records = 0;
    };

    File open(const std::filesystem::path &path) const;
    std::filesystem::path pathOf(int generation, const char *extension) const;
    static void write(File &file, quint32 ledger);

    std::filesystem::path m_folder;
    int m_generation = 1;
    File m_current;
    std::optional<File> m_copy;
    std::optional<File> m_replaced;
};

} // namespace tidewick::sim
