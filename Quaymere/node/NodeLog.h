// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "platform/time/Clock.h"

#include <QString>

#include <filesystem>

namespace tidewick {

/// "xrpld.stdout.log": what the node prints, with the application's own notes between, one run
/// after the other. Keeps no file open.
class NodeLog
{
public:
    explicit NodeLog(const std::filesystem::path &dataDirectory);

    /// Moves a log of more than 64 MiB aside as its one ".1" copy. A failure leaves it to grow.
    static void rotate(const std::filesystem::path &log);

    const std::filesystem::path &path() const { return m_path; }

    /// Opens the log for a child's output; every write goes to its end. Throws FileError.
    UniqueDescriptor open() const;

    /// Its length in bytes, where the output of a run that starts now begins.
    static qint64 length(const UniqueDescriptor &log);

    /// The last 20 lines written at or after `offset`; empty when there is no reading it. A line
    /// feed at the end makes for a last, empty line. Of lines longer than 1 MiB together, their
    /// last MiB: a run may have printed gigabytes, and memory stays bounded.
    QString tail(qint64 offset) const;

    /// Adds "[Tidewick] <date> <text>". Does nothing where there is no log.
    void note(const QString &text, WallClock::time_point now) const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
