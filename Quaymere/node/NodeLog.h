// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "platform/time/Clock.h"

#include <QString>

#include <filesystem>

namespace tidewick {

/// The file "xrpld.stdout.log": the node's output with the application's own notes in between, one
/// run after the other. Keeps no file open.
class NodeLog
{
public:
    explicit NodeLog(const std::filesystem::path &dataDirectory);

    /// Moves a log of more than 64 MiB aside as its only ".1" copy. If that fails, the log keeps
    /// growing.
    static void rotate(const std::filesystem::path &log);

    const std::filesystem::path &path() const { return m_path; }

    /// Opens the log for a child's output, in append mode. Throws FileError.
    UniqueDescriptor open() const;

    /// Its length in bytes, at which the output of a run that starts now begins.
    static qint64 length(const UniqueDescriptor &log);

    /// The last 20 lines written at or after `offset`; empty if the log cannot be read. After a
    /// line feed at the end, there is a last, empty line. If the lines exceed 1 MiB together, their
    /// last MiB: a run may have printed gigabytes, and memory use stays bounded.
    QString tail(qint64 offset) const;

    /// Appends "[Tidewick] <date> <text>". Does nothing if there is no log.
    void note(const QString &text, WallClock::time_point now) const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
