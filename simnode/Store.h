// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QtGlobal>

#include <filesystem>
#include <optional>

namespace tidewick::sim {

/// The node's ledgers on disk, half a MiB each, in one file that a rebuild replaces. Little more
/// than the index of the ledger is written; the rest takes up space and time. A file has at most 32
/// MiB; after that, the oldest ledgers are overwritten. Everything except newestLedger() and
/// bytes() throws FileError.
class Store
{
public:
    /// Continues with the content of the folder, which is created if necessary. Removes what an
    /// interrupted rebuild has left behind.
    explicit Store(std::filesystem::path folder);

    /// The newest ledger in the store.
    std::optional<quint32> newestLedger() const;

    /// The total size of all files.
    qint64 bytes() const;

    /// Writes the record of a ledger.
    void append(quint32 ledger);

    /// Begins a rebuild: from now on, ledgers are also written to the copy.
    void beginCopy();

    /// Replaces the file with the copy. The old file stays until tidy().
    void switchToCopy();

    /// Removes a copy that was never switched to, and the file that was replaced.
    void tidy();

private:
    /// A file of records of fixed length.
    struct File
    {
        std::filesystem::path path;
        UniqueDescriptor descriptor;
        /// The number of records ever written, including overwritten ones.
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
