// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace tidewick::Folders {

/// The folder where applications keep their data: $XDG_DATA_HOME if absolute, else ~/.local/share.
/// Creates nothing.
std::filesystem::path applicationSupport();

/// The folder where applications keep their settings: $XDG_CONFIG_HOME if absolute, else ~/.config.
std::filesystem::path configuration();

/// The folder where this application keeps its settings: "Tidewick" in configuration().
std::filesystem::path settings();

/// The folder for temporary files: $TMPDIR, else /tmp. A relative $TMPDIR is resolved by
/// fromOperand() and throws as that does.
std::filesystem::path temporary();

/// A unique path in temporary() that nobody can guess: the prefix, then a UUID of 32 uppercase
/// hexadecimal digits with dashes. Creates nothing.
std::filesystem::path newTemporary(const std::string &prefix);

/// The path of a lock file of this user: "<name>.lock" in $XDG_RUNTIME_DIR if that is absolute,
/// else in the settings folder, which is created if necessary. Never in a world-writable folder,
/// where another user could have claimed the name.
std::filesystem::path lockFile(const std::string &name);

/// A folder named on the command line, made absolute against the current working directory. An
/// absolute path only loses trailing slashes. In a relative path, dot segments are resolved; the
/// empty path is the working directory. Does not expand "~", decode percent escapes or access the
/// folder on disk. Throws FileError if the working directory no longer exists.
std::filesystem::path fromOperand(const std::string &operand);

} // namespace tidewick::Folders
