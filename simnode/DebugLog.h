// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QString>

#include <filesystem>

namespace tidewick::sim {

/// The node's "debug.log": one line an event, added to what is there. Warnings and errors go to
/// standard error, too.
class DebugLog
{
public:
    enum class Severity { Info, Warning, Error, Fatal };

    /// Empty: no file. One that cannot be opened is told of on standard error, and the node goes on
    /// without.
    explicit DebugLog(const std::filesystem::path &file);

    /// Writes "<time> UTC <partition>:<severity> <text>". The text is one line.
    void write(const char *partition, Severity severity, const QString &text);

    void info(const char *partition, const QString &text)
    {
        write(partition, Severity::Info, text);
    }

    /// Notes that this command has arrived; of a long name, the beginning.
    void command(const QString &name);

private:
    UniqueDescriptor m_file;
};

} // namespace tidewick::sim
