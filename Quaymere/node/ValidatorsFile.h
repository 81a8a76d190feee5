// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <filesystem>
#include <optional>

/// The list of publishers and validators that a user may keep in place of the bundle's, for the day
/// on which a publisher moves.
namespace tidewick::ValidatorsFile {

/// The path of the user's file, if there is one: "validators.txt" beside the application's
/// settings.
std::filesystem::path path();

/// Reads the user's file, which a node can use; nothing if there is none. Throws FileError with the
/// reason if it cannot be read or if no node could use it.
std::optional<QByteArray> read();

/// The reason why no node can use a file with this content; nothing if none is apparent.
std::optional<std::string> flaw(const QByteArray &content);

} // namespace tidewick::ValidatorsFile
