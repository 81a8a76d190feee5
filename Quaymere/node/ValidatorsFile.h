// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <filesystem>
#include <optional>

/// The list of publishers and validators that a user keeps in place of the bundle's, for the day on
/// which a publisher moves.
namespace tidewick::ValidatorsFile {

/// Where it lies if the user has one: "validators.txt" beside the application's settings.
std::filesystem::path path();

/// The user's file, fit for a node; nothing where there is none. Throws FileError, with what is
/// wrong with it, for one that cannot be read or that no node could use.
std::optional<QByteArray> read();

/// What keeps any node from using a file with this content; nothing where none can be seen.
std::optional<std::string> flaw(const QByteArray &content);

} // namespace tidewick::ValidatorsFile
