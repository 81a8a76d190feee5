// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <filesystem>

namespace tidewick::OutputFile {

/// Writes a file that the user has named, as any program would: through links, also to a file that
/// does not exist yet, into pipes and devices, and keeping the owner and mode of a file that does.
/// Readers see the complete old or new content wherever the folder permits the file's replacement.
/// Throws FileError.
void write(const std::filesystem::path &path, const QByteArray &content);

} // namespace tidewick::OutputFile
