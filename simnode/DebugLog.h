// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QString>

#include <filesystem>

namespace tidewick::sim {

/// The node's "debug.log": appends one line per event. Warnings and errors also go to standard
/// error.
class DebugLog
{
public:
    enum class Severity { Info, Warning, Error, Fatal };

    /// If `file` is empty, no file is written. If it cannot be opened, this is reported on standard
    /// error, and the node runs without it.
    explicit DebugLog(const std::filesystem::path &file);

    /// Writes "<time> UTC <partition>:<severity> <text>" as a single line.
    void write(const char *partition, Severity severity, const QString &text);

    void info(const char *partition, const QString &text)
    {
        write(partition, Severity::Info, text);
    }

    /// Logs that a command has arrived. Long names are cut off.
    void command(const QString &name);

private:
    UniqueDescriptor m_file;
};

} // namespace tidewick::sim
